#pragma once

#include "framework/HostObjects.h"
#include "platform/component/GuardedPtr.h"
#include "store/NotesContext.h"
#include "store/NotesSeek.h"

#include <QTimer>

#include <vector>

namespace yrw {

class AddInHost;
class AutoNotes;
class NotesOpening;
class Standing;

/// Handles the events of one grid of the host and of its controller, and marks the grid's rows:
/// a row whose record has an active note is painted in the highlight colour, and a cell of it, in
/// the flag column, gets a frame. The upper and the lower grid have one each.
///
/// A grid with several splits, or whose rows have no "RecordID", is never marked. While the notes
/// database is closed nothing happens; while somebody has it locked, the grid goes on without marks
/// and tries again. Whatever the host or the database raises in a handler ends
/// that handler silently.
/// Lifetime: a member of its `AddIn`. Thread: the user-interface thread.
class GridEvents {
public:
    /// What the handlers work with. All outlive them.
    struct World {
        Counted& addIn; ///< kept while a handler runs
        NotesContext& context;
        const AddInHost& host;
        const Standing& standing;
        const NotesOpening& opening;
        AutoNotes& autoNotes;
        NotesSeek& seek; ///< shared with the other grid
    };

    explicit GridEvents(const World& world);
    GridEvents(const GridEvents&) = delete;
    GridEvents& operator=(const GridEvents&) = delete;

    /// Takes a controller, its grid and the grid's splits (each may be nothing) in place of those
    /// held.
    void connect(IGridController* controller, IRecordGrid* grid, IGridSplits* splits);
    /// Takes up what the grid shows already, after the database was opened.
    void start() noexcept;
    /// Closes what was opened for marking; idempotent.
    void stop() noexcept;
    /// Prepares the grid for a marking switch that goes on; its next paint shows the marks.
    void marksSwitchedOn() noexcept;
    void refresh() noexcept;

private:
    // Controller events.
    void AfterAddEditCanceled();
    void AfterLayoutLoad();
    void AfterRecordsetChange(const Ref<dao::Recordset>& recordset);
    void OnAddRow();
    void StayOnCell();
    void StayOnRow();
    // Grid events.
    void AfterColUpdate();
    void FetchRowStyle(dao::Bookmark bookmark, RowStyle& style);
    void FetchCellStyle(dao::Bookmark bookmark, int column, CellStyle& style);
    void FetchRowRemark(dao::Bookmark bookmark, RowRemark& remark);
    void RowColChange(dao::Bookmark before);
    void Scroll();

    void goOnAgain() noexcept;
    void connectController();
    void connectGrid();
    template <class... Args, class Handler>
    void on(Event<Args...>& event, Handler handler);

    [[nodiscard]] bool isSingleSplit() const;
    [[nodiscard]] bool wantsMarks() const;
    [[nodiscard]] bool isOnRow(dao::Bookmark row) const;
    [[nodiscard]] bool marks(NotesSwitch which);
    [[nodiscard]] bool hasActiveNote(dao::Bookmark bookmark);
    void addSubjects(RowRemark& remark);
    void takeClone(const Ref<dao::Recordset>& recordset);
    void closeClone() noexcept;
    void fetchRowStyles();
    void fetchCellStyles();
    void setUpLinkedColumns();

    const World m_world;
    QTimer m_again;               ///< runs after a lock was in the way
    bool m_landingMissed = false; ///< of the row that the cursor rests on
    GuardedPtr<IGridController> m_controller;
    GuardedPtr<IRecordGrid> m_grid;
    GuardedPtr<IGridSplits> m_splits;
    std::vector<Connection> m_connections;

    Ref<dao::Recordset> m_clone; ///< moved to painted rows only
    bool m_cloneTried = false;   ///< since the last change of recordset, layout or switch
    int m_recordIdColumn = -1;   ///< of the clone; -1: it has no "RecordID"
    OwnerKeys m_keys;            ///< of the row test; only the record id differs from row to row

    QString m_layoutName;            ///< layout that the two columns below belong to
    bool m_linkedColumnsSet = false; ///< set up for the layout, or since a cell was changed
    bool m_suppressed = false;       ///< the linked columns are being set up: no row is tested
    int m_flagColumn = -1;
    int m_rememberedColumn = -1;
    bool m_settingBack = false;
};

} // namespace yrw
