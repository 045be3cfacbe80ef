#include "platform/controls/RecordGridPrivate.h"

#include "platform/forms/Twips.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace yrw {

namespace {

constexpr int kRowsPerWheelStep = 3;
constexpr int kLeastColumnWidth = 12;

} // namespace

RecordGrid::Private::Private(RecordGrid& owner)
    : m_grid(owner), m_splitter(new QSplitter(Qt::Horizontal, &owner)),
      m_scroll(new QScrollBar(Qt::Vertical, &owner)) {
    auto* const layout = new QHBoxLayout(&owner);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_splitter, 1);
    layout->addWidget(m_scroll);
    m_splitter->setChildrenCollapsible(false);
    m_scroll->setObjectName(QStringLiteral("gridScroll"));
    connect(m_scroll, &QScrollBar::valueChanged, this, [this] { scrolled(); });
    addPane();
    owner.setFocusProxy(m_panes.first().body);
}

void RecordGrid::Private::addPane() {
    GridPane pane;
    const int split = splits();
    pane.frame = new QWidget(m_splitter);
    pane.header = new QHeaderView(Qt::Horizontal, pane.frame);
    pane.header->setObjectName(QStringLiteral("gridHeader(%1)").arg(split));
    pane.header->setModel(&m_headerModel);
    pane.header->setSectionsClickable(true);
    pane.header->setHighlightSections(false);
    pane.header->setMinimumSectionSize(kLeastColumnWidth);
    pane.header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    pane.header->setFixedHeight(rowHeight() + 2);
    pane.body = new GridBody(*this, split, *pane.header, pane.frame);
    pane.scroll = new QScrollBar(Qt::Horizontal, pane.frame);
    auto* const top = new QHBoxLayout;
    top->addSpacing(pane.body->markWidth());
    top->addWidget(pane.header, 1);
    auto* const layout = new QVBoxLayout(pane.frame);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(top);
    layout->addWidget(pane.body, 1);
    layout->addWidget(pane.scroll);
    m_splitter->addWidget(pane.frame);
    m_panes.append(pane);
    connectPane(pane);
    showColumns();
}

void RecordGrid::Private::connectPane(const GridPane& pane) {
    connect(pane.header, &QHeaderView::sectionResized, this,
            [this, header = pane.header](int column, int, int width) {
                sectionResized(header, column, width);
            });
    connect(pane.header, &QHeaderView::sectionClicked, this, [this](int column) {
        if (commitEdit()) {
            Q_EMIT m_grid.headerClicked(m_columns.value(column).field);
        }
    });
    connect(pane.scroll, &QScrollBar::valueChanged, this, [this, pane](int value) {
        pane.header->setOffset(value);
        scrolled();
    });
}

GridBody* RecordGrid::Private::body(int split) const {
    return split >= 0 && split < splits() ? m_panes.at(split).body : nullptr;
}

void RecordGrid::Private::setSplitCount(int count) {
    if (splits() == count || !commitEdit()) {
        return;
    }
    if (count == 2) {
        addPane();
        m_panes.last().frame->show();
    } else {
        delete m_panes.takeLast().frame;
        m_pane = 0;
    }
    updateScrollBars();
}

void RecordGrid::Private::setColumns(const QList<GridColumn>& wanted) {
    closeEditor();
    m_columns = wanted;
    bindFields();
    showColumns();
    if (!m_grid.isColumnVisible(m_column)) {
        m_column = firstColumn();
    }
    updateScrollBars();
    updateAll();
}

void RecordGrid::Private::bindFields() {
    m_fields.clear();
    for (const GridColumn& column : std::as_const(m_columns)) {
        m_fields.append(m_rows.columnOf(column.field));
    }
}

void RecordGrid::Private::showColumns() {
    m_sizing = true;
    QStringList headers;
    for (const GridColumn& column : std::as_const(m_columns)) {
        headers.append(column.header);
    }
    m_headerModel.setColumnCount(static_cast<int>(m_columns.size()));
    m_headerModel.setHorizontalHeaderLabels(headers);
    for (const GridPane& pane : std::as_const(m_panes)) {
        for (int i = 0; i < m_columns.size(); ++i) {
            pane.header->resizeSection(i, twipsToPixels(m_columns.at(i).widthTwips));
            pane.header->setSectionHidden(i, !m_columns.at(i).visible);
        }
    }
    m_sizing = false;
}

void RecordGrid::Private::setSortIndicator(const QString& field, Qt::SortOrder order) {
    const int column = m_grid.columnOf(field);
    for (const GridPane& pane : std::as_const(m_panes)) {
        pane.header->setSortIndicatorShown(column >= 0);
        pane.header->setSortIndicator(column, order);
    }
}

void RecordGrid::Private::sectionResized(const QHeaderView* header, int column, int width) {
    if (m_sizing || column >= m_columns.size() || !m_columns.at(column).visible) {
        return;
    }
    m_sizing = true;
    m_columns[column].widthTwips = pixelsToTwips(width);
    for (const GridPane& pane : std::as_const(m_panes)) {
        if (pane.header != header) {
            pane.header->resizeSection(column, width);
        }
    }
    m_sizing = false;
    updateScrollBars();
    placeEditor();
    updateAll();
}

void RecordGrid::Private::setRecordset(const Ref<dao::Recordset>& recordset) {
    delete m_editor;
    m_rows.setRecordset(recordset);
    bindFields();
    m_column = m_grid.isColumnVisible(m_column) ? m_column : firstColumn();
    startAt(m_rows.count() > 0 || canAddNew() ? 0 : -1);
}

void RecordGrid::Private::reload() {
    const dao::Bookmark place = m_bookmark;
    const qint64 row = m_row;
    delete m_editor;
    m_rows.setRecordset(Ref<dao::Recordset>(m_rows.recordset()));
    bindFields();
    const qint64 found = m_rows.rowOf(place);
    startAt(found >= 0 ? found : qMin(row, shownRows() - 1));
}

void RecordGrid::Private::startAt(qint64 row) {
    m_row = row;
    m_rows.moveRecordset(row);
    m_bookmark = m_rows.select(row) ? m_rows.bookmark() : dao::Bookmark();
    updateScrollBars();
    showCursor();
    updateAll();
}

void RecordGrid::Private::setAllowAddNew(bool allow) {
    m_allowAddNew = allow;
    if (m_row >= shownRows()) {
        startAt(shownRows() - 1);
    }
    updateScrollBars();
    updateAll();
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
    const GridPane& pane = m_panes.at(m_pane);
    return pane.body->hasFocus() || !m_editor.isNull();
}

QRect RecordGrid::Private::cellRect(qint64 row, int column) const {
    const GridBody* const pane = m_panes.at(m_pane).body;
    const QRect cell = pane->cellRect(row, column);
    return cell.isEmpty() ? QRect() : QRect(pane->mapTo(&m_grid, cell.topLeft()), cell.size());
}

void RecordGrid::Private::updateAll() {
    for (const GridPane& pane : std::as_const(m_panes)) {
        pane.body->update();
    }
}

void RecordGrid::Private::updateRow(qint64 row) {
    for (const GridPane& pane : std::as_const(m_panes)) {
        pane.body->update(pane.body->rowRect(row));
    }
}

void RecordGrid::Private::updateScrollBars() {
    const bool before = std::exchange(m_quiet, true);
    int page = m_panes.first().body->fullRows();
    for (const GridPane& pane : std::as_const(m_panes)) {
        page = qMin(page, pane.body->fullRows());
        const int room = pane.body->width() - pane.body->markWidth();
        pane.scroll->setRange(0, qMax(0, pane.header->length() - room));
        pane.scroll->setPageStep(qMax(1, room));
        pane.scroll->setSingleStep(20);
        pane.scroll->setVisible(pane.header->length() > room);
    }
    m_scroll->setPageStep(page);
    m_scroll->setRange(0, static_cast<int>(qMax<qint64>(0, shownRows() - page)));
    m_quiet = before;
}

void RecordGrid::Private::scrolled() {
    for (const GridPane& pane : std::as_const(m_panes)) {
        pane.body->forgetColours();
    }
    placeEditor();
    updateAll();
    if (!m_quiet) {
        m_grid.Scroll.raise();
    }
}

void RecordGrid::Private::showCursor() {
    if (m_row < 0) {
        return;
    }
    const bool before = std::exchange(m_quiet, true);
    const int page = m_scroll->pageStep();
    if (m_row < m_scroll->value()) {
        m_scroll->setValue(static_cast<int>(m_row));
    } else if (m_row >= m_scroll->value() + page) {
        m_scroll->setValue(static_cast<int>(m_row) - page + 1);
    }
    const GridPane& pane = m_panes.at(m_pane);
    if (m_column >= 0 && m_column < pane.header->count()) {
        const int left = pane.header->sectionPosition(m_column);
        const int room = pane.body->width() - pane.body->markWidth();
        const int right = left + pane.header->sectionSize(m_column);
        if (right > pane.scroll->value() + room) {
            pane.scroll->setValue(right - room);
        }
        if (left < pane.scroll->value()) {
            pane.scroll->setValue(left);
        }
    }
    m_quiet = before;
}

void RecordGrid::Private::bodyPressed(int split, qint64 row, int column) {
    m_panes.at(split).body->setFocus(Qt::MouseFocusReason);
    m_pane = split;
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
    const QPoint turned = event->angleDelta();
    if (turned.y() != 0) {
        const int steps = qRound(turned.y() * kRowsPerWheelStep / 120.0);
        m_scroll->setValue(m_scroll->value() - (steps != 0 ? steps : (turned.y() > 0 ? 1 : -1)));
    }
    if (turned.x() != 0) {
        QScrollBar* const bar = m_panes.at(m_pane).scroll;
        bar->setValue(bar->value() - turned.x() / 2);
    }
    event->accept();
}

void RecordGrid::Private::bodyResized() {
    updateScrollBars();
    placeEditor();
}

void RecordGrid::Private::menuWanted(const QPoint& globalPosition) {
    Q_EMIT m_grid.contextMenuWanted(globalPosition);
}

} // namespace yrw
