#include "platform/jet/JetText.h"

#include "platform/rtf/CodePage.h"

#include <QDateTime>
#include <QtEndian>

#include <cmath>

namespace yrw::jet {

namespace {

constexpr double kMostDays = 3000000; // beyond year 9999
constexpr int kSecondsOfDay = 86400;

/// Code units two by two; half a unit at the end is left out.
QString fromUnits(QByteArrayView bytes) {
    QString text(bytes.size() / 2, Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i) {
        text[i] = QChar(qFromLittleEndian<char16_t>(bytes.data() + 2 * i));
    }
    return text;
}

QString decompressed(QByteArrayView bytes) {
    QString text;
    text.reserve(bytes.size());
    bool isSingle = true;
    for (qsizetype i = 0; i < bytes.size();) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        if (byte == 0) {
            isSingle = !isSingle;
            ++i;
        } else if (isSingle) {
            text += QChar(byte);
            ++i;
        } else if (i + 1 < bytes.size()) {
            text += QChar(qFromLittleEndian<char16_t>(bytes.data() + i));
            i += 2;
        } else {
            break;
        }
    }
    return text;
}

template <class T>
std::optional<T> number(QByteArrayView bytes) {
    if (bytes.size() != sizeof(T)) {
        return std::nullopt;
    }
    return qFromLittleEndian<T>(bytes.data());
}

/// As a variant, or nothing.
template <class To, class T>
std::optional<QVariant> asVariant(const std::optional<T>& value) {
    return value ? std::optional(QVariant::fromValue(static_cast<To>(*value))) : std::nullopt;
}

std::optional<QVariant> finite(const std::optional<double>& value) {
    return value && std::isfinite(*value) ? std::optional(QVariant(*value)) : std::nullopt;
}

std::optional<QVariant> dateValue(QByteArrayView bytes) {
    const std::optional<double> days = number<double>(bytes);
    const std::optional<QDateTime> date = days ? decodeDate(*days) : std::nullopt;
    return date ? std::optional(QVariant(*date)) : std::nullopt;
}

} // namespace

QString decodeText(QByteArrayView bytes) {
    const bool isCompressed = bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0xFF &&
                              static_cast<unsigned char>(bytes[1]) == 0xFE;
    return isCompressed ? decompressed(bytes.sliced(2)) : fromUnits(bytes);
}

std::optional<QDateTime> decodeDate(double days) {
    if (!(std::abs(days) < kMostDays)) {
        return std::nullopt;
    }
    const double whole = std::trunc(days);
    const auto seconds = std::llround(std::abs(days - whole) * kSecondsOfDay);
    const QDate date =
        QDate(1899, 12, 30).addDays(qint64(whole) + (seconds == kSecondsOfDay ? 1 : 0));
    if (date.year() < 100 || date.year() > 9999) {
        return std::nullopt;
    }
    return QDateTime(date, QTime(0, 0).addSecs(int(seconds % kSecondsOfDay)));
}

std::optional<QVariant> decodeValue(ColumnType type, QByteArrayView bytes, int codePage) {
    constexpr double moneyParts = 10000;
    switch (type) {
    case ColumnType::Boolean:
        return asVariant<bool>(number<quint8>(bytes));
    case ColumnType::Byte:
        return asVariant<int>(number<quint8>(bytes));
    case ColumnType::Integer:
        return asVariant<int>(number<qint16>(bytes));
    case ColumnType::Long:
        return asVariant<qint64>(number<qint32>(bytes));
    case ColumnType::Money:
        if (const auto parts = number<qint64>(bytes)) {
            return QVariant(double(*parts) / moneyParts);
        }
        return std::nullopt;
    case ColumnType::Single:
        return finite(number<float>(bytes));
    case ColumnType::Double:
        return finite(number<double>(bytes));
    case ColumnType::Date:
        return dateValue(bytes);
    case ColumnType::Text:
    case ColumnType::Memo:
        return QVariant(codePage != 0 ? rtf::decode(codePage, bytes) : decodeText(bytes));
    case ColumnType::Binary:
    case ColumnType::Object:
    case ColumnType::Guid:
    case ColumnType::Decimal:
        return QVariant(bytes.toByteArray());
    }
    return std::nullopt;
}

} // namespace yrw::jet
