#pragma once

#include <memory>

namespace yrw {

class NoteTools;
class RichTextBox;
class SpellChecker;
class WindowContext;

/// What the settings say about the editor: spelling, pasting, the largest attachment.
/// Lifetime: all that it is given outlives it. Thread: the user-interface thread.
class TextOptions {
public:
    TextOptions(RichTextBox& text, NoteTools& tools, WindowContext& context);

    void apply();
    void setPasteKeepsLook(bool keep);
    void setChecksSpelling(bool on);
    /// Nothing where the user's language has no dictionary.
    [[nodiscard]] SpellChecker* spellChecker() const { return m_spellChecker.get(); }

private:
    void applySpelling();

    RichTextBox& m_text;
    NoteTools& m_tools;
    WindowContext& m_context;
    std::shared_ptr<SpellChecker> m_spellChecker;
};

} // namespace yrw
