#include "platform/richtext/Heights.h"

#include "platform/richtext/Formats.h"
#include "platform/rtf/Picture.h"

#include <QChar>

#include <algorithm>
#include <cstdlib>

namespace yrw::richtext {

namespace {

constexpr double kLinePerSize = 1.4;
constexpr double kAdvancePerSize = 0.55;
constexpr double kUnnamedHeight = 2112; ///< of a picture that names no size, at the most

double sizeOf(const rtf::CharFormat& chars, double dotsPerInch) {
    return chars.halfPoints / 2.0 * dotsPerInch / 72;
}

} // namespace

double lineHeight(const rtf::CharFormat& chars, const rtf::ParFormat& paragraph,
                  double dotsPerInch) {
    const double natural = kLinePerSize * sizeOf(chars, dotsPerInch);
    if (paragraph.lineMultiple) {
        return natural * std::max(1.0, std::abs(paragraph.lineSpacing) / 240.0);
    }
    return std::max(natural, pixels(std::abs(paragraph.lineSpacing), dotsPerInch));
}

double spacing(const rtf::ParFormat& paragraph, double dotsPerInch) {
    return pixels(std::max(0, paragraph.before) + std::max(0, paragraph.after), dotsPerInch);
}

double linesOf(QStringView text, const rtf::CharFormat& chars, const rtf::ParFormat& paragraph,
               double width, double dotsPerInch) {
    // Each of these may begin a line.
    const auto breaks = std::count_if(text.begin(), text.end(), [](QChar c) {
        return c == QChar(QChar::LineSeparator) || c == QChar(QChar::Tabulation);
    });
    const double room = width - pixels(paragraph.left + paragraph.right, dotsPerInch);
    const double inLine = room / (kAdvancePerSize * std::max(1.0, sizeOf(chars, dotsPerInch)));
    return static_cast<double>(breaks) +
           static_cast<double>(text.size() - breaks) / std::max(1.0, inLine);
}

double heightOf(const rtf::Inline& group, double dotsPerInch) {
    if (group.kind == rtf::InlineKind::Kept) {
        return 0;
    }
    const int named = rtf::pictureOf(group.raw).height;
    return named > 0 ? pixels(named, dotsPerInch) : kUnnamedHeight;
}

} // namespace yrw::richtext
