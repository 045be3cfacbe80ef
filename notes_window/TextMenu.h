#pragma once

#include "notes_window/NoteAttachments.h"

#include <QPoint>
#include <QTextCursor>

namespace yrw {

class IBand;
class ITool;
class RichTextBox;
class TextOptions;
class Toolbar;
class WindowContext;

/// The menu of the text: what it offers depends on what it opens on, an attachment or a word that
/// the dictionary does not know.
/// Lifetime: all that it is given outlives it. Thread: the user-interface thread.
class TextMenu {
public:
    TextMenu(RichTextBox& text, Toolbar& toolbar, TextOptions& options, WindowContext& context);

    /// Opens it at a point of the text's viewport.
    void popUp(const QPoint& at);
    /// A band is about to be shown.
    void prepare(IBand& band);

    // What the menu was opened on.
    void openAttachment() { m_attachments.open(m_object); }
    void saveAttachment() { m_attachments.saveAs(m_object); }
    /// Puts the word in the place of the unknown one that the tool offers.
    void replaceWord(const ITool& tool);
    void acceptWord();

    /// The user double-clicked an attachment; a failure is reported.
    void openObject(int index);

private:
    void prepareObjectTools(IBand& band);
    void prepareWordTools(IBand& band);

    RichTextBox& m_text;
    Toolbar& m_toolbar;
    TextOptions& m_options;
    WindowContext& m_context;
    NoteAttachments m_attachments;
    QPoint m_at;
    int m_object = -1;      ///< the attachment, as the text counts them; -1 for none
    QTextCursor m_misspelt; ///< the unknown word
};

} // namespace yrw
