#include "notes_window/SelectionFont.h"

#include "platform/richtext/RichTextBox.h"

#include <QTextCursor>

namespace yrw {

FontChoice fontOfSelection(const RichTextBox& box) {
    FontChoice font;
    const auto take = [&font](FontPart part, auto& value, const auto& selected) {
        font.mixed.setFlag(part, !selected);
        value = selected.value_or(value);
    };
    take(FontPart::Name, font.name, box.SelFontName());
    take(FontPart::Points, font.points, box.SelFontSize());
    take(FontPart::Bold, font.bold, box.SelBold());
    take(FontPart::Italic, font.italic, box.SelItalic());
    take(FontPart::Underline, font.underline, box.SelUnderline());
    take(FontPart::Strikethru, font.strikethru, box.SelStrikeThru());
    take(FontPart::Colour, font.colour, box.SelColor());
    return font;
}

void setFontOfSelection(RichTextBox& box, const FontChoice& font) {
    QTextCursor oneStep = box.textCursor();
    oneStep.beginEditBlock();
    const auto set = [&](FontPart part, auto setter, const auto& value) {
        if (!font.mixed.testFlag(part)) {
            (box.*setter)(value);
        }
    };
    set(FontPart::Name, &RichTextBox::setSelFontName, font.name);
    set(FontPart::Points, &RichTextBox::setSelFontSize, font.points);
    set(FontPart::Bold, &RichTextBox::setSelBold, font.bold);
    set(FontPart::Italic, &RichTextBox::setSelItalic, font.italic);
    set(FontPart::Underline, &RichTextBox::setSelUnderline, font.underline);
    set(FontPart::Strikethru, &RichTextBox::setSelStrikeThru, font.strikethru);
    set(FontPart::Colour, &RichTextBox::setSelColor, font.colour);
    oneStep.endEditBlock();
}

} // namespace yrw
