// The find bar: narrows the list that was read, and marks the hits in the text.
#include "notes_window/frmMain.h"

#include "dialogs/Hourglass.h"
#include "framework/ErrorGuards.h"
#include "notes_window/FindBar.h"
#include "notes_window/Folding.h"
#include "notes_window/NoteTexts.h"
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
    const QStringList words = foldedWords(m_findBar->text());
    if (words.isEmpty()) {
        m_findBar->showCount(0, 0);
        m_lsvMain->addItems(m_items);
    } else {
        readFindTexts();
        QList<ListItem> found;
        for (const ListItem& item : std::as_const(m_items)) {
            if (containsWords(m_findTexts->value(item.key), words)) {
                found.append(item);
            }
        }
        m_findBar->showCount(found.size(), m_items.size());
        m_lsvMain->addItems(std::move(found));
    }
    showEmptyText();
}

void frmMain::readFindTexts() {
    if (m_findTexts) {
        return;
    }
    const Hourglass hourglass(prompt());
    m_findTexts.emplace();
    ignoreErrors([this] {
        RecordsetRequest request;
        request.CursorType = dao::RecordsetType::ForwardOnly;
        request.RecordsetOptions = dao::kReadOnlyOption;
        const Ref<dao::Recordset> rows = m_notes->Recordset(request);
        const int id = rows->FieldIndex(u"RecordID");
        const int subject = rows->FieldIndex(u"Subject");
        const int text = rows->FieldIndex(u"PlainNote");
        for (; !rows->AtEof(); rows->MoveNext()) {
            m_findTexts->insert(noteItemKey(rows->value(id).toLongLong()),
                                foldText(QString(rows->value(subject).toString() + u'\n' +
                                                 rows->value(text).toString())));
        }
        rows->Close();
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
