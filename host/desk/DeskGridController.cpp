#include "host/desk/DeskGridController.h"

#include "host/core/RowConditions.h"
#include "platform/component/AutomationError.h"

#include <QScopedValueRollback>

namespace yrw {

namespace {

/// Beyond this many rows a lost place is not searched for: it would cost more than it is worth.
constexpr qint64 kSearchedRows = 20000;

} // namespace

DeskGridController::DeskGridController(RecordGrid& grid, QList<GridLayout> layouts,
                                       ObjectMaker makeObject, QObject* parent)
    : QObject(parent), m_grid(grid), m_layouts(std::move(layouts)),
      m_makeObject(std::move(makeObject)) {
    m_rest.setSingleShot(true);
    m_rest.setInterval(kRestMs);
    connect(&m_rest, &QTimer::timeout, this, &DeskGridController::rested);
    connectGrid();
}

void DeskGridController::connectGrid() {
    connect(&m_grid, &RecordGrid::currentCellChanged, this, &DeskGridController::cursorMoved);
    connect(&m_grid, &RecordGrid::headerClicked, this, &DeskGridController::sortBy);
    connect(&m_grid, &RecordGrid::recordWritten, this, &DeskGridController::rowWritten);
    connect(&m_grid, &RecordGrid::addRowStarted, this, [this] {
        m_adding = true;
        OnAddRow.raise();
    });
    connect(&m_grid, &RecordGrid::addEditCanceled, this, [this] {
        m_adding = false;
        AfterAddEditCanceled.raise();
    });
}

DeskGridController::~DeskGridController() = default;

IRecordGrid* DeskGridController::Grid() {
    return &m_grid;
}

Ref<IRecord> DeskGridController::CurrentRecord() {
    const qint64 id = currentRecordID();
    return id == 0 || !m_object ? Ref<IRecord>() : m_object->Item(QVariant(id));
}

Ref<ICollection> DeskGridController::CurrentObject() {
    return m_object;
}

bool DeskGridController::Busy() {
    return m_binding || m_grid.isEditing();
}

QString DeskGridController::LayoutName() {
    return layout().name;
}

Ref<dao::Recordset> DeskGridController::Recordset() {
    return m_rows;
}

QStringList DeskGridController::layoutNames() const {
    QStringList names;
    for (const GridLayout& each : m_layouts) {
        names += each.name;
    }
    return names;
}

void DeskGridController::loadLayout(const QString& name) {
    rememberWidths();
    m_layout = qMax(qsizetype(0), layoutNames().indexOf(name));
    m_sortField = layout().sortField;
    m_descending = false;
    showHeaders();
    AfterLayoutLoad.raise();
    Q_EMIT layoutLoaded(layout().name);
    rebind();
}

void DeskGridController::rememberWidths() {
    const QList<GridColumn> shown = m_grid.columns();
    if (shown.size() != layout().columns.size()) {
        return;
    }
    for (qsizetype i = 0; i < shown.size(); ++i) {
        layout().columns[i].widthTwips = shown[i].widthTwips;
    }
}

void DeskGridController::showHeaders() {
    m_grid.setColumns(layout().columns);
    m_grid.setSortIndicator(m_sortField, m_descending ? Qt::DescendingOrder : Qt::AscendingOrder);
}

RecordsetRequest DeskGridController::request() const {
    RecordsetRequest wanted;
    wanted.CursorType = dao::RecordsetType::Dynaset;
    wanted.Filter = m_filterText.isEmpty() ? QString() : holding(m_filterText);
    wanted.Sort = orderBy(m_sortField, m_descending);
    return wanted;
}

QString DeskGridController::holding(const QString& text) const {
    QStringList fields;
    for (const GridColumn& each : layout().columns) {
        if (each.visible) {
            fields += each.field;
        }
    }
    return rowsHolding(text, fields);
}

bool DeskGridController::anyRowHolds(const QString& text) const {
    RecordsetRequest wanted = request();
    wanted.CursorType = dao::RecordsetType::ForwardOnly;
    wanted.Filter = rowsOfBoth(wanted.Filter, holding(text));
    const Ref<dao::Recordset> rows = m_object->Recordset(wanted);
    const bool any = !rows->AtEof();
    rows->Close();
    return any;
}

void DeskGridController::rebind() {
    const qint64 id = currentRecordID();
    const qint64 row = m_grid.currentRow();
    const bool sameObject = m_object != nullptr;
    {
        const QScopedValueRollback<bool> binding(m_binding, true);
        BeforeRebind.raise();
        m_object = m_makeObject(layout().everyRecord);
        bindRows(m_object ? m_object->Recordset(request()) : Ref<dao::Recordset>());
        if (sameObject) {
            restoreCursor(id, row);
        }
        AfterRebind.raise();
    }
    m_restedRow = -1;
    noteRecord();
    cursorMoved();
}

void DeskGridController::bindRows(const Ref<dao::Recordset>& rows) {
    m_rows = rows;
    m_grid.setRecordset(m_rows);
    AfterRecordsetChange.raise(m_rows);
    Q_EMIT rowsRead(m_rows ? m_grid.rowCount() : 0);
}

void DeskGridController::unbind() {
    m_rest.stop();
    m_grid.cancelEdit();
    m_object.reset();
    bindRows(nullptr);
}

void DeskGridController::restoreCursor(qint64 recordID, qint64 row) {
    const qint64 count = m_grid.rowCount();
    if (count == 0 || row < 0) {
        return;
    }
    m_grid.setCurrentRow(qMin(row, count - 1));
    if (recordID != 0 && currentRecordID() != recordID && count <= kSearchedRows) {
        goToRecord(recordID);
    }
}

void DeskGridController::setFilterText(const QString& text) {
    if (text == m_filterText) {
        return;
    }
    m_filterText = text;
    rebind();
}

void DeskGridController::sortBy(const QString& field) {
    m_descending = field == m_sortField && !m_descending;
    m_sortField = field;
    rememberWidths();
    showHeaders();
    rebind();
}

void DeskGridController::setSplit(bool split) {
    m_grid.setSplitCount(split ? 2 : 1);
    AfterLayoutLoad.raise();
    rebind();
}

qint64 DeskGridController::scan(qint64 from, qint64 to,
                                const std::function<bool(const dao::Recordset&)>& test) const {
    if (!m_rows || from >= to) {
        return -1;
    }
    const Ref<dao::Recordset> cursor = m_rows->Clone();
    cursor->setAbsolutePosition(from);
    for (qint64 row = from; row < to && !cursor->AtEof(); ++row, cursor->MoveNext()) {
        if (test(*cursor)) {
            return row;
        }
    }
    return -1;
}

bool DeskGridController::findNext(const QString& text) {
    // The database knows sooner that there is nothing than a walk through a million rows.
    if (!m_rows || text.isEmpty() || !anyRowHolds(text)) {
        return false;
    }
    std::vector<int> searched;
    for (const GridColumn& each : layout().columns) {
        if (each.visible) {
            searched.push_back(m_rows->FieldIndex(each.field));
        }
    }
    const auto holdsText = [&](const dao::Recordset& rows) {
        return std::any_of(searched.begin(), searched.end(), [&](int column) {
            return column >= 0 && rows.value(column).toString().contains(text, Qt::CaseInsensitive);
        });
    };
    const qint64 next = m_grid.currentRow() + 1;
    qint64 found = scan(next, m_grid.rowCount(), holdsText);
    if (found < 0) {
        found = scan(0, next, holdsText);
    }
    if (found >= 0) {
        m_grid.setCurrentRow(found);
    }
    return found >= 0;
}

bool DeskGridController::goToRecord(qint64 recordID) {
    const int key = m_rows ? m_rows->FieldIndex(u"RecordID") : -1;
    if (key < 0) {
        return false;
    }
    const qint64 row = scan(0, m_grid.rowCount(), [&](const dao::Recordset& rows) {
        return rows.value(key).toLongLong() == recordID;
    });
    if (row >= 0) {
        m_grid.setCurrentRow(row);
    }
    return row >= 0;
}

qint64 DeskGridController::currentRecordID() const {
    if (!m_rows || !m_rows->isOpen() || m_grid.currentRow() < 0 ||
        m_grid.addNewMode() != AddNewMode::None || m_rows->AtEof() || m_rows->AtBof()) {
        return 0;
    }
    return m_rows->value(u"RecordID").toLongLong();
}

void DeskGridController::setCurrent(bool current) {
    if (current == m_current) {
        return;
    }
    m_current = current;
    m_restedRow = -1;
    cursorMoved();
}

void DeskGridController::cursorMoved() {
    if (m_binding) {
        return;
    }
    noteRecord();
    if (m_grid.currentRow() != m_restedRow) {
        m_restedRow = -1; // coming back, however soon, is a new rest
    }
    if (m_current) {
        m_rest.start();
    } else {
        m_rest.stop();
    }
}

void DeskGridController::rowWritten() {
    if (std::exchange(m_adding, false)) {
        Q_EMIT rowsRead(m_grid.rowCount());
        Q_EMIT recordAdded();
    }
}

void DeskGridController::noteRecord() {
    const qint64 id = currentRecordID();
    if (id != m_noticedRecord) {
        m_noticedRecord = id;
        Q_EMIT recordChanged();
    }
}

void DeskGridController::rested() {
    const qint64 row = m_grid.currentRow();
    if (!m_current || Busy() || row < 0) {
        return;
    }
    if (row != m_restedRow) {
        m_restedRow = row;
        StayOnRow.raise();
    }
    StayOnCell.raise();
}

} // namespace yrw
