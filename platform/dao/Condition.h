#pragma once

#include <QString>
#include <QVariant>

#include <vector>

namespace yrw::dao {

// The text that callers may pass to a database: selections, conditions and orders. It is parsed
// here, once, into a form that holds no text of any engine; an engine builds its own statement from
// that form and binds every value. Text outside this grammar raises `kErrorBadCondition` and
// nothing runs; there is never more than one statement. Words are accepted in any case.
//
//   select     = "SELECT" item {"," item} "FROM" name ["WHERE" condition] ["ORDER BY" order] [";"]
//   item       = "*" | name "." "*" | field ["AS" name] | "Count" "(" "*" ")" ["AS" name]
//   order      = field ["ASC" | "DESC"] {"," field ["ASC" | "DESC"]}
//   condition  = conjunction {"OR" conjunction}
//   conjunction= term {"AND" term}
//   term       = "NOT" term | predicate
//   predicate  = operand comparison operand
//              | operand "IS" ["NOT"] "NULL"
//              | operand ["NOT"] "LIKE" text
//              | operand ["NOT"] "BETWEEN" operand "AND" operand
//              | operand ["NOT"] "IN" "(" literal {"," literal} ")"
//              | field                                   (true when it is neither 0 nor Null)
//              | "True" | "False"
//              | "(" condition ")"
//   comparison = "=" | "<>" | "<" | "<=" | ">" | ">="
//   operand    = field | literal | "Now" "(" ")" | "(" operand ")"
//   field      = [name "."] name
//   name       = letter or "_", then letters, digits, "_" | "[" any characters but "]" "]"
//   literal    = text | number | date | "True" | "False" | "Null"
//   text       = '"' any characters but '"' '"' | "'" any characters but "'" "'"
//   number     = ["-"] digits ["." digits]
//   date       = "#" (YYYY-MM-DD | M/D/YYYY) [hours ":" minutes [":" seconds]] "#"
//
// - A text ends at the next quote of its kind. There is no way to write that quote inside it: a
//   value that holds one makes the text malformed, and a caller that must select by such a value
//   uses `Seek` or the parameters of a stored query.
// - A text is a text, also when it reads like the name of a field.
// - Every comparison names at least one field, so that no value can smuggle in one that always
//   holds.
// - True is any number but 0. Nothing equals Null; ask "Is Null".
// - Texts compare without regard to the case of ASCII letters where the schema says so.
// - "Like" knows "*" (any characters) and "?" (one character); "[x]" stands for the character x.
// - Now() is the clock's local time. Dates have whole seconds.
// - At most 64 parentheses and NOTs lie within each other.

/// A column by name, with the name of its source where the text gave one.
struct FieldReference {
    QString source;
    QString name;
};

/// A parsed condition.
struct Expression {
    enum class Kind { Reference, Value, Now, Compare, IsNull, Like, Between, In, And, Or, Not };

    Kind kind = Kind::Value;
    FieldReference field;             ///< of `Reference`
    QVariant value;                   ///< of `Value`; a null variant is Null
    QString comparison;               ///< of `Compare`
    bool negated = false;             ///< of `IsNull`, `Like`, `Between`, `In`
    std::vector<Expression> operands; ///< of all others, in the order of the text
};

/// One column of an order.
struct OrderTerm {
    FieldReference field;
    bool descending = false;
};

/// One column of a selection. The name "*" stands for every column.
struct SelectItem {
    FieldReference field;
    QString alias; ///< empty when the column keeps its name
    bool isCount = false;
};

/// A parsed selection.
struct Selection {
    std::vector<SelectItem> items;
    QString source;
    std::vector<Expression> where; ///< conditions that must all hold
    std::vector<OrderTerm> order;
};

/// True when the text begins with the word SELECT and is therefore no bare name.
[[nodiscard]] bool isSelection(QStringView text);
/// Parses a selection. Raises `kErrorBadCondition` naming the place.
[[nodiscard]] Selection parseSelection(QStringView text);
/// Parses a condition alone. Raises `kErrorBadCondition`.
[[nodiscard]] Expression parseCondition(QStringView text);
/// Parses an order alone. Raises `kErrorBadCondition`.
[[nodiscard]] std::vector<OrderTerm> parseOrder(QStringView text);

} // namespace yrw::dao
