#include "platform/dao/FieldValue.h"

#include "platform/clock/WallTime.h"
#include "platform/component/AutomationError.h"

#include <QDateTime>
#include <QRegularExpression>

#include <cmath>
#include <limits>

namespace yrw::dao {

namespace {

/// Nothing: the value does not convert.
using Converted = std::optional<QVariant>;

bool isText(const QVariant& value) {
    return value.typeId() == QMetaType::QString;
}

bool isDate(const QVariant& value) {
    return value.typeId() == QMetaType::QDateTime || value.typeId() == QMetaType::QDate;
}

bool isNumber(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

/// A finite number, plain or as text.
std::optional<double> numberIn(const QVariant& value) {
    if (!isNumber(value) && !isText(value)) {
        return std::nullopt;
    }
    bool isWhole = false;
    const double number =
        isText(value) ? value.toString().trimmed().toDouble(&isWhole) : value.toDouble(&isWhole);
    return isWhole && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

/// A whole number: exact up to 64 bits, where a double would round.
std::optional<qint64> wholeNumberIn(const QVariant& value) {
    bool fits = false;
    if (isText(value)) {
        if (const qint64 exact = value.toString().trimmed().toLongLong(&fits); fits) {
            return exact;
        }
    } else if (isNumber(value) && value.typeId() != QMetaType::Double &&
               value.typeId() != QMetaType::Float) {
        const bool isHuge = value.toULongLong() > quint64(std::numeric_limits<qint64>::max()) &&
                            value.toDouble() > 0;
        return isHuge ? std::nullopt : std::optional(value.toLongLong());
    }
    constexpr double kExact = 9007199254740992.0; // beyond, a double names no one whole number
    const std::optional<double> number = numberIn(value);
    if (!number || *number != std::trunc(*number) || std::abs(*number) > kExact) {
        return std::nullopt;
    }
    return qint64(*number);
}

Converted toBoolean(const QVariant& value) {
    if (const std::optional<double> number = numberIn(value)) {
        return *number != 0;
    }
    if (!isText(value)) {
        return std::nullopt;
    }
    const QString word = value.toString().trimmed();
    for (const char16_t* yes : {u"True", u"Yes", u"On"}) {
        if (word.compare(QStringView(yes), Qt::CaseInsensitive) == 0) {
            return true;
        }
    }
    for (const char16_t* no : {u"False", u"No", u"Off"}) {
        if (word.compare(QStringView(no), Qt::CaseInsensitive) == 0) {
            return false;
        }
    }
    return std::nullopt;
}

Converted toWhole(const QVariant& value, FieldType type) {
    const std::optional<qint64> number = wholeNumberIn(value);
    if (!number) {
        return std::nullopt;
    }
    if (type == FieldType::Long) {
        return QVariant(*number);
    }
    return int(*number) == *number ? Converted(QVariant(int(*number))) : std::nullopt;
}

Converted toText(const QVariant& value) {
    if (value.typeId() == QMetaType::Bool) {
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    }
    if (value.typeId() == QMetaType::QDateTime) {
        return value.toDateTime().toString(QStringLiteral("dd/MM/yyyy HH:mm:ss"));
    }
    if (value.typeId() == QMetaType::QDate) {
        return value.toDate().toString(QStringLiteral("dd/MM/yyyy"));
    }
    const bool isBytes = value.typeId() == QMetaType::QByteArray;
    return !isBytes && value.canConvert<QString>() ? Converted(value.toString()) : std::nullopt;
}

/// The parts of a written date. Day and month may have changed places in `isDayFirst` ones.
struct WrittenDate {
    QDate date;
    QTime time;
    bool isDayFirst = false;
};

std::optional<WrittenDate> parseDate(const QString& text) {
    static const QRegularExpression form(
        QStringLiteral("^(?:(\\d{4})-(\\d{2})-(\\d{2})|(\\d{1,2})/(\\d{1,2})/(\\d{4}))"
                       "(?:[ T](\\d{1,2}):(\\d{2})(?::(\\d{2})(?:\\.\\d+)?)?)?$"));
    const QRegularExpressionMatch match = form.match(text.trimmed());
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const auto number = [&](int part) { return match.captured(part).toInt(); };
    WrittenDate written;
    written.isDayFirst = match.hasCaptured(4);
    written.date = written.isDayFirst ? QDate(number(6), number(5), number(4))
                                      : QDate(number(1), number(2), number(3));
    written.time = QTime(number(7), number(8), number(9));
    return written.date.isValid() && written.time.isValid() ? std::optional(written) : std::nullopt;
}

Converted toDate(const QVariant& value) {
    QDateTime date;
    if (isDate(value)) {
        date = value.toDateTime();
    } else if (isText(value)) {
        if (const std::optional<WrittenDate> written = parseDate(value.toString())) {
            date = existingTime(written->date, written->time);
        }
    }
    constexpr int kFirstYear = 100;
    constexpr int kLastYear = 9999;
    if (!date.isValid() || date.date().year() < kFirstYear || date.date().year() > kLastYear) {
        return std::nullopt;
    }
    date.setTime(QTime(date.time().hour(), date.time().minute(), date.time().second()));
    return date;
}

Converted convert(const QVariant& value, FieldType type) {
    switch (type) {
    case FieldType::Boolean:
        return toBoolean(value);
    case FieldType::Integer:
    case FieldType::Long:
        return toWhole(value, type);
    case FieldType::Double: {
        const std::optional<double> number = numberIn(value);
        return number ? Converted(QVariant(*number)) : std::nullopt;
    }
    case FieldType::Text:
    case FieldType::Memo:
        return toText(value);
    case FieldType::Date:
        return toDate(value);
    case FieldType::Binary:
        return value.typeId() == QMetaType::QByteArray ? Converted(value) : std::nullopt;
    }
    return std::nullopt;
}

/// True for the form in which a recordset gives a value that is stored as the field's type is.
bool isOfType(const QVariant& stored, FieldType type) {
    switch (type) {
    case FieldType::Boolean:
        return stored.typeId() == QMetaType::Bool;
    case FieldType::Integer:
    case FieldType::Long:
        return isNumber(stored) && stored.typeId() != QMetaType::Double;
    case FieldType::Double:
        return isNumber(stored);
    case FieldType::Text:
    case FieldType::Memo:
        return isText(stored);
    case FieldType::Date:
        return isDate(stored);
    case FieldType::Binary:
        return stored.typeId() == QMetaType::QByteArray;
    }
    return false;
}

bool isTooLong(const QVariant& value, FieldKind kind) {
    return kind.type == FieldType::Text && kind.size > 0 && value.toString().size() > kind.size;
}

/// The one reading of bytes where a text belongs: what they say in UTF-8, if anything.
Converted readBytes(const QByteArray& bytes) {
    const QString text = QString::fromUtf8(bytes);
    return text.toUtf8() == bytes ? Converted(text) : std::nullopt;
}

Converted readingOf(const QVariant& stored, FieldType type) {
    if (type == FieldType::Date && isText(stored)) {
        if (stored.toString().trimmed().isEmpty()) {
            return QVariant();
        }
        const std::optional<WrittenDate> written = parseDate(stored.toString());
        const bool isAmbiguous = written && written->isDayFirst && written->date.day() <= 12 &&
                                 written->date.day() != written->date.month();
        return isAmbiguous ? std::nullopt : toDate(stored);
    }
    const bool isBytes = stored.typeId() == QMetaType::QByteArray;
    return isBytes && (type == FieldType::Text || type == FieldType::Memo)
               ? readBytes(stored.toByteArray())
               : convert(stored, type);
}

} // namespace

QVariant convertToField(const QVariant& value, FieldKind kind, const QString& fieldName) {
    if (value.isNull() || (isDate(value) && !value.toDateTime().isValid())) {
        return {};
    }
    const Converted converted = convert(value, kind.type);
    if (!converted) {
        throw AutomationError(
            kErrorTypeMismatch, QStringLiteral("YRW.Field"),
            QStringLiteral("Type mismatch: the field '%1' cannot hold that value.").arg(fieldName));
    }
    if (isTooLong(*converted, kind)) {
        throw AutomationError(kErrorFieldTooSmall, QStringLiteral("YRW.Field"),
                              QStringLiteral("The field '%1' holds texts of up to %2 characters.")
                                  .arg(fieldName)
                                  .arg(kind.size));
    }
    return *converted;
}

StoredValue judgeStoredValue(const QVariant& stored, FieldKind kind) {
    if (stored.isNull()) {
        return {};
    }
    if (isTooLong(stored, kind)) {
        return {true, std::nullopt};
    }
    if (isOfType(stored, kind.type)) {
        return {};
    }
    const Converted reading = readingOf(stored, kind.type);
    return {true, reading && !isTooLong(*reading, kind) ? reading : std::nullopt};
}

} // namespace yrw::dao
