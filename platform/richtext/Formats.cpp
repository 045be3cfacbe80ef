#include "platform/richtext/Formats.h"

#include <QStringList>
#include <QTextList>
#include <QTextOption>

#include <algorithm>
#include <array>
#include <cmath>

namespace yrw::richtext {

namespace {

constexpr int kIndentStep = 360; ///< twips

QBrush brushOf(int colour) {
    return colour == rtf::kAutomatic ? QBrush(Qt::NoBrush)
                                     : QBrush(QColor::fromRgb(static_cast<QRgb>(colour)));
}

int colourOf(const QBrush& brush) {
    return brush.style() == Qt::NoBrush ? rtf::kAutomatic
                                        : static_cast<int>(brush.color().rgb() & 0xFFFFFF);
}

/// Black or white, whichever can be read on a ground.
QColor readableOn(int background) {
    constexpr int kMiddle = 128;
    const QRgb ground =
        background == rtf::kAutomatic ? qRgb(255, 255, 255) : static_cast<QRgb>(background);
    return qGray(ground) >= kMiddle ? QColor(Qt::black) : QColor(Qt::white);
}

Qt::Alignment screenAlignment(rtf::Alignment alignment) {
    switch (alignment) {
    case rtf::Alignment::Right:
        return Qt::AlignRight | Qt::AlignAbsolute;
    case rtf::Alignment::Center:
        return Qt::AlignHCenter;
    case rtf::Alignment::Justify:
        return Qt::AlignJustify;
    default:
        return Qt::AlignLeft | Qt::AlignAbsolute;
    }
}

void setLineSpacing(QTextBlockFormat& block, const rtf::ParFormat& format, double dotsPerInch) {
    if (format.lineSpacing == 0) {
        return;
    }
    if (format.lineMultiple) {
        block.setLineHeight(std::abs(format.lineSpacing) / 2.4,
                            QTextBlockFormat::ProportionalHeight);
    } else {
        block.setLineHeight(pixels(std::abs(format.lineSpacing), dotsPerInch),
                            format.lineSpacing < 0 ? QTextBlockFormat::FixedHeight
                                                   : QTextBlockFormat::MinimumHeight);
    }
}

/// The format of a block that came from elsewhere, at 96 dots per inch.
rtf::ParFormat foreignParagraph(const QTextBlockFormat& format) {
    static constexpr double kTwipsPerPixel = 15;
    static constexpr double kWidest = 1440;
    const auto twips = [](double pixels) {
        return static_cast<int>(std::lround(std::clamp(pixels, 0.0, kWidest) * kTwipsPerPixel));
    };
    rtf::ParFormat paragraph;
    paragraph.left = twips(format.leftMargin()) + kIndentStep * std::clamp(format.indent(), 0, 20);
    if (format.alignment() & Qt::AlignHCenter) {
        paragraph.alignment = rtf::Alignment::Center;
    } else if (format.alignment() & Qt::AlignRight) {
        paragraph.alignment = rtf::Alignment::Right;
    } else if (format.alignment() & Qt::AlignJustify) {
        paragraph.alignment = rtf::Alignment::Justify;
    }
    return paragraph;
}

rtf::ListKind kindOf(QTextListFormat::Style style) {
    switch (style) {
    case QTextListFormat::ListDecimal:
        return rtf::ListKind::Decimal;
    case QTextListFormat::ListLowerAlpha:
        return rtf::ListKind::LowerLetter;
    case QTextListFormat::ListUpperAlpha:
        return rtf::ListKind::UpperLetter;
    case QTextListFormat::ListLowerRoman:
        return rtf::ListKind::LowerRoman;
    case QTextListFormat::ListUpperRoman:
        return rtf::ListKind::UpperRoman;
    default:
        return rtf::ListKind::Bullet;
    }
}

} // namespace

qint64 nextParagraphOfPieces() {
    static qint64 last = 0;
    constexpr qint64 kPieces = 1LL << 24; // of one paragraph at the most
    return last += kPieces;
}

bool goesOnBefore(const QTextBlock& block) {
    if (!block.isValid()) {
        return false;
    }
    const QTextBlock before = block.previous();
    const QTextBlockFormat format = block.blockFormat();
    // A piece that the user cut in two has the number of both its parts, which are two paragraphs.
    return before.isValid() && format.hasProperty(kPiece) &&
           before.blockFormat().property(kPiece).toLongLong() + 1 ==
               format.property(kPiece).toLongLong();
}

QTextBlock firstPiece(QTextBlock block) {
    while (goesOnBefore(block)) {
        block = block.previous();
    }
    return block;
}

QTextBlockFormat furtherPiece(QTextBlockFormat format) {
    format.setTopMargin(0);
    format.setTextIndent(0);
    format.setObjectIndex(-1);
    return format;
}

double pixels(int twips, double dotsPerInch) {
    return twips * dotsPerInch / 1440.0;
}

QTextCharFormat toScreen(const rtf::CharFormat& format, const QString& fontName) {
    QTextCharFormat chars;
    chars.setFontFamilies({fontName});
    chars.setFontPointSize(format.halfPoints / 2.0);
    chars.setFontWeight(format.bold ? QFont::Bold : QFont::Normal);
    chars.setFontItalic(format.italic);
    chars.setFontUnderline(format.underline);
    chars.setFontStrikeOut(format.strike);
    chars.setForeground(brushOf(format.colour));
    if (format.background != rtf::kAutomatic) {
        chars.setBackground(brushOf(format.background));
        if (format.colour == rtf::kAutomatic) {
            // On a ground of its own the screen's text colour might not be seen.
            chars.setForeground(readableOn(format.background));
            chars.setProperty(kAutomaticColour, true);
        }
    }
    if (format.script != rtf::Script::Normal) {
        chars.setVerticalAlignment(format.script == rtf::Script::Super
                                       ? QTextCharFormat::AlignSuperScript
                                       : QTextCharFormat::AlignSubScript);
    }
    return chars;
}

rtf::CharFormat fromScreen(const QTextCharFormat& format) {
    rtf::CharFormat chars;
    const double points = format.fontPointSize();
    chars.halfPoints = points > 0 ? static_cast<int>(std::lround(points * 2)) : 20;
    chars.bold = format.fontWeight() >= QFont::DemiBold;
    chars.italic = format.fontItalic();
    chars.underline = format.fontUnderline();
    chars.strike = format.fontStrikeOut();
    chars.background = colourOf(format.background());
    const bool automatic = format.boolProperty(kAutomaticColour) &&
                           format.foreground().color() == readableOn(chars.background);
    chars.colour = automatic ? rtf::kAutomatic : colourOf(format.foreground());
    if (format.verticalAlignment() == QTextCharFormat::AlignSuperScript) {
        chars.script = rtf::Script::Super;
    } else if (format.verticalAlignment() == QTextCharFormat::AlignSubScript) {
        chars.script = rtf::Script::Sub;
    }
    return chars;
}

QString fontName(const QTextCharFormat& format) {
    return format.fontFamilies().toStringList().value(0);
}

QTextBlockFormat toScreen(const rtf::ParFormat& format, double dotsPerInch) {
    QTextBlockFormat block;
    block.setProperty(kParagraph, QVariant::fromValue(format));
    block.setAlignment(screenAlignment(format.alignment));
    block.setLeftMargin(pixels(format.left, dotsPerInch));
    block.setRightMargin(pixels(format.right, dotsPerInch));
    block.setTopMargin(pixels(format.before, dotsPerInch));
    block.setBottomMargin(pixels(format.after, dotsPerInch));
    // A list's mark hangs by itself.
    block.setTextIndent(format.list == rtf::ListKind::None ? pixels(format.first, dotsPerInch) : 0);
    setLineSpacing(block, format, dotsPerInch);
    if (format.rightToLeft) {
        block.setLayoutDirection(Qt::RightToLeft);
    }
    QList<QTextOption::Tab> tabs;
    for (const int tab : format.tabs) {
        tabs.append(QTextOption::Tab(pixels(tab, dotsPerInch), QTextOption::LeftTab));
    }
    if (!tabs.isEmpty()) {
        block.setTabPositions(tabs);
    }
    return block;
}

rtf::ParFormat fromScreen(const QTextBlockFormat& format, const QTextList* list) {
    auto paragraph = format.hasProperty(kParagraph)
                         ? format.property(kParagraph).value<rtf::ParFormat>()
                         : foreignParagraph(format);
    const bool wasInList = paragraph.list != rtf::ListKind::None;
    if (wasInList && list == nullptr) {
        paragraph.list = rtf::ListKind::None;
        paragraph.left = std::max(0, paragraph.left + paragraph.first);
        paragraph.first = 0;
    } else if (!wasInList && list != nullptr) {
        const QTextListFormat look = list->format();
        paragraph.list = kindOf(look.style());
        paragraph.listBefore = look.numberPrefix();
        paragraph.listAfter =
            paragraph.list == rtf::ListKind::Bullet ? QString() : look.numberSuffix();
        paragraph.left += kIndentStep * std::max(1, look.indent());
        paragraph.first = -kIndentStep;
    }
    return paragraph;
}

QTextListFormat listFormat(const rtf::ParFormat& format) {
    static constexpr std::array<QTextListFormat::Style, 7> kStyles = {
        QTextListFormat::ListDisc,       QTextListFormat::ListDisc,
        QTextListFormat::ListDecimal,    QTextListFormat::ListLowerAlpha,
        QTextListFormat::ListUpperAlpha, QTextListFormat::ListLowerRoman,
        QTextListFormat::ListUpperRoman};
    QTextListFormat list;
    const bool numbered =
        format.list != rtf::ListKind::Bullet && format.list != rtf::ListKind::None;
    // The toolkit begins each list with 1; other numbers are painted beside it.
    list.setStyle(numbered && format.listStart != 1
                      ? QTextListFormat::ListStyleUndefined
                      : kStyles[static_cast<std::size_t>(format.list)]);
    list.setIndent(0);
    list.setNumberPrefix(format.listBefore);
    list.setNumberSuffix(format.listAfter);
    return list;
}

QTextCharFormat toScreen(const FontChoice& font) {
    rtf::CharFormat chars;
    chars.halfPoints = static_cast<int>(std::lround(font.points * 2));
    chars.bold = font.bold;
    chars.italic = font.italic;
    chars.underline = font.underline;
    chars.strike = font.strikethru;
    chars.colour = font.colour == 0 ? rtf::kAutomatic : swapRedBlue(font.colour);
    return toScreen(chars, font.name);
}

} // namespace yrw::richtext
