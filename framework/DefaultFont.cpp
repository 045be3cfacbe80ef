#include "framework/DefaultFont.h"

namespace yrw {

namespace {

const QString kName = QStringLiteral("DefaultFontName");
const QString kSize = QStringLiteral("DefaultFontSize");
const QString kBold = QStringLiteral("DefaultFontBold");
const QString kItalic = QStringLiteral("DefaultFontItalic");
const QString kUnderline = QStringLiteral("DefaultFontUnderline");
const QString kStrikethru = QStringLiteral("DefaultFontStrikethru");
const QString kColour = QStringLiteral("DefaultFontColour");

} // namespace

FontChoice defaultFont(const NotesSettings& settings) {
    FontChoice font;
    font.name = settings.text(kName);
    bool isNumber = false;
    const double points = settings.text(kSize).toDouble(&isNumber);
    font.points = isNumber && points > 0 ? points : 10;
    font.bold = settings.boolean(kBold);
    font.italic = settings.boolean(kItalic);
    font.underline = settings.boolean(kUnderline);
    font.strikethru = settings.boolean(kStrikethru);
    font.colour = settings.text(kColour).toInt();
    return font;
}

void storeDefaultFont(NotesSettings& settings, const FontChoice& font) {
    settings.setText(kName, font.name);
    settings.setText(kSize, QString::number(font.points));
    settings.setBoolean(kBold, font.bold);
    settings.setBoolean(kItalic, font.italic);
    settings.setBoolean(kStrikethru, font.strikethru);
    settings.setBoolean(kUnderline, font.underline);
    settings.setText(kColour, QString::number(font.colour));
}

} // namespace yrw
