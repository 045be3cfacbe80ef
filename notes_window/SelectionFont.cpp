#include "notes_window/SelectionFont.h"

#include "platform/richtext/RichTextBox.h"

#include <QTextCursor>

namespace yrw {

using richtext::SelectionFormat;

FontChoice fontOfSelection(const RichTextBox& box) {
    FontChoice font;
    const SelectionFormat& selection = box.selection();
    const auto take = [&font](FontPart part, auto& value, const auto& selected) {
        font.mixed.setFlag(part, !selected);
        value = selected.value_or(value);
    };
    take(FontPart::Name, font.name, selection.fontName());
    take(FontPart::Points, font.points, selection.fontSize());
    take(FontPart::Bold, font.bold, selection.bold());
    take(FontPart::Italic, font.italic, selection.italic());
    take(FontPart::Underline, font.underline, selection.underline());
    take(FontPart::Strikethru, font.strikethru, selection.strikeThru());
    take(FontPart::Colour, font.colour, selection.colour());
    return font;
}

void setFontOfSelection(RichTextBox& box, const FontChoice& font) {
    QTextCursor oneStep = box.textCursor();
    oneStep.beginEditBlock();
    const auto set = [&](FontPart part, auto setter, const auto& value) {
        if (!font.mixed.testFlag(part)) {
            (box.selection().*setter)(value);
        }
    };
    set(FontPart::Name, &SelectionFormat::setFontName, font.name);
    set(FontPart::Points, &SelectionFormat::setFontSize, font.points);
    set(FontPart::Bold, &SelectionFormat::setBold, font.bold);
    set(FontPart::Italic, &SelectionFormat::setItalic, font.italic);
    set(FontPart::Underline, &SelectionFormat::setUnderline, font.underline);
    set(FontPart::Strikethru, &SelectionFormat::setStrikeThru, font.strikethru);
    set(FontPart::Colour, &SelectionFormat::setColour, font.colour);
    oneStep.endEditBlock();
}

} // namespace yrw
