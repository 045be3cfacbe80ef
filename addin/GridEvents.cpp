#include "addin/GridEvents.h"

#include "addin/AddInHost.h"
#include "addin/AutoNotes.h"
#include "addin/LinkedColumns.h"
#include "addin/NotesOpening.h"
#include "addin/Standing.h"
#include "framework/ErrorGuards.h"
#include "store/NoteReading.h"
#include "store/Schema.h"

#include <QScopedValueRollback>

namespace yrw {

namespace {

/// The frame that flags a cell: kind, colour (&H00BBGGRR) and width.
constexpr short kFlagBorderKind = 6;
constexpr int kFlagColour = 255;
constexpr int kFlagWidth = 1;

/// After how many milliseconds what a lock kept from being shown is tried again.
constexpr int kAgainMs = 500;

/// Subjects that a row's tool-tip lists at most.
constexpr int kMostSubjects = 10;

const QString kRecordID = QStringLiteral("RecordID");

} // namespace

GridEvents::GridEvents(const World& world) : m_world(world) {
    m_again.setSingleShot(true);
    m_again.setInterval(kAgainMs);
    QObject::connect(&m_again, &QTimer::timeout, &m_again, [this] { goOnAgain(); });
}

/// The notes were locked by somebody while the grid was painted or the cursor came to rest.
void GridEvents::goOnAgain() noexcept {
    const Ref<Counted> keep(&m_world.addIn);
    refresh();
    if (m_landingMissed) {
        const dao::BriefWaits brief(m_world.context.database());
        ignoreErrors([this] { StayOnRow(); });
        if (brief.wereInVain()) {
            m_again.start();
        }
    }
}

/// Connects a handler that keeps the add-in alive while it runs and ends silently on any error.
template <class... Args, class Handler>
void GridEvents::on(Event<Args...>& event, Handler handler) {
    m_connections.push_back(event.connect([this, handler](Args... args) {
        const Ref<Counted> keep(&m_world.addIn);
        const dao::BriefWaits brief(m_world.context.database());
        ignoreErrors([&] { handler(args...); });
        if (brief.wereInVain()) {
            m_again.start();
        }
    }));
}

void GridEvents::connect(IGridController* controller, IRecordGrid* grid, IGridSplits* splits) {
    stop();
    m_connections.clear();
    m_controller = controller;
    m_grid = grid;
    m_splits = splits;
    if (m_controller) {
        connectController();
    }
    if (m_grid) {
        connectGrid();
    }
}

void GridEvents::connectController() {
    IGridController& controller = *m_controller;
    on(controller.AfterAddEditCanceled, [this] { AfterAddEditCanceled(); });
    on(controller.AfterLayoutLoad, [this] { AfterLayoutLoad(); });
    on(controller.AfterRecordsetChange,
       [this](const Ref<dao::Recordset>& recordset) { AfterRecordsetChange(recordset); });
    on(controller.OnAddRow, [this] { OnAddRow(); });
    on(controller.StayOnCell, [this] { StayOnCell(); });
    on(controller.StayOnRow, [this] { StayOnRow(); });
}

void GridEvents::connectGrid() {
    IRecordGrid& grid = *m_grid;
    on(grid.AfterColUpdate, [this](int) { AfterColUpdate(); });
    on(grid.FetchRowStyle,
       [this](int, dao::Bookmark bookmark, RowStyle& style) { FetchRowStyle(bookmark, style); });
    on(grid.FetchCellStyle, [this](int, int, dao::Bookmark bookmark, int column, CellStyle& style) {
        FetchCellStyle(bookmark, column, style);
    });
    on(grid.FetchRowRemark, [this](int, dao::Bookmark bookmark, RowRemark& remark) {
        FetchRowRemark(bookmark, remark);
    });
    on(grid.RowColChange, [this](dao::Bookmark before, int) { RowColChange(before); });
    on(grid.Scroll, [this] { Scroll(); });
}

void GridEvents::start() noexcept {
    ignoreErrors([this] { AfterLayoutLoad(); });
    ignoreErrors([this] {
        if (m_controller) {
            takeClone(m_controller->Recordset());
        }
    });
    refresh();
}

void GridEvents::stop() noexcept {
    closeClone();
    m_cloneTried = false;
    m_again.stop();
    m_landingMissed = false;
    m_layoutName.clear();
    m_linkedColumnsSet = false;
    m_flagColumn = -1;
    m_rememberedColumn = -1;
}

void GridEvents::marksSwitchedOn() noexcept {
    ignoreErrors([this] {
        m_cloneTried = false;
        if (m_world.standing.isDatabaseOpen() && isSingleSplit()) {
            fetchRowStyles();
            fetchCellStyles();
        }
    });
}

void GridEvents::refresh() noexcept {
    ignoreErrors([this] {
        if (m_grid) {
            m_grid->refresh();
        }
    });
}

bool GridEvents::isSingleSplit() const {
    return m_grid && m_splits && m_splits->splitCount() < 2;
}

bool GridEvents::wantsMarks() const {
    return m_world.context.switchOn(NotesSwitch::FlagNotesRow) ||
           m_world.context.switchOn(NotesSwitch::HighlightNotesRow);
}

// Controller events.

void GridEvents::AfterAddEditCanceled() {
    m_world.autoNotes.cleanUp();
}

void GridEvents::AfterLayoutLoad() {
    m_linkedColumnsSet = false;
    m_flagColumn = -1;
    m_rememberedColumn = -1;
    if (!m_world.standing.isDatabaseOpen() || !isSingleSplit()) {
        return;
    }
    setUpLinkedColumns();
    fetchRowStyles();
}

void GridEvents::AfterRecordsetChange(const Ref<dao::Recordset>& recordset) {
    if (!m_world.standing.isDatabaseOpen()) {
        closeClone(); // what it stood on is gone
        return;
    }
    takeClone(recordset);
    if (wantsMarks()) {
        m_world.autoNotes.cleanUp();
    }
}

void GridEvents::OnAddRow() {
    m_world.autoNotes.cleanUp();
}

void GridEvents::StayOnCell() {
    if (!m_world.context.switchOn(NotesSwitch::ShowPopupWindow) ||
        !m_world.standing.isDatabaseOpen()) {
        return;
    }
    if (!m_linkedColumnsSet || m_controller->LayoutName() != m_layoutName) {
        setUpLinkedColumns();
    }
}

void GridEvents::StayOnRow() {
    if (m_world.context.switchOn(NotesSwitch::ShowPopupWindow)) {
        const dao::BriefWaits brief(m_world.context.database());
        m_world.autoNotes.cleanUp();
        m_world.autoNotes.landed(m_controller);
        m_landingMissed = brief.wereInVain();
    }
}

// Grid events.

void GridEvents::AfterColUpdate() {
    if (m_world.standing.isDatabaseOpen()) {
        setUpLinkedColumns();
    }
}

void GridEvents::FetchRowStyle(dao::Bookmark bookmark, RowStyle& style) {
    if (!marks(NotesSwitch::HighlightNotesRow)) {
        return;
    }
    const bool hasNote = hasActiveNote(bookmark);
    style.finding.keep(this, hasNote);
    if (hasNote) {
        style.setBackColor(m_world.opening.highlightColour());
    }
}

void GridEvents::FetchCellStyle(dao::Bookmark bookmark, int column, CellStyle& style) {
    if (m_flagColumn < 0 || column != m_flagColumn || !marks(NotesSwitch::FlagNotesRow)) {
        return;
    }
    const std::optional<bool> found = style.finding.of(this); // while its row was painted
    if (!(found ? *found : hasActiveNote(bookmark))) {
        return;
    }
    style.setBorderKind(kFlagBorderKind);
    style.setBorderColor(kFlagColour);
    style.setBorderWidth(kFlagWidth);
}

void GridEvents::FetchRowRemark(dao::Bookmark bookmark, RowRemark& remark) {
    const bool flags = m_flagColumn >= 0 && marks(NotesSwitch::FlagNotesRow);
    if ((!flags && !marks(NotesSwitch::HighlightNotesRow)) || !hasActiveNote(bookmark)) {
        return;
    }
    remark.setText(QStringLiteral("Has notes"));
    if (remark.wantsDetails()) {
        addSubjects(remark);
    }
}

void GridEvents::RowColChange(dao::Bookmark before) {
    m_landingMissed = false;
    m_world.autoNotes.cleanUp();
    if (m_settingBack || m_world.standing.isBehind() || m_flagColumn < 0 || !isSingleSplit() ||
        !m_world.standing.isDatabaseOpen() ||
        !m_world.context.switchOn(NotesSwitch::FlagNotesRow)) {
        return;
    }
    if (m_grid->currentColumn() != m_flagColumn) {
        m_rememberedColumn = m_grid->currentColumn();
        return;
    }
    // Who comes from another row (by Tab, from its last column) goes on to the first that is open.
    const int column = isOnRow(before) ? m_rememberedColumn : columnBeside(*m_grid, m_flagColumn);
    if (column >= 0) {
        // Setting the column raises this event again: once is enough.
        const QScopedValueRollback<bool> once(m_settingBack, true);
        m_grid->setCurrentColumn(column);
        m_rememberedColumn = column;
    }
}

bool GridEvents::isOnRow(dao::Bookmark row) const {
    const Ref<dao::Recordset> rows = m_controller ? m_controller->Recordset() : nullptr;
    return rows && !rows->AtBof() && !rows->AtEof() && rows->Bookmark() == row;
}

void GridEvents::Scroll() {
    m_world.autoNotes.cleanUp();
}

// Row marking.

bool GridEvents::marks(NotesSwitch which) {
    if (m_suppressed || m_world.standing.isBehind() || !m_world.context.switchOn(which) ||
        !m_world.standing.isDatabaseOpen() || !isSingleSplit()) {
        return false;
    }
    if (!m_clone && !m_cloneTried && m_controller) {
        takeClone(m_controller->Recordset());
    }
    return m_clone && m_recordIdColumn >= 0;
}

bool GridEvents::hasActiveNote(dao::Bookmark bookmark) {
    m_clone->setBookmark(bookmark);
    QVariant& recordId = m_keys[2];
    recordId = m_clone->value(m_recordIdColumn);
    return !recordId.isNull() && m_world.seek.hasNote(m_keys);
}

/// Adds the subjects of the active notes of the row that was tested last.
void GridEvents::addSubjects(RowRemark& remark) {
    const Ref<dao::Recordset> notes =
        openActiveNotes(m_world.context.dataHelper(), m_keys[0].toString(), {m_keys[1], m_keys[2]});
    int shown = 0;
    for (; !notes->AtEof() && shown < kMostSubjects; notes->MoveNext(), ++shown) {
        remark.addDetail(HostUtility::NullToText(notes->value(u"Subject")));
    }
    if (!notes->AtEof()) {
        remark.addDetail(QStringLiteral("…"));
    }
    notes->Close();
}

void GridEvents::takeClone(const Ref<dao::Recordset>& recordset) {
    closeClone();
    m_cloneTried = false;
    if (!wantsMarks()) {
        return;
    }
    m_cloneTried = isSingleSplit();
    if (m_cloneTried && recordset) {
        const Ref<ICollection> shown = m_controller ? m_controller->CurrentObject() : nullptr;
        m_keys = {m_world.host.progID(), shown ? shown->ObjectKey() : QString(), QVariant(),
                  static_cast<int>(NoteStatus::Active)};
        m_recordIdColumn = recordset->FieldIndex(kRecordID);
        m_clone = recordset->Clone();
    }
    m_world.seek.open(m_world.context.database());
}

void GridEvents::closeClone() noexcept {
    m_recordIdColumn = -1;
    const Ref<dao::Recordset> clone = std::exchange(m_clone, nullptr);
    ignoreErrors([&] {
        if (clone) {
            clone->Close();
        }
    });
}

void GridEvents::fetchRowStyles() {
    if (m_world.context.switchOn(NotesSwitch::HighlightNotesRow) &&
        m_grid->columnOf(kRecordID) >= 0) {
        for (int split = 0; split < m_splits->splitCount(); ++split) {
            m_splits->setFetchRowStyle(split, split == 0);
        }
    }
}

void GridEvents::fetchCellStyles() {
    if (m_world.context.switchOn(NotesSwitch::FlagNotesRow) && m_flagColumn >= 0) {
        m_splits->setFetchCellStyle(0, true);
    }
}

void GridEvents::setUpLinkedColumns() {
    m_flagColumn = -1;
    if (!m_controller || !isSingleSplit()) {
        return;
    }
    const QScopedValueRollback<bool> suppress(m_suppressed, true);
    m_layoutName = m_controller->LayoutName();
    m_linkedColumnsSet = true;
    m_flagColumn = findFlagColumn(m_world.context.dataHelper(), *m_grid, m_layoutName);
    m_rememberedColumn = columnBeside(*m_grid, m_flagColumn);
    fetchCellStyles();
}

} // namespace yrw
