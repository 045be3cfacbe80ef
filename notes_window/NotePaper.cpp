#include "notes_window/NotePaper.h"

#include "notes_window/EditedNote.h"
#include "notes_window/NotePrint.h"
#include "notes_window/NoteTexts.h"
#include "notes_window/NotesList.h"
#include "notes_window/OwnerText.h"
#include "notes_window/UserNames.h"
#include "notes_window/WindowContext.h"
#include "platform/component/AutomationError.h"
#include "platform/forms/PageMargins.h"
#include "platform/rtf/FileName.h"

#include <QFileInfo>
#include <QPrinter>
#include <QScopeGuard>

namespace yrw {

NotePaper::NotePaper(RichTextBox& text, const EditedNote& edited, const NotesList& list,
                     UserNames& names, WindowContext& context)
    : m_text(text), m_edited(edited), m_list(list), m_names(names), m_context(context) {}

void NotePaper::paint(QPrinter& printer) {
    Note& note = *m_edited.note();
    QStringList details{
        m_list.owner() ? ownerText(*m_list.owner(), m_context.notes()) : QString(),
        m_names.of(HostUtility::NullToText(note.value(QStringLiteral("RecordUserCode")))),
        noteDateText(note.value(QStringLiteral("Date")).toDateTime())};
    details.removeAll(QString());
    printNote(printer, m_text, {m_edited.subject(), details.join(QStringLiteral(" \u00b7 "))});
}

void NotePaper::print() {
    if (!m_edited.note()) {
        return;
    }
    m_context.showStatus(QStringLiteral("Printing..."));
    const auto done = qScopeGuard([this] { m_context.showStatus(QStringLiteral("Done")); });
    m_context.prompt().print(QStringLiteral("Print Note"),
                             [this](QPrinter& printer) { paint(printer); });
}

void NotePaper::preview() {
    if (m_edited.note()) {
        m_context.prompt().preview(QStringLiteral("Print Preview"),
                                   [this](QPrinter& printer) { paint(printer); });
    }
}

void NotePaper::exportPdf() {
    if (!m_edited.note()) {
        return;
    }
    FileRequest request;
    request.title = QStringLiteral("Export as PDF");
    request.filter = QStringLiteral("PDF Document (*.pdf)|*.pdf|");
    // A subject is no path: what separates one is only a character of it.
    request.name = rtf::baseName(m_edited.subject().replace(u'/', u' ').replace(u'\\', u' ') +
                                 QStringLiteral(".pdf"));
    const QString path = m_context.prompt().saveFile(request);
    if (!path.isEmpty()) {
        writePdf(path);
    }
}

void NotePaper::writePdf(const QString& path) {
    m_context.showStatus(QStringLiteral("Printing..."));
    const auto done = qScopeGuard([this] { m_context.showStatus(QStringLiteral("Done")); });
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    printer.setDocName(m_edited.subject());
    printer.setPageMargins(kPageMargins, QPageLayout::Millimeter);
    paint(printer);
    if (printer.printerState() == QPrinter::Error || QFileInfo(path).size() == 0) {
        throw AutomationError(kErrorFileWrite, QStringLiteral("YRWNotes.frmMain.ExportPdf"),
                              QStringLiteral("\"%1\" cannot be written.").arg(path));
    }
}

} // namespace yrw
