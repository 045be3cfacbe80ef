#include "notes_window/NoteAttachments.h"

#include "platform/component/AutomationError.h"
#include "platform/prompt/Prompt.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/rtf/EmbeddedObject.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QSaveFile>
#include <QUrl>

#include <algorithm>

namespace yrw {

namespace {

const QString kOpenTitle = QStringLiteral("Open Attachment");
const QString kSource = QStringLiteral("YRWNotes.frmMain.Attachments");

/// Programs of any system: what is harmless here may be sent on.
const QStringList kProgramSuffixes{
    QStringLiteral("action"),   QStringLiteral("apk"), QStringLiteral("app"),
    QStringLiteral("appimage"), QStringLiteral("bat"), QStringLiteral("cmd"),
    QStringLiteral("com"),      QStringLiteral("cpl"), QStringLiteral("deb"),
    QStringLiteral("desktop"),  QStringLiteral("exe"), QStringLiteral("flatpakref"),
    QStringLiteral("hta"),      QStringLiteral("inf"), QStringLiteral("jar"),
    QStringLiteral("jnlp"),     QStringLiteral("js"),  QStringLiteral("jse"),
    QStringLiteral("lnk"),      QStringLiteral("msi"), QStringLiteral("msp"),
    QStringLiteral("pif"),      QStringLiteral("ps1"), QStringLiteral("reg"),
    QStringLiteral("rpm"),      QStringLiteral("run"), QStringLiteral("scf"),
    QStringLiteral("scr"),      QStringLiteral("sh"),  QStringLiteral("snap"),
    QStringLiteral("url"),      QStringLiteral("vbe"), QStringLiteral("vbs"),
    QStringLiteral("workbook"), QStringLiteral("ws"),  QStringLiteral("wsf"),
    QStringLiteral("xpi"),
};
const QStringList kProgramTypes{
    QStringLiteral("application/x-executable"),
    QStringLiteral("application/x-sharedlib"),
    QStringLiteral("application/x-ms-dos-executable"),
    QStringLiteral("application/vnd.microsoft.portable-executable"),
    QStringLiteral("application/x-desktop"),
    QStringLiteral("application/x-mswinurl"),
    QStringLiteral("application/x-ms-shortcut"),
    QStringLiteral("application/x-java-archive"),
    QStringLiteral("application/vnd.debian.binary-package"),
    QStringLiteral("application/x-rpm"),
    QStringLiteral("application/javascript"),
};

bool isProgramType(const QMimeType& type) {
    return std::any_of(kProgramTypes.begin(), kProgramTypes.end(),
                       [&](const QString& program) { return type.inherits(program); });
}

} // namespace

bool isProgram(const QString& name, const QByteArray& data) {
    const QMimeDatabase types;
    const auto ofName = types.mimeTypesForFileName(name);
    return kProgramSuffixes.contains(QFileInfo(name).suffix().toLower()) ||
           std::any_of(ofName.begin(), ofName.end(), isProgramType) ||
           isProgramType(types.mimeTypeForData(data));
}

NoteAttachments::NoteAttachments(RichTextBox& box, Prompt& prompt) : m_box(box), m_prompt(prompt) {}

void NoteAttachments::tellNoFile(int index) {
    m_prompt.message(QStringLiteral("\"%1\" holds no file: it is a link, or its data is damaged.")
                         .arg(m_box.objectName(index)),
                     QStringLiteral("Attachment"), PromptIcon::Information);
}

void NoteAttachments::open(int index) {
    const auto file = m_box.objectFile(index);
    if (!file) {
        tellNoFile(index);
        return;
    }
    const QString type =
        QMimeDatabase().mimeTypeForFileNameAndData(file->label, file->data).comment();
    if (isProgram(file->label, file->data)) {
        m_prompt.message(QStringLiteral("\"%1\" (%2) is not opened, because it would be run as a "
                                        "program.\r\rYou can save it from its menu.")
                             .arg(file->label, type),
                         kOpenTitle, PromptIcon::Exclamation);
        return;
    }
    const PromptAnswer answer = m_prompt.question(
        QStringLiteral("Open a copy of \"%1\" (%2)?\r\rWhat you change in the copy does not come "
                       "back into the note. Open only files that you expect.")
            .arg(file->label, type),
        kOpenTitle, PromptButtons::YesNo, PromptIcon::Question, PromptAnswer::Yes);
    if (answer != PromptAnswer::Yes) {
        return;
    }
    const QString copy = m_box.objectCopy(index);
    if (copy.isEmpty()) {
        throw AutomationError(kErrorDiskFull, kSource,
                              QStringLiteral("The temporary folder cannot be written."));
    }
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(copy))) {
        m_prompt.message(QStringLiteral("No program was found that opens \"%1\" (%2).\r\rYou can "
                                        "save it from its menu.")
                             .arg(file->label, type),
                         kOpenTitle, PromptIcon::Information);
    }
}

void NoteAttachments::saveAs(int index) {
    const auto file = m_box.objectFile(index);
    if (!file) {
        tellNoFile(index);
        return;
    }
    FileRequest request;
    request.title = QStringLiteral("Save Attachment");
    request.filter = QStringLiteral("Anything (*.*)|*.*|");
    request.name = file->label;
    const QString path = m_prompt.saveFile(request);
    if (path.isEmpty()) {
        return;
    }
    QSaveFile out(path);
    if (!out.open(QIODevice::WriteOnly) || out.write(file->data) != file->data.size() ||
        !out.commit()) {
        throw AutomationError(
            kErrorDiskFull, kSource,
            QStringLiteral("\"%1\" cannot be written: %2").arg(path, out.errorString()));
    }
}

} // namespace yrw
