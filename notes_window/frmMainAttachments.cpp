// Attachments, spelling and paper: what the editor does with files, dictionaries and printers.
#include "notes_window/frmMain.h"

#include "dialogs/Hourglass.h"
#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "notes_window/LongWork.h"
#include "notes_window/NoteAttachments.h"
#include "notes_window/NotePrint.h"
#include "notes_window/NoteTexts.h"
#include "notes_window/frmInsertAttachment.h"
#include "platform/forms/PageMargins.h"
#include "platform/rtf/FileName.h"
#include "platform/spelling/SpellChecker.h"
#include "platform/toolbar/Toolbar.h"

#include <QFileInfo>
#include <QLocale>
#include <QPrinter>
#include <QScopeGuard>

namespace yrw {

namespace {

constexpr qint64 kMegabyte = 1024LL * 1024;
constexpr qint64 kLargestMegabytes = 32;      ///< where the setting is no number
constexpr qint64 kLargeFile = 10 * kMegabyte; ///< asked about before it is attached
constexpr int kToolPasteKeepsLook = 41020;
constexpr int kToolCheckSpelling = 41021;
constexpr int kFirstWordTool = 41100;
constexpr int kWordTools = 5;
constexpr int kToolAcceptWord = 41105;

const QString kTextPopup = QStringLiteral("bndTextPopup");
const QString kPasteKeepsLook = QStringLiteral("PasteKeepsLook");
const QString kCheckSpelling = QStringLiteral("CheckSpelling");
const QString kPrintTitle = QStringLiteral("Print Note");

} // namespace

void frmMain::setUpEditor() {
    m_attachments = std::make_unique<NoteAttachments>(*m_rtxMain, prompt(), services().files);
    m_rtxMain->setPrompt(&prompt());
    m_rtxMain->setFileHandler(
        [this](const QString& path) { InsertFile(path, ObjectDisplay::Icon); });
    m_rtxMain->setPasteWatch([this]() -> RichTextBox::LoadStep {
        const auto work = std::make_shared<LongWork>(services().clock, this,
                                                     QStringLiteral("Pasting: %1 %."), 32);
        return [work](int percent) { return work->goOn(percent); };
    });
    connect(m_rtxMain, &RichTextBox::objectActivated, this, &frmMain::rtxMain_ObjectActivated);
    m_connections.push_back(
        m_atbMain->BandOpen.connect([this](IBand& band) { atbMain_BandOpen(band); }));
    const qint64 largest = settings().text(QStringLiteral("LargestAttachment")).toLongLong();
    m_rtxMain->setLargestFile((largest > 0 ? largest : kLargestMegabytes) * kMegabyte);
    m_rtxMain->setPasteKeepsLook(settings().boolean(kPasteKeepsLook));
    setToolChecked(kToolPasteKeepsLook, settings().boolean(kPasteKeepsLook));
    applySpelling();
}

// Attaching.

void frmMain::openInsertAttachment(ObjectDisplay display) {
    if (!m_note) {
        return;
    }
    if (m_mfrmInsert) {
        m_mfrmInsert->unload();
    }
    frmInsertAttachment dialog(this);
    m_mfrmInsert = &dialog;
    const Connection chosen =
        dialog.Continue.connect([this](const QString& file, ObjectDisplay shown, bool& cancel) {
            mfrmInsert_Continue(file, shown, cancel);
        });
    dialog.Initialise(Ref<INotesAddIn>(&m_context.addIn()), display);
    dialog.showModal(this);
    m_rtxMain->setFocus();
}

void frmMain::mfrmInsert_Continue(const QString& Filename, ObjectDisplay DisplayType,
                                  bool& Cancel) {
    Cancel = !InsertFile(Filename, DisplayType);
}

bool frmMain::InsertFile(const QString& Filename, ObjectDisplay DisplayType) {
    if (!m_note) {
        return true;
    }
    bool wanted = true;
    ShowStatus(QStringLiteral("Inserting attachment, please wait..."));
    {
        const Hourglass hourglass(prompt());
        reportErrors(services().utility, QStringLiteral("YRWNotes.frmMain.InsertFile"),
                     QStringLiteral("Could Not Insert Object"), QStringLiteral("Yarrowen Error"),
                     [&] {
                         wanted = mayBeLarge(Filename);
                         if (wanted) {
                             m_rtxMain->insertFile(Filename, DisplayType);
                         }
                     });
    }
    ShowStatus(QString());
    return wanted;
}

/// Asks about a large file. One that is too large is not asked about: inserting it is refused.
bool frmMain::mayBeLarge(const QString& file) {
    const qint64 size = QFileInfo(file).size();
    return size <= kLargeFile || size > m_rtxMain->largestFile() ||
           prompt().question(
               QStringLiteral("\"%1\" has %2 MB. A note that holds it takes long to open and to "
                              "save.\r\rDo you want to attach it all the same?")
                   .arg(rtf::shownText(QFileInfo(file).fileName()))
                   .arg(size / kMegabyte),
               QStringLiteral("Large File"), PromptButtons::YesNo, PromptIcon::Question,
               PromptAnswer::No) == PromptAnswer::Yes;
}

void frmMain::rtxMain_ObjectActivated(int index) {
    reportErrors(services().utility, QStringLiteral("YRWNotes.frmMain.OpenAttachment"),
                 QStringLiteral("Could Not Open Object"), QStringLiteral("Yarrowen Error"),
                 [&] { m_attachments->open(index); });
}

void frmMain::openPopupObject() {
    m_attachments->open(m_popupObject);
}

void frmMain::savePopupObject() {
    m_attachments->saveAs(m_popupObject);
}

// The text's menu.

void frmMain::atbMain_BandOpen(IBand& band) {
    if (band.key() == kTextPopup) {
        prepareObjectTools(band);
        prepareWordTools(band);
    }
}

void frmMain::prepareObjectTools(IBand& band) {
    const int under = m_rtxMain->objectAt(m_popupPoint);
    m_popupObject = under >= 0 ? under : m_rtxMain->currentObject();
    for (const char* key : {"tooOpenAttachment", "tooSaveAttachment"}) {
        if (ITool* tool = band.findTool(QLatin1String(key))) {
            tool->setVisible(m_popupObject >= 0);
        }
    }
}

/// Offers words for an unknown one, as many as there are; the tools are made when first needed.
void frmMain::prepareWordTools(IBand& band) {
    m_misspelt = m_rtxMain->misspellingAt(m_popupPoint);
    const bool unknown = !m_misspelt.isNull() && !m_rtxMain->isReadOnly();
    const QStringList words =
        unknown ? m_spellChecker->suggestions(m_misspelt.selectedText()) : QStringList();
    for (int i = 0; i <= kWordTools; ++i) {
        const bool accept = i == kWordTools;
        const QString key = QStringLiteral("tooWord%1").arg(i);
        ITool* tool = band.findTool(key);
        if (tool == nullptr) {
            tool = &band.addTool(accept ? kToolAcceptWord : kFirstWordTool + i, key);
            tool->setBeginsGroup(i == 0 || accept);
        }
        tool->setVisible(unknown && (accept || i < words.size()));
        tool->setCaption(accept ? QStringLiteral("&Accept This Word")
                                : QString(words.value(i)).replace(u'&', QStringLiteral("&&")));
    }
}

void frmMain::replaceWord(const ITool& tool) {
    m_misspelt.insertText(
        QString(tool.caption()).replace(QStringLiteral("&&"), QStringLiteral("&")));
}

void frmMain::acceptWord() {
    m_spellChecker->accept(m_misspelt.selectedText());
    m_rtxMain->checkSpellingAgain();
}

// Settings of the editor.

/// The words are underlined where the user's language has a dictionary and the setting is on.
void frmMain::applySpelling() {
    if (!m_spellChecker) {
        const QString named = settings().text(QStringLiteral("SpellingLanguage"));
        m_spellChecker =
            openDictionary(named.isEmpty() ? QLocale::system().name() : named, dictionaryFolders());
    }
    const bool on = m_spellChecker && settings().boolean(kCheckSpelling);
    m_rtxMain->setSpellChecker(on ? m_spellChecker : nullptr);
    setToolEnabled(kToolCheckSpelling, bool(m_spellChecker));
    setToolChecked(kToolCheckSpelling, on);
}

void frmMain::toggleSpelling(const ITool& tool) {
    settings().setBoolean(kCheckSpelling, !tool.isChecked());
    applySpelling();
}

void frmMain::togglePasteKeepsLook(const ITool& tool) {
    const bool keep = !tool.isChecked();
    settings().setBoolean(kPasteKeepsLook, keep);
    setToolChecked(tool.id(), keep);
    m_rtxMain->setPasteKeepsLook(keep);
}

// Paper.

void frmMain::paintNote(QPrinter& printer) {
    const QString author =
        m_names.of(HostUtility::NullToText(m_note->value(QStringLiteral("RecordUserCode"))));
    QStringList details{m_owner ? ownerText() : QString(), author,
                        noteDateText(m_note->value(QStringLiteral("Date")).toDateTime())};
    details.removeAll(QString());
    yrw::printNote(printer, *m_rtxMain,
                   {HostUtility::NullToText(m_note->value(QStringLiteral("Subject"))),
                    details.join(QStringLiteral(" \u00b7 "))});
}

void frmMain::printNote() {
    if (!m_note) {
        return;
    }
    ShowStatus(QStringLiteral("Printing..."));
    const auto done = qScopeGuard([this] { ShowStatus(QStringLiteral("Done")); });
    prompt().print(kPrintTitle, [this](QPrinter& printer) { paintNote(printer); });
}

void frmMain::previewNote() {
    if (m_note) {
        prompt().preview(QStringLiteral("Print Preview"),
                         [this](QPrinter& printer) { paintNote(printer); });
    }
}

void frmMain::exportPdf() {
    if (!m_note) {
        return;
    }
    FileRequest request;
    request.title = QStringLiteral("Export as PDF");
    request.filter = QStringLiteral("PDF Document (*.pdf)|*.pdf|");
    const QString subject = m_note->value(QStringLiteral("Subject")).toString();
    // A subject is no path: what separates one is only a character of it.
    request.name = rtf::baseName(QString(subject).replace(u'/', u' ').replace(u'\\', u' ') +
                                 QStringLiteral(".pdf"));
    const QString path = prompt().saveFile(request);
    if (path.isEmpty()) {
        return;
    }
    ShowStatus(QStringLiteral("Printing..."));
    const auto done = qScopeGuard([this] { ShowStatus(QStringLiteral("Done")); });
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    printer.setDocName(m_note->value(QStringLiteral("Subject")).toString());
    printer.setPageMargins(kPageMargins, QPageLayout::Millimeter);
    paintNote(printer);
    if (printer.printerState() == QPrinter::Error || QFileInfo(path).size() == 0) {
        throw AutomationError(kErrorDiskFull, QStringLiteral("YRWNotes.frmMain.ExportPdf"),
                              QStringLiteral("\"%1\" cannot be written.").arg(path));
    }
}

} // namespace yrw
