#include "platform/controls/GridPanes.h"

#include "platform/forms/Twips.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace yrw {

namespace {

constexpr int kRowsPerWheelStep = 3;
constexpr int kLeastColumnWidth = 12;

} // namespace

GridPanes::GridPanes(QWidget& grid, GridSource& source)
    : m_grid(grid), m_source(source), m_splitter(new QSplitter(Qt::Horizontal, &grid)),
      m_scroll(new QScrollBar(Qt::Vertical, &grid)) {
    auto* const layout = new QHBoxLayout(&grid);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_splitter, 1);
    layout->addWidget(m_scroll);
    m_splitter->setChildrenCollapsible(false);
    m_scroll->setObjectName(QStringLiteral("gridScroll"));
    connect(m_scroll, &QScrollBar::valueChanged, this, [this] { wasScrolled(); });
    add();
    grid.setFocusProxy(m_panes.first().body);
}

void GridPanes::add() {
    GridPane pane;
    const int split = count();
    pane.frame = new QWidget(m_splitter);
    pane.header = new QHeaderView(Qt::Horizontal, pane.frame);
    pane.header->setObjectName(QStringLiteral("gridHeader(%1)").arg(split));
    pane.header->setModel(&m_headers);
    pane.header->setSectionsClickable(true);
    pane.header->setHighlightSections(false);
    pane.header->setMinimumSectionSize(kLeastColumnWidth);
    pane.header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    pane.header->setFixedHeight(m_source.rowHeight() + 2);
    pane.body = new GridBody(m_source, split, *pane.header, pane.frame);
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

void GridPanes::connectPane(const GridPane& pane) {
    connect(pane.header, &QHeaderView::sectionResized, this,
            [this, header = pane.header](int column, int, int width) {
                sectionResized(header, column, width);
            });
    connect(pane.header, &QHeaderView::sectionClicked, this, &GridPanes::headerClicked);
    connect(pane.scroll, &QScrollBar::valueChanged, this, [this, pane](int value) {
        pane.header->setOffset(value);
        wasScrolled();
    });
}

void GridPanes::setCount(int count) {
    if (count == 2) {
        add();
        m_panes.last().frame->show();
    } else {
        delete m_panes.takeLast().frame;
        m_current = 0;
    }
    updateScrollBars();
}

GridBody* GridPanes::body(int split) const {
    return split >= 0 && split < count() ? m_panes.at(split).body : nullptr;
}

void GridPanes::setColumns(const QList<GridColumn>& columns) {
    m_columns = columns;
    showColumns();
}

void GridPanes::showColumns() {
    m_sizing = true;
    QStringList headers;
    for (const GridColumn& column : std::as_const(m_columns)) {
        headers.append(column.header);
    }
    m_headers.setColumnCount(static_cast<int>(m_columns.size()));
    m_headers.setHorizontalHeaderLabels(headers);
    for (const GridPane& pane : std::as_const(m_panes)) {
        for (int i = 0; i < m_columns.size(); ++i) {
            pane.header->resizeSection(i, twipsToPixels(m_columns.at(i).widthTwips));
            pane.header->setSectionHidden(i, !m_columns.at(i).visible);
        }
    }
    m_sizing = false;
}

int GridPanes::nextColumn(int from, int step) const {
    for (int column = from + step; column >= 0 && column < m_columns.size(); column += step) {
        if (m_columns.at(column).visible) {
            return column;
        }
    }
    return from < 0 || from >= m_columns.size() ? -1 : from;
}

void GridPanes::setSortIndicator(int column, Qt::SortOrder order) {
    for (const GridPane& pane : std::as_const(m_panes)) {
        pane.header->setSortIndicatorShown(column >= 0);
        pane.header->setSortIndicator(column, order);
    }
}

void GridPanes::sectionResized(const QHeaderView* header, int column, int width) {
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
    Q_EMIT columnResized();
    updateAll();
}

QRect GridPanes::cellRect(qint64 row, int column) const {
    const QRect cell = current().cellRect(row, column);
    return cell.isEmpty() ? QRect() : QRect(current().mapTo(&m_grid, cell.topLeft()), cell.size());
}

void GridPanes::updateAll() {
    for (const GridPane& pane : std::as_const(m_panes)) {
        pane.body->update();
    }
}

void GridPanes::updateRow(qint64 row) {
    for (const GridPane& pane : std::as_const(m_panes)) {
        pane.body->update(pane.body->rowRect(row));
    }
}

void GridPanes::updateScrollBars() {
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
    m_scroll->setRange(0, static_cast<int>(qMax<qint64>(0, m_source.shownRows() - page)));
    m_quiet = before;
}

void GridPanes::wasScrolled() {
    for (const GridPane& pane : std::as_const(m_panes)) {
        pane.body->forgetColours();
    }
    updateAll();
    Q_EMIT scrolled(!m_quiet);
}

void GridPanes::show(qint64 row, int column) {
    if (row < 0) {
        return;
    }
    const bool before = std::exchange(m_quiet, true);
    const int page = pageRows();
    if (row < topRow()) {
        m_scroll->setValue(static_cast<int>(row));
    } else if (row >= topRow() + page) {
        m_scroll->setValue(static_cast<int>(row) - page + 1);
    }
    const GridPane& pane = m_panes.at(m_current);
    if (column >= 0 && column < pane.header->count()) {
        const int left = pane.header->sectionPosition(column);
        const int room = pane.body->width() - pane.body->markWidth();
        const int right = left + pane.header->sectionSize(column);
        if (right > pane.scroll->value() + room) {
            pane.scroll->setValue(right - room);
        }
        if (left < pane.scroll->value()) {
            pane.scroll->setValue(left);
        }
    }
    m_quiet = before;
}

void GridPanes::scroll(const QWheelEvent& event) {
    const QPoint turned = event.angleDelta();
    if (turned.y() != 0) {
        const int steps = qRound(turned.y() * kRowsPerWheelStep / 120.0);
        m_scroll->setValue(m_scroll->value() - (steps != 0 ? steps : (turned.y() > 0 ? 1 : -1)));
    }
    if (turned.x() != 0) {
        QScrollBar* const bar = m_panes.at(m_current).scroll;
        bar->setValue(bar->value() - turned.x() / 2);
    }
}

} // namespace yrw
