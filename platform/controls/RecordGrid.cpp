#include "platform/controls/RecordGrid.h"

#include "platform/controls/GridAccessible.h"
#include "platform/controls/RecordGridPrivate.h"
#include "platform/forms/ContextMenuKey.h"

#include <QContextMenuEvent>
#include <QKeyEvent>

namespace yrw {

RecordGrid::RecordGrid(QWidget* parent)
    : QWidget(parent), m_private(std::make_unique<Private>(*this)) {
    installGridAccessibility();
    setAccessibleName(tr("Grid"));
}

RecordGrid::~RecordGrid() = default;

void RecordGrid::setRecordset(const Ref<dao::Recordset>& recordset) {
    m_private->setRecordset(recordset);
}

Ref<dao::Recordset> RecordGrid::recordset() const {
    return m_private->rows().recordset();
}

void RecordGrid::setColumns(const QList<GridColumn>& columns) {
    m_private->setColumns(columns);
}

QList<GridColumn> RecordGrid::columns() const {
    return m_private->gridColumns();
}

void RecordGrid::setSortIndicator(const QString& field, Qt::SortOrder order) {
    m_private->panes().setSortIndicator(columnOf(field), order);
}

void RecordGrid::setAllowAddNew(bool allow) {
    m_private->setAllowAddNew(allow);
}

void RecordGrid::setSplitCount(int count) {
    m_private->setSplitCount(qBound(1, count, 2));
}

qint64 RecordGrid::rowCount() const {
    return m_private->rows().count();
}

qint64 RecordGrid::currentRow() const {
    return m_private->cursorRow();
}

void RecordGrid::setCurrentRow(qint64 row) {
    if (row >= 0 && row < m_private->shownRows()) {
        m_private->moveTo(row, m_private->cursorColumn());
    }
}

bool RecordGrid::isEditing() const {
    return m_private->isEditing();
}

bool RecordGrid::commitEdit() {
    return m_private->commitEdit();
}

void RecordGrid::cancelEdit() {
    m_private->cancelEdit();
}

QRect RecordGrid::cellRect(qint64 row, int column) const {
    return m_private->panes().cellRect(row, column);
}

QColor RecordGrid::paintedRowColour(qint64 row) const {
    return m_private->panes().body(0)->paintedColour(row);
}

int RecordGrid::splitCount() const {
    return m_private->panes().count();
}

bool RecordGrid::fetchesRowStyle(int split) const {
    const GridBody* const body = m_private->panes().body(split);
    return body != nullptr && body->fetchesRowStyle;
}

void RecordGrid::setFetchRowStyle(int split, bool fetch) {
    if (GridBody* const body = m_private->panes().body(split)) {
        body->fetchesRowStyle = fetch;
        body->update();
    }
}

bool RecordGrid::fetchesCellStyle(int split) const {
    const GridBody* const body = m_private->panes().body(split);
    return body != nullptr && body->fetchesCellStyle;
}

void RecordGrid::setFetchCellStyle(int split, bool fetch) {
    if (GridBody* const body = m_private->panes().body(split)) {
        body->fetchesCellStyle = fetch;
        body->update();
    }
}

int RecordGrid::columnCount() const {
    return static_cast<int>(m_private->gridColumns().size());
}

QString RecordGrid::columnField(int column) const {
    return m_private->gridColumns().value(column).field;
}

bool RecordGrid::isColumnVisible(int column) const {
    return column >= 0 && column < columnCount() && m_private->gridColumns().at(column).visible;
}

int RecordGrid::columnOf(const QString& field) const {
    for (int column = 0; column < columnCount(); ++column) {
        if (columnField(column).compare(field, Qt::CaseInsensitive) == 0) {
            return column;
        }
    }
    return -1;
}

int RecordGrid::currentColumn() const {
    return m_private->cursorColumn();
}

void RecordGrid::setCurrentColumn(int column) {
    if (isColumnVisible(column)) {
        m_private->moveTo(m_private->cursorRow(), column);
    }
}

AddNewMode RecordGrid::addNewMode() const {
    return m_private->addNewMode();
}

void RecordGrid::refresh() {
    m_private->panes().updateAll();
}

void RecordGrid::keyPressEvent(QKeyEvent* event) {
    if (!askedForMenu(*this, *event) && !m_private->handleKey(*event)) {
        QWidget::keyPressEvent(event);
    }
}

void RecordGrid::contextMenuEvent(QContextMenuEvent* event) {
    // A mouse button asks for the menu when it is released.
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const QRect cell = cellRect(currentRow(), currentColumn());
        m_private->menuWanted(mapToGlobal(cell.isEmpty() ? QPoint(8, 8) : cell.bottomLeft()));
    }
    event->accept();
}

} // namespace yrw
