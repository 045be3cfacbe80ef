#include "platform/controls/RecordGridPrivate.h"

#include "platform/component/AutomationError.h"

#include <QKeyEvent>
#include <QWheelEvent>

#include <utility>

namespace yrw {

RecordGrid::Private::Private(RecordGrid& owner) : m_grid(owner), m_panes(owner, *this) {
    connect(&m_panes, &GridPanes::headerClicked, this, [this](int column) {
        if (commitEdit()) {
            Q_EMIT m_grid.headerClicked(gridColumns().value(column).field);
        }
    });
    connect(&m_panes, &GridPanes::columnResized, this, &Private::placeEditor);
    connect(&m_panes, &GridPanes::scrolled, this, [this](bool byUser) {
        placeEditor();
        if (byUser) {
            m_grid.Scroll.raise();
        }
    });
}

void RecordGrid::Private::setSplitCount(int count) {
    if (m_panes.count() != count && commitEdit()) {
        m_panes.setCount(count);
    }
}

void RecordGrid::Private::setColumns(const QList<GridColumn>& wanted) {
    closeEditor();
    m_panes.setColumns(wanted);
    bindFields();
    if (!m_grid.isColumnVisible(m_column)) {
        m_column = m_panes.firstColumn();
    }
    m_panes.updateScrollBars();
    m_panes.updateAll();
}

void RecordGrid::Private::bindFields() {
    m_fields.clear();
    for (const GridColumn& column : gridColumns()) {
        m_fields.append(m_rows.columnOf(column.field));
    }
}

void RecordGrid::Private::setRecordset(const Ref<dao::Recordset>& recordset) {
    delete m_editor;
    m_rows.setRecordset(recordset);
    bindFields();
    m_column = m_grid.isColumnVisible(m_column) ? m_column : m_panes.firstColumn();
    startAt(m_rows.count() > 0 || canAddNew() ? 0 : -1);
}

void RecordGrid::Private::startAt(qint64 row) {
    m_row = row;
    m_rows.moveRecordset(row);
    m_bookmark = m_rows.select(row) ? m_rows.bookmark() : dao::Bookmark();
    m_panes.updateScrollBars();
    m_panes.show(m_row, m_column);
    m_panes.updateAll();
}

void RecordGrid::Private::setAllowAddNew(bool allow) {
    m_allowAddNew = allow;
    if (m_row >= shownRows()) {
        startAt(shownRows() - 1);
    }
    m_panes.updateScrollBars();
    m_panes.updateAll();
}

bool RecordGrid::Private::canAddNew() const {
    return m_allowAddNew && m_rows.isUpdatable();
}

qint64 RecordGrid::Private::shownRows() const {
    return m_rows.count() + (canAddNew() ? 1 : 0);
}

int RecordGrid::Private::rowHeight() const {
    return m_grid.fontMetrics().height() + 8;
}

bool RecordGrid::Private::hasKeyFocus() const {
    return m_panes.current().hasFocus() || !m_editor.isNull();
}

void RecordGrid::Private::bodyPressed(int split, qint64 row, int column) {
    m_panes.body(split)->setFocus(Qt::MouseFocusReason);
    m_panes.setCurrent(split);
    moveTo(row, column < 0 ? m_column : column);
}

void RecordGrid::Private::bodyDoubleClicked(qint64 row) {
    if (row >= m_rows.count()) {
        openEditor(nullptr);
    } else if (!isEditing()) {
        Q_EMIT m_grid.rowActivated();
    }
}

void RecordGrid::Private::bodyWheel(QWheelEvent* event) {
    m_panes.scroll(*event);
    event->accept();
}

void RecordGrid::Private::bodyResized() {
    m_panes.updateScrollBars();
    placeEditor();
}

void RecordGrid::Private::menuWanted(const QPoint& globalPosition) {
    Q_EMIT m_grid.contextMenuWanted(globalPosition);
}

AddNewMode RecordGrid::Private::addNewMode() const {
    if (m_row < 0 || m_row < m_rows.count()) {
        return AddNewMode::None;
    }
    return m_rows.isEditing() ? AddNewMode::AddNewPending : AddNewMode::AddNewCurrent;
}

bool RecordGrid::Private::moveTo(qint64 row, int column) {
    if (row == m_row && column == m_column) {
        return true;
    }
    if (!closeEditor() || (row != m_row && !commitRow())) {
        return false;
    }
    row = qMin(row, shownRows() - 1);
    if (row == m_row && column == m_column) {
        return true;
    }
    const dao::Bookmark lastBookmark = m_bookmark;
    const int lastColumn = m_column;
    m_panes.updateRow(m_row);
    if (row != m_row) {
        m_row = row;
        m_bookmark = m_rows.select(m_row) ? m_rows.bookmark() : dao::Bookmark();
        m_rows.moveRecordset(m_row);
    }
    m_column = column;
    m_panes.show(m_row, m_column);
    m_panes.updateRow(m_row);
    m_panes.current().announceCursor();
    m_grid.RowColChange.raise(lastBookmark, lastColumn);
    Q_EMIT m_grid.currentCellChanged();
    return true;
}

qint64 RecordGrid::Private::lastRow() const {
    return shownRows() - (isEditing() && m_row >= m_rows.count() ? 0 : 1);
}

std::optional<std::pair<qint64, int>>
RecordGrid::Private::cellForKey(const QKeyEvent& event) const {
    const bool ctrl = event.modifiers().testFlag(Qt::ControlModifier);
    switch (event.key()) {
    case Qt::Key_Up:
        return std::pair(m_row - 1, m_column);
    case Qt::Key_Down:
        return std::pair(m_row + 1, m_column);
    case Qt::Key_PageUp:
        return std::pair(m_row - m_panes.pageRows(), m_column);
    case Qt::Key_PageDown:
        return std::pair(m_row + m_panes.pageRows(), m_column);
    case Qt::Key_Home:
        return ctrl ? std::pair(qint64(0), m_column) : std::pair(m_row, m_panes.firstColumn());
    case Qt::Key_End:
        return ctrl ? std::pair(lastRow(), m_column) : std::pair(m_row, m_panes.lastColumn());
    case Qt::Key_Left:
        return std::pair(m_row, m_panes.nextColumn(m_column, -1));
    case Qt::Key_Right:
        return std::pair(m_row, m_panes.nextColumn(m_column, 1));
    default:
        return std::nullopt;
    }
}

bool RecordGrid::Private::handleKey(const QKeyEvent& event) {
    const auto cell = cellForKey(event);
    if (!cell) {
        return editKey(event);
    }
    if (m_row >= 0) {
        moveTo(qBound<qint64>(0, cell->first, lastRow()), cell->second);
    }
    return true;
}

bool RecordGrid::Private::editKey(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_F2:
        return openEditor(nullptr);
    case Qt::Key_Escape:
        if (!isEditing()) {
            return false;
        }
        cancelEdit();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_row >= 0 && m_row < m_rows.count() && !isEditing()) {
            Q_EMIT m_grid.rowActivated();
            return true;
        }
        return openEditor(nullptr);
    default:
        break;
    }
    const Qt::KeyboardModifiers held =
        event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    const QString typed = event.text();
    if (held != Qt::NoModifier || typed.isEmpty() || !typed.at(0).isPrint()) {
        return false;
    }
    return openEditor(&typed);
}

bool RecordGrid::Private::tabPressed(bool forward) {
    if (m_row < 0) {
        return false;
    }
    const int next = m_panes.nextColumn(m_column, forward ? 1 : -1);
    if (next != m_column) {
        moveTo(m_row, next);
        return true;
    }
    const qint64 row = m_row + (forward ? 1 : -1);
    if (row < 0 || row > lastRow()) {
        return false;
    }
    moveTo(row, forward ? m_panes.firstColumn() : m_panes.lastColumn());
    return true;
}

bool RecordGrid::Private::openEditor(const QString* typed) {
    const int field = fieldOf(m_column);
    if (m_editor || m_row < 0 || field < 0 || !m_rows.isUpdatable() ||
        !gridColumns().at(m_column).editable) {
        return false;
    }
    m_panes.show(m_row, m_column);
    m_rows.select(m_row);
    try {
        m_textBefore = gridText(m_rows.value(field), gridColumns().at(m_column).decimals);
    } catch (const AutomationError& error) {
        failEdit(error.description());
        return true;
    }
    m_editor = new GridEditor(&m_panes.current());
    m_editor->setAccessibleName(gridColumns().at(m_column).header);
    m_editor->setText(typed != nullptr ? *typed : m_textBefore);
    if (typed == nullptr) {
        m_editor->selectAll();
    }
    connectEditor();
    placeEditor();
    m_editor->show();
    m_editor->setFocus(Qt::OtherFocusReason);
    if (m_row >= m_rows.count() && typed != nullptr) {
        startEdit();
    }
    return true;
}

void RecordGrid::Private::connectEditor() {
    GridEditor* const editor = m_editor;
    connect(editor, &GridEditor::finished, this, [this] {
        if (closeEditor()) {
            m_panes.current().setFocus(Qt::OtherFocusReason);
        }
    });
    connect(editor, &GridEditor::canceled, this, [this] { cancelEdit(); });
    connect(editor, &GridEditor::tabbed, this, [this](bool forward) { tabPressed(forward); });
    connect(editor, &GridEditor::focusLost, this, [this] { closeEditor(); });
    connect(editor, &GridEditor::rowKeyPressed, this, [this](int key) {
        const QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        handleKey(event);
    });
}

void RecordGrid::Private::placeEditor() {
    if (m_editor) {
        const QRect cell = m_panes.current().cellRect(m_row, m_column);
        m_editor->setVisible(!cell.isEmpty());
        m_editor->setGeometry(cell.adjusted(1, 1, -2, -2));
    }
}

bool RecordGrid::Private::applyText(int column, const QString& text) {
    const int field = fieldOf(column);
    const std::optional<QVariant> value = gridValue(text, m_rows.typeOf(field));
    if (!value) {
        failEdit(RecordGrid::tr("'%1' does not fit the column %2.")
                     .arg(text, gridColumns().at(column).header));
        return false;
    }
    if (!startEdit()) {
        return false;
    }
    m_rows.setValue(field, *value);
    m_panes.updateRow(m_row);
    return true;
}

bool RecordGrid::Private::startEdit() {
    if (m_rows.isEditing()) {
        return true;
    }
    try {
        m_rows.beginEdit(m_row);
    } catch (const AutomationError& error) {
        failEdit(error.description());
        return false;
    }
    m_panes.updateRow(m_row);
    if (m_row >= m_rows.count()) {
        Q_EMIT m_grid.addRowStarted();
    }
    return true;
}

void RecordGrid::Private::dropEditor() {
    GridEditor* const editor = std::exchange(m_editor, nullptr);
    editor->disconnect(this);
    editor->hide();
    editor->deleteLater();
}

bool RecordGrid::Private::closeEditor() {
    if (!m_editor) {
        return true;
    }
    const QString text = m_editor->text();
    const bool changed = text != m_textBefore;
    const int column = m_column;
    if (changed && !applyText(column, text)) {
        return false;
    }
    if (!m_editor) {
        return true; // a handler has closed it
    }
    const bool hadFocus = m_editor->hasFocus();
    dropEditor();
    if (hadFocus) {
        m_panes.current().setFocus(Qt::OtherFocusReason);
    }
    if (changed) {
        m_grid.AfterColUpdate.raise(column);
    }
    return true;
}

bool RecordGrid::Private::commitRow() {
    if (!m_rows.isEditing()) {
        return true;
    }
    try {
        m_row = m_rows.commit();
    } catch (const AutomationError& error) {
        failEdit(error.description());
        return false;
    }
    m_bookmark = m_rows.select(m_row) ? m_rows.bookmark() : dao::Bookmark();
    m_rows.moveRecordset(m_row);
    m_panes.updateScrollBars();
    m_panes.updateAll();
    Q_EMIT m_grid.recordWritten();
    return true;
}

bool RecordGrid::Private::commitEdit() {
    return closeEditor() && commitRow();
}

void RecordGrid::Private::cancelEdit() {
    const bool wasEditing = isEditing();
    if (m_editor) {
        dropEditor();
        m_panes.current().setFocus(Qt::OtherFocusReason);
    }
    m_rows.cancel();
    m_panes.updateRow(m_row);
    if (wasEditing) {
        Q_EMIT m_grid.addEditCanceled();
    }
}

void RecordGrid::Private::failEdit(const QString& reason) {
    Q_EMIT m_grid.editFailed(reason);
}

} // namespace yrw
