#pragma once

#include "platform/richtext/RichTextBox.h"

#include <QPointer>

namespace yrw {

class EditedNote;
class WindowContext;
class frmInsertAttachment;

/// Puts files into the text of the note: those that the user chooses in the dialog, drops or
/// pastes.
/// Lifetime: all that it is given outlives it. Thread: the user-interface thread.
class AttachmentInsertion {
public:
    AttachmentInsertion(RichTextBox& text, const EditedNote& edited, WindowContext& context);

    /// Opens the dialog; one that is open already is closed.
    void openDialog(ObjectDisplay display);
    /// Inserts a file at the cursor; false when the user does not want it after all. A failure is
    /// reported.
    bool InsertFile(const QString& Filename, ObjectDisplay DisplayType);

private:
    void mfrmInsert_Continue(const QString& Filename, ObjectDisplay DisplayType, bool& Cancel);
    [[nodiscard]] bool mayBeLarge(const QString& file);

    RichTextBox& m_text;
    const EditedNote& m_edited;
    WindowContext& m_context;
    QPointer<frmInsertAttachment> m_mfrmInsert; ///< while it is open
};

} // namespace yrw
