#include "platform/richtext/TextRoom.h"

#include "platform/richtext/Formats.h"
#include "platform/rtf/Picture.h"

#include <QChar>

#include <algorithm>
#include <cstdlib>

namespace yrw::richtext {

namespace {

/// The toolkit counts a document's height up to 8,388,607 dots and never ends laying out a higher
/// one.
constexpr double kMostHeight = 8'000'000;
/// Bytes that a text may take in the editor, and for each of its characters when that is more: long
/// notes are shown whole, short ones that unfold into something large are not.
constexpr qint64 kMostMemory = 120LL * 1024 * 1024;
constexpr qint64 kMemoryPerCharacter = 30;
constexpr qint64 kInline = 1500;  ///< bytes, with a format of its own
constexpr qint64 kFont = 250'000; ///< takes long to make, too
constexpr double kLinePerSize = 1.4;
constexpr double kAdvancePerSize = 0.55;
constexpr double kUnnamedHeight = 2112; ///< of a picture that names no size, at the most

double sizeOf(const rtf::CharFormat& chars, double dotsPerInch) {
    return chars.halfPoints / 2.0 * dotsPerInch / 72;
}

double lineHeight(const rtf::CharFormat& chars, const rtf::ParFormat& paragraph,
                  double dotsPerInch) {
    const double natural = kLinePerSize * sizeOf(chars, dotsPerInch);
    if (paragraph.lineMultiple) {
        return natural * std::max(1.0, std::abs(paragraph.lineSpacing) / 240.0);
    }
    return std::max(natural, pixels(std::abs(paragraph.lineSpacing), dotsPerInch));
}

/// About how many lines the characters fill, in a column of so many dots.
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

} // namespace

TextRoom::TextRoom(const rtf::Document& source, double dotsPerInch)
    : m_dotsPerInch(dotsPerInch),
      m_memory(std::max(kMostMemory, kMemoryPerCharacter * source.text.size())),
      m_height(kMostHeight) {}

void TextRoom::setHeightBefore(double dots) {
    m_height = kMostHeight - dots;
}

void TextRoom::takeFont(const rtf::CharFormat& look) {
    if (m_fonts.insert({look.font, look.halfPoints, look.bold, look.italic}).second) {
        takeBytes(kFont);
    }
}

void TextRoom::takeParagraph(const rtf::ParFormat& paragraph, const rtf::CharFormat& mark) {
    const int space = std::max(0, paragraph.before) + std::max(0, paragraph.after);
    m_height -= pixels(space, m_dotsPerInch) + lineHeight(mark, paragraph, m_dotsPerInch);
}

void TextRoom::takeLines(QStringView text, const rtf::CharFormat& look,
                         const rtf::ParFormat& paragraph) {
    m_height -= lineHeight(look, paragraph, m_dotsPerInch) *
                linesOf(text, look, paragraph, m_width, m_dotsPerInch);
}

void TextRoom::takeInline(const rtf::Inline& group) {
    takeBytes(kInline);
    if (group.kind != rtf::InlineKind::Kept) {
        const int named = rtf::pictureOf(group.raw).height;
        m_height -= named > 0 ? pixels(named, m_dotsPerInch) : kUnnamedHeight;
    }
}

} // namespace yrw::richtext
