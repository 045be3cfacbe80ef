#pragma once

#include "notes_window/NoteTool.h"
#include "notes_window/NotesList.h"
#include "notes_window/TextTools.h"

namespace yrw {

class EditedNote;
class RichTextBox;
class Toolbar;
class WindowContext;

/// The states of the window's tools: which can be used, which are ticked, what the combos show.
/// Lifetime: all that it is given outlives it. Thread: the user-interface thread.
class NoteTools {
public:
    NoteTools(Toolbar& toolbar, RichTextBox& text, const EditedNote& edited,
              WindowContext& context);

    /// Brings the tools in line with the note shown and with the settings.
    void update();
    /// Brings the save tool in line with what the user typed.
    void followText();
    /// Brings the tools of formats in line with the selected text.
    void followSelection();

    void setEnabled(NoteTool tool, bool enabled);
    void setChecked(NoteTool tool, bool checked);
    /// The entry that the show-type combo shows; where that shows none, active notes.
    [[nodiscard]] ShowType showType() const;
    void setShowType(ShowType type);
    /// Ticks the tool of a show type, and no other of them.
    void tickShowType(ShowType type);
    [[nodiscard]] bool showsMineOnly() const;

private:
    void enableBands(bool whole, bool shown);
    void turnWritingOff();

    Toolbar& m_toolbar;
    RichTextBox& m_text;
    const EditedNote& m_edited;
    WindowContext& m_context;
    TextTools m_textTools;
};

} // namespace yrw
