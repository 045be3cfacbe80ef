#include "notes_window/NotesList.h"

#include "notes_window/LongWork.h"
#include "notes_window/NoteRow.h"
#include "notes_window/NoteTexts.h"
#include "notes_window/UserNames.h"
#include "notes_window/WindowContext.h"
#include "store/NoteReading.h"

#include <QSet>

#include <memory>
#include <utility>

namespace yrw {

NotesList::NotesList(ListView& view, WindowContext& context, UserNames& names)
    : m_view(view), m_context(context), m_names(names), m_columns(view, context) {
    m_view.items().setSource([this](const QStringList& keys) { return itemsFor(keys); });
    m_view.setWorkWatch([this] { return sortingWatch(); });
}

void NotesList::clear() {
    m_view.items().clear();
    m_notes = m_context.application().Notes();
    if (m_owner) {
        m_notes->setParent(m_owner);
    }
}

/// An unsorted list needs no more than the keys at once.
void NotesList::read(ShowType shown, bool mineOnly) {
    m_shown = shown;
    RecordsetRequest request;
    request.CursorType = dao::RecordsetType::ForwardOnly;
    request.RecordsetOptions = dao::kReadOnlyOption;
    request.CustomOptions = int(shown) + (mineOnly ? kNotesMine : 0);
    const bool whole = m_view.isSorted();
    QStringList keys;
    QList<ListItem> items;
    const auto add = [&] {
        m_view.addKeys(keys);
        m_view.addItems(items);
    };
    bool stopped = false;
    try {
        LongWork work(m_context.clock(), &m_context.window(),
                      QStringLiteral("Reading the notes: %1 so far."));
        const Ref<dao::Recordset> rows = m_notes->Recordset(request);
        const NoteRowReader reader(*rows);
        for (; !rows->AtEof() && !stopped; rows->MoveNext()) {
            if (whole) {
                items.append(itemOf(reader.read(), shown == ShowType::All));
            } else {
                keys.append(noteItemKey(reader.id()));
            }
            stopped = !work.goOn(keys.size() + items.size());
        }
        rows->Close();
    } catch (...) {
        add(); // what was read before the failure
        throw;
    }
    add();
    m_isCut = stopped;
}

Ref<Note> NotesList::note(qint64 id) const {
    return m_notes->note(id);
}

/// The rows of some notes as the list shows them; one that is gone says so.
QList<ListItem> NotesList::readItems(const QStringList& keys) {
    QVariantList ids;
    QSet<qint64> wanted;
    for (const QString& key : keys) {
        ids.append(noteIdOf(key));
        wanted.insert(noteIdOf(key));
    }
    const Ref<dao::Recordset> rows = openNotes(*m_notes, ids);
    const NoteRowReader reader(*rows);
    QList<ListItem> items;
    for (; !rows->AtEof(); rows->MoveNext()) {
        if (wanted.remove(reader.id())) {
            items.append(itemOf(reader.read(), m_shown == ShowType::All));
        }
    }
    rows->Close();
    for (const qint64 gone : std::as_const(wanted)) {
        items.append(goneItem(noteItemKey(gone)));
    }
    return items;
}

/// The source of the list's rows. It is asked while the list paints: a failure is kept until
/// `endReading`.
std::optional<QList<ListItem>> NotesList::itemsFor(const QStringList& keys) {
    try {
        return readItems(keys);
    } catch (...) {
        m_failure = std::current_exception();
        return std::nullopt;
    }
}

void NotesList::endReading() {
    m_view.items().removeMissing();
    std::rethrow_exception(m_failure);
}

ListItem NotesList::itemOf(const NoteRow& row, bool amongAll) {
    const bool hasUser = m_columns.hasUsers();
    return listItemOf(row, hasUser ? std::optional(m_names.of(row.userCode)) : std::nullopt,
                      hasUser && amongAll);
}

void NotesList::replace(const Ref<IRecord>& note) {
    const ListItem item = itemOf(noteRowOf(*note), false);
    if (m_view.isSorted() || m_view.items().rowOf(item.key) < 0) {
        m_view.removeItem(item.key);
        m_view.addItem(item);
    } else {
        for (int column = 0; column < item.texts.size(); ++column) {
            m_view.items().setText(item.key, column, item.texts[column]);
        }
        m_view.items().setStyle(item.key, item.bold, item.foreColour, item.marked);
    }
    m_view.selectKey(item.key);
    rowsChanged.raise();
}

QString NotesList::removeItem(const QString& item) {
    const int row = m_view.items().rowOf(item);
    m_view.removeItem(item);
    const int next = row < m_view.items().rowCount() ? row : m_view.items().rowCount() - 1;
    const QString key = m_view.items().keyAt(next);
    m_view.selectKey(key);
    rowsChanged.raise();
    return key;
}

void NotesList::sortBy(int column) {
    const bool flips = column == m_view.sortKey();
    const bool ascending = (m_view.sortOrder() == Qt::AscendingOrder) != flips;
    m_view.sortBy(column, ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

/// Shows how far a long sorting is, and lets the user stop it.
WorkStep NotesList::sortingWatch() {
    const auto work = std::make_shared<LongWork>(m_context.clock(), &m_context.window(),
                                                 QStringLiteral("Sorting the notes: %1 %."), 1);
    return [work](int percent) { return work->goOn(percent); };
}

} // namespace yrw
