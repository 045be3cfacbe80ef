// The find bar: narrows the list that was read, and marks the hits in the text.
#include "notes_window/frmMain.h"

#include "notes_window/FindBar.h"
#include "notes_window/NoteFinder.h"
#include "notes_window/NoteTexts.h"
#include "platform/dao/Folding.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"

#include <QTextCursor>

namespace yrw {

namespace {

constexpr int kMaxMarks = 500;
const QColor kMarkColour(0xff, 0xe0, 0x66);

} // namespace

void frmMain::openFind() {
    m_findBar->show();
    arrange();
    activateWindow(); // a floating band may have the keyboard
    m_findBar->focusField();
    m_finder->prepare();
}

void frmMain::closeFind() {
    m_findBar->clear();
    m_findBar->hide();
    arrange();
    m_lsvMain->setFocus();
}

void frmMain::applyFind() {
    const QString typed = m_findBar->text();
    if (dao::foldedWords(typed).isEmpty()) {
        m_finder->stop();
        m_lsvMain->showAll();
        selectFound();
        return;
    }
    std::vector<qint64> ids;
    ids.reserve(size_t(m_lsvMain->allItems()));
    m_lsvMain->forEachKey([&ids](QStringView key) { ids.push_back(noteIdOf(key)); });
    m_finder->start(typed, std::move(ids));
    showFindState();
}

/// Shows the notes found so far. The note in the editor stays there as long as it may still be
/// found.
void frmMain::narrowList() {
    // Most keys narrow what is shown already; where nothing drops out, nothing is rebuilt.
    const bool same = m_finder->isNarrowing() && !m_finder->isSearching() &&
                      m_finder->hits() == m_lsvMain->itemCount();
    if (!same || m_lsvMain->itemCount() == 0) {
        m_lsvMain->showOnly([this](QStringView key) { return m_finder->has(noteIdOf(key)); });
        selectFound();
    }
    showFindState();
    markHits();
}

/// Selects the note in the editor, or the first one when that was not found.
void frmMain::selectFound() {
    const QString before =
        m_note ? noteItemKey(m_note->value(QStringLiteral("RecordID")).toLongLong()) : QString();
    if (m_lsvMain->rowOf(before) >= 0) {
        m_lsvMain->selectKey(before);
    } else if (!m_finder->isSearching()) {
        m_lsvMain->selectKey(m_lsvMain->keyAt(0));
        ShowNote(m_lsvMain->keyAt(0));
    }
    showFindState();
    markHits();
}

void frmMain::showFindState() {
    if (dao::foldedWords(m_findBar->text()).isEmpty()) {
        m_findBar->showCount(0, 0, FindState::Done);
    } else {
        m_findBar->showCount(m_finder->hits(), m_lsvMain->allItems(),
                             m_finder->isSearching() ? FindState::Searching
                             : m_finder->hasFailed() ? FindState::Failed
                                                     : FindState::Done);
    }
    showEmptyText();
}

void frmMain::markHits() {
    QList<QTextEdit::ExtraSelection> marks;
    const QStringList words = dao::foldedWords(m_findBar->text());
    if (m_note && !words.isEmpty()) {
        for (const dao::TextRange& range :
             dao::findWords(m_rtxMain->document()->toPlainText(), words, kMaxMarks)) {
            QTextEdit::ExtraSelection mark;
            mark.cursor = QTextCursor(m_rtxMain->document());
            mark.cursor.setPosition(range.start);
            mark.cursor.setPosition(range.start + range.length, QTextCursor::KeepAnchor);
            mark.format.setBackground(kMarkColour);
            mark.format.setForeground(Qt::black);
            marks.append(mark);
        }
    }
    m_rtxMain->setMarks(marks);
}

void frmMain::showEmptyText() {
    if (!dao::foldedWords(m_findBar->text()).isEmpty()) {
        m_lsvMain->setEmptyText(m_finder->isSearching()
                                    ? QStringLiteral("Searching...")
                                    : QStringLiteral("No note in this list contains these words."));
        return;
    }
    const ITool* type = m_atbMain->findTool(QStringLiteral("tooListType"));
    const bool done = type != nullptr && type->listIndex() == 2;
    m_lsvMain->setEmptyText(done ? QStringLiteral("No note is done yet.")
                                 : QStringLiteral("No active notes. Press Insert to add one."));
}

} // namespace yrw
