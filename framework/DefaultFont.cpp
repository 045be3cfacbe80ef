#include "framework/DefaultFont.h"

namespace yrw {

FontChoice defaultFont(const NotesSettings& settings) {
    FontChoice font;
    font.name = settings.get(setting::kDefaultFontName);
    const double points = settings.get(setting::kDefaultFontSize);
    font.points = points > 0 ? points : 10;
    font.bold = settings.get(setting::kDefaultFontBold);
    font.italic = settings.get(setting::kDefaultFontItalic);
    font.underline = settings.get(setting::kDefaultFontUnderline);
    font.strikethru = settings.get(setting::kDefaultFontStrikethru);
    font.colour = static_cast<int>(settings.get(setting::kDefaultFontColour));
    return font;
}

void storeDefaultFont(NotesSettings& settings, const FontChoice& font) {
    settings.set(setting::kDefaultFontName, font.name);
    settings.set(setting::kDefaultFontSize, font.points);
    settings.set(setting::kDefaultFontBold, font.bold);
    settings.set(setting::kDefaultFontItalic, font.italic);
    settings.set(setting::kDefaultFontStrikethru, font.strikethru);
    settings.set(setting::kDefaultFontUnderline, font.underline);
    settings.set(setting::kDefaultFontColour, font.colour);
}

} // namespace yrw
