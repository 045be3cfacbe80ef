// The find bar: narrows the list that was read, and marks the hits in the text.
#include "notes_window/frmMain.h"

#include "dialogs/Hourglass.h"
#include "framework/ErrorGuards.h"
#include "notes_window/FindBar.h"
#include "notes_window/Folding.h"
#include "notes_window/NoteTexts.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"

#include <QHash>
#include <QTextCursor>

#include <numeric>

namespace yrw {

namespace {

constexpr int kMaxMarks = 500;
const QColor kMarkColour(0xff, 0xe0, 0x66);

} // namespace

void frmMain::openFind() {
    m_findBar->show();
    arrange();
    m_findBar->focusField();
}

void frmMain::closeFind() {
    m_findBar->clear();
    m_findBar->hide();
    arrange();
    m_lsvMain->setFocus();
}

void frmMain::applyFind() {
    const QString before = m_lsvMain->selectedKey();
    const int shownBefore = m_lsvMain->itemCount();
    if (!m_findBar->text().isEmpty()) {
        readFindTexts();
        // Most keys narrow what is shown already; where nothing drops out, nothing is rebuilt.
        const int candidates = narrowFound(m_findBar->text());
        if (candidates == shownBefore && int(m_findTexts->found.size()) == shownBefore) {
            m_findBar->showCount(shownBefore, m_items.size());
            markHits();
            return;
        }
    }
    m_lsvMain->clearItems();
    showFoundItems();
    if (m_lsvMain->rowOf(before) >= 0) {
        m_lsvMain->selectKey(before);
        markHits();
    } else {
        m_lsvMain->selectKey(m_lsvMain->keyAt(0));
        ShowNote(m_lsvMain->keyAt(0));
    }
}

void frmMain::showFoundItems() {
    if (m_findBar->text().isEmpty()) {
        m_findBar->showCount(0, 0);
        m_findTexts.reset();
        m_lsvMain->addItems(m_items);
    } else {
        readFindTexts();
        narrowFound(m_findBar->text());
        QList<ListItem> found;
        for (const int row : m_findTexts->found) {
            found.append(m_items.at(row));
        }
        m_findBar->showCount(found.size(), m_items.size());
        m_lsvMain->addItems(found);
    }
    showEmptyText();
}

/// Looks for what was typed, among the rows found before where it goes on from there; how many rows
/// were looked through.
int frmMain::narrowFound(const QString& typedText) {
    FindTexts& texts = *m_findTexts;
    const QString typed = foldText(typedText);
    const QStringList words = foldedWords(typedText);
    if (!typed.startsWith(texts.typed)) {
        texts.found.resize(texts.rows.size());
        std::iota(texts.found.begin(), texts.found.end(), 0);
    }
    const auto candidates = static_cast<int>(texts.found.size());
    std::erase_if(texts.found,
                  [&](int row) { return !containsWords(texts.rows[size_t(row)], words); });
    texts.typed = typed;
    return candidates;
}

void frmMain::readFindTexts() {
    if (m_findTexts) {
        return;
    }
    const Hourglass hourglass(prompt());
    FindTexts& texts = m_findTexts.emplace();
    texts.rows.resize(size_t(m_items.size()));
    texts.found.resize(texts.rows.size());
    std::iota(texts.found.begin(), texts.found.end(), 0);
    QHash<QString, int> rowOf;
    for (int row = 0; row < m_items.size(); ++row) {
        rowOf.insert(m_items.at(row).key, row);
    }
    ignoreErrors([&] {
        RecordsetRequest request;
        request.CursorType = dao::RecordsetType::ForwardOnly;
        request.RecordsetOptions = dao::kReadOnlyOption;
        const Ref<dao::Recordset> notes = m_notes->Recordset(request);
        const int id = notes->FieldIndex(u"RecordID");
        const int subject = notes->FieldIndex(u"Subject");
        const int text = notes->FieldIndex(u"PlainNote");
        for (; !notes->AtEof(); notes->MoveNext()) {
            const int row = rowOf.value(noteItemKey(notes->value(id).toLongLong()), -1);
            if (row >= 0) {
                texts.rows[size_t(row)] = foldText(QString(notes->value(subject).toString() +
                                                           u'\n' + notes->value(text).toString()));
            }
        }
        notes->Close();
    });
}

void frmMain::markHits() {
    QList<QTextEdit::ExtraSelection> marks;
    const QStringList words = foldedWords(m_findBar->text());
    if (m_note && !words.isEmpty()) {
        for (const TextRange& range :
             findWords(m_rtxMain->document()->toPlainText(), words, kMaxMarks)) {
            QTextEdit::ExtraSelection mark;
            mark.cursor = QTextCursor(m_rtxMain->document());
            mark.cursor.setPosition(range.start);
            mark.cursor.setPosition(range.start + range.length, QTextCursor::KeepAnchor);
            mark.format.setBackground(kMarkColour);
            mark.format.setForeground(Qt::black);
            marks.append(mark);
        }
    }
    m_rtxMain->setExtraSelections(marks);
}

void frmMain::showEmptyText() {
    if (!m_findBar->text().isEmpty()) {
        m_lsvMain->setEmptyText(QStringLiteral("No note contains these words."));
        return;
    }
    const ITool* type = m_atbMain->findTool(QStringLiteral("tooListType"));
    const bool done = type != nullptr && type->listIndex() == 2;
    m_lsvMain->setEmptyText(done ? QStringLiteral("No note is done yet.")
                                 : QStringLiteral("No active notes. Press Insert to add one."));
}

} // namespace yrw
