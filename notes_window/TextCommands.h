#pragma once

#include <QString>

namespace yrw {

class RichTextBox;
class UserNames;
class WindowContext;

/// What the user does with the text of the note beyond typing: formats, fonts, stamps.
/// Lifetime: all that it is given outlives it. Thread: the user-interface thread.
class TextCommands {
public:
    TextCommands(RichTextBox& text, UserNames& names, WindowContext& context);

    [[nodiscard]] RichTextBox& text() const { return m_text; }
    void indentMore();
    void indentLess();
    void removeSelected();
    void insertDate();
    void insertTime();
    /// Date, time and the user's name, bold, as a paragraph of their own.
    void insertStamp();
    void chooseColour();
    void chooseFont();
    /// Lets the user choose the font of new text.
    void setDefaultFont();
    void applyDefaultFont();

private:
    void indentBy(int twips);

    RichTextBox& m_text;
    UserNames& m_names;
    WindowContext& m_context;
};

} // namespace yrw
