#pragma once

#include <QString>
#include <QVariant>

#include <vector>

namespace yrw::dao {

/// One word, name, literal or sign of a condition text.
struct Token {
    enum class Kind { Word, Name, Literal, Sign, End };
    Kind kind = Kind::End;
    QString text;        ///< the word, the bracketed name or the sign
    QVariant value;      ///< of a literal
    qsizetype place = 0; ///< 0-based place in the text, for messages
};

/// Cuts a text into tokens, the last of kind `End`. Raises `kErrorBadCondition`.
[[nodiscard]] std::vector<Token> tokenize(QStringView text);

/// Raises `kErrorBadCondition` with a place.
[[noreturn]] void raiseBadCondition(const QString& what, qsizetype place);

} // namespace yrw::dao
