#include "platform/rtf/ListNumber.h"

#include <array>
#include <utility>

namespace yrw::rtf {

namespace {

QString roman(int number) {
    static constexpr std::array kParts = {
        std::pair(1000, "m"), std::pair(900, "cm"), std::pair(500, "d"), std::pair(400, "cd"),
        std::pair(100, "c"),  std::pair(90, "xc"),  std::pair(50, "l"),  std::pair(40, "xl"),
        std::pair(10, "x"),   std::pair(9, "ix"),   std::pair(5, "v"),   std::pair(4, "iv"),
        std::pair(1, "i")};
    QString text;
    for (const auto& [value, letters] : kParts) {
        for (; number >= value; number -= value) {
            text += QLatin1String(letters);
        }
    }
    return text;
}

QString letters(int number) {
    QString text;
    for (; number > 0; number = (number - 1) / 26) {
        text.prepend(QChar(static_cast<char16_t>(u'a' + (number - 1) % 26)));
    }
    return text;
}

} // namespace

QString listNumber(ListKind kind, int number) {
    switch (kind) {
    case ListKind::Decimal:
        return QString::number(number);
    case ListKind::LowerLetter:
        return letters(number);
    case ListKind::UpperLetter:
        return letters(number).toUpper();
    case ListKind::LowerRoman:
        return number > 0 && number < 4000 ? roman(number) : QString::number(number);
    case ListKind::UpperRoman:
        return number > 0 && number < 4000 ? roman(number).toUpper() : QString::number(number);
    default:
        return {};
    }
}

} // namespace yrw::rtf
