#pragma once

#include "platform/dao/Types.h"

#include <optional>

namespace yrw::dao {

/// What a field keeps: its type and, for a text, its size.
struct FieldKind {
    FieldType type = FieldType::Text;
    int size = 0; ///< longest text in characters; 0 for no limit
};

/// A value as a field of that kind keeps it and gives it back; this is done to every value that is
/// set in a recordset, and so to those of records.
///
/// Null stays Null, and an invalid date is Null. Otherwise, by the field's type:
/// - Boolean: a Boolean; a number (0 is False, any other True); "True", "False", "Yes", "No", "On",
///   "Off" in any case, or a number as text. Comes back as bool.
/// - Integer (32 bits), Long (64 bits): a whole number in range, also as text or as a double
/// without
///   a fraction; a Boolean is 1 or 0. Comes back as int or qint64.
/// - Double: a finite number, also as text with a point; a Boolean is 1 or 0.
/// - Text, Memo: a text; a number, a Boolean or a date in words.
/// - Date: a date or a date with a time, years 100 to 9999, also as text: "yyyy-MM-dd" or
///   "dd/MM/yyyy", alone or followed by a blank (or "T") and "HH:mm" or "HH:mm:ss". Comes back as
///   QDateTime in whole seconds.
/// - Binary: bytes.
///
/// Raises `kErrorTypeMismatch` for a value that does not convert, `kErrorFieldTooSmall` for a text
/// longer than the field's size; `fieldName` is for the description.
[[nodiscard]] QVariant convertToField(const QVariant& value, FieldKind kind,
                                      const QString& fieldName);

/// What is to be said of a value that stands in a file.
struct StoredValue {
    /// True when no writer that keeps to the field's type leaves such a value.
    bool isImpossible = false;
    /// For an impossible value: what it can only have meant, as the field would keep it, Null
    /// included. Nothing when it has no reading or more than one.
    std::optional<QVariant> reading;
};

/// Judges a value that a recordset gave for a field of that kind: `Recordset::value`,
/// `Recordset::TypeOf` and `Recordset::textSizeOf` of one column.
///
/// Dates must have come as QDateTime, Booleans as bool, and so on: a recordset gives what it cannot
/// read as its field's type in the form in which it is stored (text, number or bytes), and that is
/// what is found here. A blank date reads as Null. A date as "dd/MM/yyyy" has one reading only when
/// its day cannot be a month ("31/12/2020"), since nobody knows who wrote it. Texts that are too
/// long have none: cutting them would lose what they say. Never raises.
[[nodiscard]] StoredValue judgeStoredValue(const QVariant& stored, FieldKind kind);

} // namespace yrw::dao
