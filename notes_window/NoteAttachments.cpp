#include "notes_window/NoteAttachments.h"

#include "platform/component/AutomationError.h"
#include "platform/disk/WholeFile.h"
#include "platform/files/FileSystem.h"
#include "platform/prompt/Prompt.h"
#include "platform/richtext/EmbeddedObjects.h"
#include "platform/rtf/EmbeddedObject.h"
#include "platform/rtf/FileName.h"

#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QUrl>

#include <algorithm>

namespace yrw {

namespace {

const QString kOpenTitle = QStringLiteral("Open Attachment");
const QString kSaveTitle = QStringLiteral("Save Attachment");
const QString kSource = QStringLiteral("YRWNotes.frmMain.Attachments");

/// Programs of any system: what is harmless here may be sent on.
constexpr char kProgramSuffixes[] =
    "action ade adp apk app appimage application appref-ms appx asp bash bat chm class "
    "cmd com command cpl csh deb desktop dll elf exe fish flatpak flatpakref flatpakrepo "
    "gadget hlp hta inf ins jar jnlp js jse jsp ksh library-ms lnk mde mjs msc msh msh1 "
    "msh2 mshxml msi msix msp mst ocx pif pkg pl ps1 ps1xml psc1 psd1 psm1 py pyc pyw "
    "pyz rb reg rpm run scf scr sct search-ms service settingcontent-ms sh shb shs snap "
    "so sys tcl url vb vbe vbs vbscript website workbook workflow ws wsc wsf wsh xbap "
    "xll xpi zsh ";
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

bool isProgramSuffix(const QString& suffix) {
    static const QStringList programs =
        QString::fromLatin1(kProgramSuffixes).split(u' ', Qt::SkipEmptyParts);
    return programs.contains(suffix, Qt::CaseInsensitive);
}

bool isProgramType(const QMimeType& type) {
    return std::any_of(kProgramTypes.begin(), kProgramTypes.end(),
                       [&](const QString& program) { return type.inherits(program); });
}

} // namespace

bool isProgram(const QString& shown, const QByteArray& data) {
    const QMimeDatabase types;
    const QString name = rtf::baseName(shown); // as it would be saved
    const auto ofName = types.mimeTypesForFileName(name);
    return isProgramSuffix(QFileInfo(name).suffix()) ||
           std::any_of(ofName.begin(), ofName.end(), isProgramType) ||
           isProgramType(types.mimeTypeForData(data));
}

NoteAttachments::NoteAttachments(richtext::EmbeddedObjects& objects, Prompt& prompt,
                                 const FileSystem& files)
    : m_objects(objects), m_prompt(prompt), m_files(files) {}

void NoteAttachments::tellNoFile(int index) {
    const QString link = m_objects.link(index);
    const QString text =
        link.isEmpty()
            ? QStringLiteral("The data of \"%1\" is damaged: no file can be taken from it.")
                  .arg(m_objects.name(index))
            : QStringLiteral("\"%1\" holds no file but a link to this one:\r%2\r\rOpen it there, "
                             "or save a copy of it from the menu of the link.")
                  .arg(m_objects.name(index), rtf::shownText(link));
    m_prompt.message(text, QStringLiteral("Attachment"), PromptIcon::Information);
}

void NoteAttachments::open(int index) {
    const auto file = m_objects.file(index);
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
        kOpenTitle, PromptButtons::YesNo, PromptIcon::Question, PromptAnswer::No);
    if (answer != PromptAnswer::Yes) {
        return;
    }
    const QString copy = m_objects.copy(index);
    if (copy.isEmpty()) {
        throw AutomationError(kErrorFileWrite, kSource,
                              QStringLiteral("The temporary folder cannot be written."));
    }
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(copy))) {
        m_prompt.message(QStringLiteral("No program was found that opens \"%1\" (%2).\r\rYou can "
                                        "save it from its menu.")
                             .arg(file->label, type),
                         kOpenTitle, PromptIcon::Information);
    }
}

/// The file that a link leads to, when the user agrees to read it; nothing when it is not there.
std::optional<rtf::PackagedFile> NoteAttachments::linkedFile(const QString& path, bool& refused) {
    if (path.isEmpty() || !m_files.fileExists(path)) {
        return std::nullopt;
    }
    const QString found = m_files.resolve(path);
    const PromptAnswer answer = m_prompt.question(
        QStringLiteral("The note holds a link to this file:\r%1\r\rDo you want to save a copy of "
                       "it?")
            .arg(rtf::shownText(found)),
        kSaveTitle, PromptButtons::YesNo, PromptIcon::Question, PromptAnswer::Yes);
    refused = answer != PromptAnswer::Yes;
    QFile file(found);
    if (refused || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return rtf::PackagedFile{QFileInfo(found).fileName(), found, file.readAll()};
}

/// What can be saved of an object; the user was told where that is nothing, or only a picture.
std::optional<rtf::PackagedFile> NoteAttachments::fileToSave(int index) {
    if (const auto file = m_objects.file(index)) {
        return file;
    }
    bool refused = false;
    const QString link = m_objects.link(index);
    if (const auto file = linkedFile(link, refused); file || refused) {
        return file;
    }
    const QString reason =
        link.isEmpty()
            ? QStringLiteral("The data of \"%1\" is damaged.").arg(m_objects.name(index))
            : QStringLiteral("\"%1\" is a link to this file, which cannot be reached:\r%2\r\rMake "
                             "its drive or folder available and try again.")
                  .arg(m_objects.name(index), rtf::shownText(link));
    const auto picture = m_objects.picture(index);
    if (!picture) {
        m_prompt.message(reason, kSaveTitle, PromptIcon::Information);
        return std::nullopt;
    }
    const PromptAnswer answer = m_prompt.question(
        reason + QStringLiteral("\r\rDo you want to save the picture that the note shows instead?"),
        kSaveTitle, PromptButtons::YesNo, PromptIcon::Question, PromptAnswer::Yes);
    return answer == PromptAnswer::Yes ? picture : std::nullopt;
}

void NoteAttachments::saveAs(int index) {
    if (const auto file = fileToSave(index)) {
        write(*file);
    }
}

void NoteAttachments::write(const rtf::PackagedFile& file) {
    FileRequest request;
    request.title = kSaveTitle;
    request.filter = QStringLiteral("Anything (*.*)|*.*|");
    request.name = rtf::baseName(file.label);
    const QString path = m_prompt.saveFile(request);
    if (path.isEmpty()) {
        return;
    }
    if (const auto problem = writeWholeFile(path, file.data)) {
        throw AutomationError(kErrorFileWrite, kSource,
                              QStringLiteral("\"%1\" cannot be written: %2").arg(path, *problem));
    }
}

} // namespace yrw
