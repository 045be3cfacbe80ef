#include "platform/rtf/ListNumber.h"

#include <array>
#include <utility>

namespace yrw::rtf {

namespace {

QString roman(int number) {
    static constexpr std::array<std::pair<int, const char*>, 13> kParts = {{{1000, "m"},
                                                                            {900, "cm"},
                                                                            {500, "d"},
                                                                            {400, "cd"},
                                                                            {100, "c"},
                                                                            {90, "xc"},
                                                                            {50, "l"},
                                                                            {40, "xl"},
                                                                            {10, "x"},
                                                                            {9, "ix"},
                                                                            {5, "v"},
                                                                            {4, "iv"},
                                                                            {1, "i"}}};
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
