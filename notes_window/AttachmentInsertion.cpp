#include "notes_window/AttachmentInsertion.h"

#include "dialogs/Hourglass.h"
#include "notes_window/EditedNote.h"
#include "notes_window/WindowContext.h"
#include "notes_window/frmInsertAttachment.h"
#include "platform/rtf/FileName.h"

#include <QFileInfo>

namespace yrw {

namespace {

constexpr qint64 kMegabyte = 1024LL * 1024;
constexpr qint64 kLargeFile = 10 * kMegabyte; ///< asked about before it is attached

} // namespace

AttachmentInsertion::AttachmentInsertion(RichTextBox& text, const EditedNote& edited,
                                         WindowContext& context)
    : m_text(text), m_edited(edited), m_context(context) {
    m_text.transfer().setFileHandler(
        [this](const QString& path) { InsertFile(path, ObjectDisplay::Icon); });
}

void AttachmentInsertion::openDialog(ObjectDisplay display) {
    if (!m_edited.note()) {
        return;
    }
    if (m_mfrmInsert) {
        m_mfrmInsert->unload();
    }
    frmInsertAttachment dialog(m_context.notes(), &m_context.window());
    m_mfrmInsert = &dialog;
    const Connection chosen =
        dialog.Continue.connect([this](const QString& file, ObjectDisplay shown, bool& cancel) {
            mfrmInsert_Continue(file, shown, cancel);
        });
    dialog.Initialise(m_context.parent(), display);
    dialog.showModal(&m_context.window());
    m_text.setFocus();
}

void AttachmentInsertion::mfrmInsert_Continue(const QString& Filename, ObjectDisplay DisplayType,
                                              bool& Cancel) {
    Cancel = !InsertFile(Filename, DisplayType);
}

bool AttachmentInsertion::InsertFile(const QString& Filename, ObjectDisplay DisplayType) {
    if (!m_edited.note()) {
        return true;
    }
    bool wanted = true;
    m_context.showStatus(QStringLiteral("Inserting attachment, please wait..."));
    {
        const Hourglass hourglass(m_context.prompt());
        reportErrors(m_context.services().utility, QStringLiteral("YRWNotes.frmMain.InsertFile"),
                     QStringLiteral("Could Not Insert Object"), QStringLiteral("Yarrowen Error"),
                     [&] {
                         wanted = mayBeLarge(Filename);
                         if (wanted) {
                             m_text.objects().insertFile(Filename, DisplayType);
                         }
                     });
    }
    m_context.showStatus(QString());
    return wanted;
}

/// Asks about a large file. One that is too large is not asked about: inserting it is refused.
bool AttachmentInsertion::mayBeLarge(const QString& file) {
    const qint64 size = QFileInfo(file).size();
    return size <= kLargeFile || size > m_text.objects().largestFile() ||
           m_context.prompt().question(
               QStringLiteral("\"%1\" has %2 MB. A note that holds it takes long to open and to "
                              "save.\r\rDo you want to attach it all the same?")
                   .arg(rtf::shownText(QFileInfo(file).fileName()))
                   .arg(size / kMegabyte),
               QStringLiteral("Large File"), PromptButtons::YesNo, PromptIcon::Question,
               PromptAnswer::No) == PromptAnswer::Yes;
}

} // namespace yrw
