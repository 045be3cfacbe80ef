#pragma once

#include "notes_window/ListColumns.h"
#include "platform/component/Event.h"
#include "platform/controls/ListView.h"
#include "store/Collections.h"

#include <exception>
#include <optional>

namespace yrw {

struct NoteRow;
class UserNames;
class WindowContext;

/// What the notes list shows, as the show-type tool counts.
enum class ShowType : int { Active = 1, Done = 2, All = 3 };

/// The list of the notes window: the notes of one host record, or those kept on none, a row each.
///
/// A row's key is `noteItemKey`. Rows are read by their keys alone; their texts follow when they
/// are painted, and all others as soon as the program has nothing else to do.
/// Lifetime: view, context and names outlive it. Thread: the user-interface thread.
class NotesList {
public:
    NotesList(ListView& view, WindowContext& context, UserNames& names);
    NotesList(const NotesList&) = delete;
    NotesList& operator=(const NotesList&) = delete;

    [[nodiscard]] ListView& view() const { return m_view; }
    [[nodiscard]] ListColumns& columns() { return m_columns; }

    /// Whose notes are read from now on; nothing for those kept on no record.
    void setOwner(const Ref<IRecord>& owner) { m_owner = owner; }
    [[nodiscard]] const Ref<IRecord>& owner() const { return m_owner; }
    void clear();
    /// Reads the rows of an empty list; `mineOnly` leaves out what others wrote. What was read
    /// before a failure, or before the user stopped it, stays.
    void read(ShowType shown, bool mineOnly);
    /// What was asked for last.
    [[nodiscard]] ShowType shown() const { return m_shown; }
    /// The user stopped the last reading: the list shows its beginning.
    [[nodiscard]] bool isCut() const { return m_isCut; }
    /// A note as it stands now; raises `kErrorRecordNotFound`.
    [[nodiscard]] Ref<Note> note(qint64 id) const;

    /// Shows a note that was added or changed, and selects it.
    void replace(const Ref<IRecord>& note);
    /// Takes a row out and selects the next one; its key, empty when none is left.
    QString removeItem(const QString& item);
    /// Sorts by a column, the other way round when it is sorted by that one already.
    void sortBy(int column);
    /// Keeps what was read when the list could not read on, and raises why.
    void endReading();

    Event<> rowsChanged; ///< one was added, changed or taken out

private:
    [[nodiscard]] QList<ListItem> readItems(const QStringList& keys);
    [[nodiscard]] std::optional<QList<ListItem>> itemsFor(const QStringList& keys);
    [[nodiscard]] ListItem itemOf(const NoteRow& row, bool amongAll);
    [[nodiscard]] WorkStep sortingWatch();

    ListView& m_view;
    WindowContext& m_context;
    UserNames& m_names;
    ListColumns m_columns;
    Ref<IRecord> m_owner;
    Ref<Notes> m_notes;
    ShowType m_shown = ShowType::Active;
    bool m_isCut = false;
    std::exception_ptr m_failure; ///< of the last reading while the list painted
};

} // namespace yrw
