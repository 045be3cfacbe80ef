#include "notes_window/ListFind.h"

#include "notes_window/EditedNote.h"
#include "notes_window/FindBar.h"
#include "notes_window/NoteTexts.h"
#include "notes_window/NotesList.h"
#include "platform/dao/Folding.h"
#include "platform/richtext/RichTextBox.h"

#include <QTextCursor>

namespace yrw {

namespace {

constexpr int kMaxMarks = 500;
const QColor kMarkColour(0xff, 0xe0, 0x66);

} // namespace

ListFind::ListFind(FindBar& bar, NotesList& list, EditedNote& edited, RichTextBox& text,
                   StoreContext& store)
    : m_bar(bar), m_list(list), m_edited(edited), m_text(text), m_finder(store) {
    connect(&m_bar, &FindBar::textChanged, this, [this] { find(); });
    connect(&m_bar, &FindBar::closeRequested, this, [this] { close(); });
    connect(&m_finder, &NoteFinder::progressed, this, [this] { narrow(); });
    connect(&m_finder, &NoteFinder::indexed, &m_bar, &FindBar::showIndexed);
    m_connections.push_back(m_list.rowsChanged.connect([this] { rowsChanged(); }));
    m_connections.push_back(m_edited.saved.connect([this] { m_finder.forget(); }));
}

void ListFind::open() {
    m_bar.show();
    toggled.raise();
    m_bar.window()->activateWindow(); // a floating band may have the keyboard
    m_bar.focusField();
    m_finder.prepare();
}

void ListFind::close() {
    m_bar.clear();
    m_bar.hide();
    toggled.raise();
    m_list.view().setFocus();
}

bool ListFind::hasKeyboard() const {
    return m_bar.fieldHasFocus();
}

QStringList ListFind::words() const {
    return dao::foldedWords(m_bar.text());
}

void ListFind::findAgain() {
    showEmptyText();
    if (!m_bar.text().isEmpty()) {
        find();
    }
}

void ListFind::find() {
    if (words().isEmpty()) {
        m_finder.stop();
        m_list.view().items().showAll();
        selectFound();
        return;
    }
    std::vector<qint64> ids;
    ids.reserve(size_t(m_list.view().items().allRows()));
    m_list.view().items().forEachKey([&ids](QStringView key) { ids.push_back(noteIdOf(key)); });
    m_finder.start(m_bar.text(), std::move(ids));
    showState();
}

/// Shows the notes found so far. The note in the editor stays there as long as it may still be
/// found.
void ListFind::narrow() {
    // Most keys narrow what is shown already; where nothing drops out, nothing is rebuilt.
    ListView& view = m_list.view();
    const bool same = m_finder.isNarrowing() && !m_finder.isSearching() &&
                      m_finder.hits() == view.items().rowCount() && !view.selectedKey().isEmpty();
    if (!same) {
        view.items().showOnly([this](QStringView key) { return m_finder.has(noteIdOf(key)); });
        selectFound();
    }
    showState();
    markHits();
}

/// Selects the note in the editor, or the first one when that was not found.
void ListFind::selectFound() {
    ListView& view = m_list.view();
    const QString before = m_edited.id() != 0 ? noteItemKey(m_edited.id()) : QString();
    if (view.items().rowOf(before) >= 0) {
        view.selectKey(before);
    } else if (!m_finder.isSearching()) {
        view.selectKey(view.items().keyAt(0));
        m_edited.show(noteIdOf(view.items().keyAt(0)));
    }
    showState();
    markHits();
}

void ListFind::rowsChanged() {
    m_finder.forget();
    showEmptyText();
}

void ListFind::showState() {
    if (words().isEmpty()) {
        m_bar.showCount(0, 0, FindState::Done);
    } else {
        m_bar.showCount(m_finder.hits(), m_list.view().items().allRows(),
                        m_finder.isSearching() ? FindState::Searching
                        : m_finder.hasFailed() ? FindState::Failed
                                               : FindState::Done);
    }
    showEmptyText();
}

void ListFind::markHits() {
    QList<QTextEdit::ExtraSelection> marks;
    const QStringList wanted = words();
    if (m_edited.note() && !wanted.isEmpty()) {
        for (const dao::TextRange& range :
             dao::findWords(m_text.document()->toPlainText(), wanted, kMaxMarks)) {
            QTextEdit::ExtraSelection mark;
            mark.cursor = QTextCursor(m_text.document());
            mark.cursor.setPosition(range.start);
            mark.cursor.setPosition(range.start + range.length, QTextCursor::KeepAnchor);
            mark.format.setBackground(kMarkColour);
            mark.format.setForeground(Qt::black);
            marks.append(mark);
        }
    }
    m_text.setMarks(marks);
}

void ListFind::showEmptyText() {
    QString text;
    if (!words().isEmpty()) {
        text = m_finder.isSearching()
                   ? QStringLiteral("Searching...")
                   : QStringLiteral("No note in this list contains these words.");
    } else if (m_list.shown() == ShowType::Done) {
        text = QStringLiteral("No note is done yet.");
    } else {
        text = QStringLiteral("No active notes. Press Insert to add one.");
    }
    m_list.view().setEmptyText(text);
}

} // namespace yrw
