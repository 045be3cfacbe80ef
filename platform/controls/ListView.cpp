#include "platform/controls/ListView.h"

#include "platform/controls/PlainToolTip.h"
#include "platform/forms/ContextMenuKey.h"
#include "platform/forms/Twips.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QToolTip>

#include <utility>

namespace yrw {

namespace {

constexpr int kRowsPerTurn = 512; ///< fetched when there is nothing else to do
constexpr int kRowsPerStep = 512; ///< fetched between two looks at who wants to stop

/// Gives the rows some air.
class RoomyDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 5);
    }
};

} // namespace

ListView::ListView(QWidget* parent)
    : QTreeView(parent), m_items(this), m_typing(this), m_fetching(this) {
    m_typing.setSingleShot(true);
    connect(&m_fetching, &QTimer::timeout, this, &ListView::fetchInPassing);
    setModel(&m_items);
    setItemDelegate(new RoomyDelegate(this));
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    header()->setSectionsClickable(true);
    header()->setSectionsMovable(false);
    header()->setStretchLastSection(false);
    header()->setSortIndicatorShown(false);
    setAccessibleName(tr("List"));
    m_items.setBackground(palette().color(QPalette::Base));
    connect(header(), &QHeaderView::sectionClicked, this, &ListView::columnClick);
}

ListView::~ListView() {
    setModel(nullptr);
}

void ListView::addColumn(const QString& header, const QString& key, int widthTwips) {
    m_items.addColumn(header, key);
    setColumnWidth(m_items.columnCount() - 1, twipsToPixels(widthTwips));
}

void ListView::removeColumn(const QString& key) {
    const int column = m_items.columnOf(key);
    if (column < 0) {
        return;
    }
    m_items.removeColumn(column);
    Sorting sorting = m_sorting;
    if (sorting.column > column) {
        --m_sorting.column;
    } else if (sorting.column == column) {
        sorting.column = 0;
        change(sorting);
    }
    showIndicator();
}

void ListView::addItems(const QList<ListItem>& items) {
    m_items.append(items);
    sortAdded();
}

void ListView::addKeys(const QStringList& keys) {
    m_items.appendKeys(keys);
    sortAdded();
    if (m_items.missing() > 0) {
        m_fetching.start(0);
    }
}

void ListView::sortAdded() {
    m_sorting.on = sortAll() && m_sorting.on;
    showIndicator();
}

void ListView::fetchInPassing() {
    const bool went = m_items.fetchSome(kRowsPerTurn);
    if (!went || m_items.missing() == 0) {
        m_fetching.stop();
    }
    if (!went) {
        Q_EMIT sourceFailed();
    }
}

bool ListView::fetchAll(const WorkStep& goesOn) {
    const int all = m_items.missing();
    while (m_items.missing() > 0) {
        const int done = 100 - int(qint64(100) * m_items.missing() / qMax(all, 1));
        if ((goesOn && !goesOn(done)) || !m_items.fetchSome(kRowsPerStep)) {
            return false;
        }
    }
    return true;
}

bool ListView::sortAll() {
    if (!m_sorting.on || m_items.columnCount() == 0) {
        return true;
    }
    const WorkStep goesOn = m_beginWork ? m_beginWork() : WorkStep();
    return fetchAll(goesOn) && m_items.sortRows(m_sorting.column, m_sorting.order, goesOn);
}

void ListView::change(const Sorting& to) {
    const Sorting before = std::exchange(m_sorting, to);
    if (!sortAll()) {
        m_sorting = before;
    }
    showIndicator();
}

void ListView::showIndicator() const {
    header()->setSortIndicatorShown(m_sorting.on);
    if (m_sorting.on) {
        header()->setSortIndicator(m_sorting.column, m_sorting.order);
    }
}

int ListView::findTyped(int from) const {
    const int rows = m_items.rowCount();
    QList<int> columns{m_sorting.column};
    for (int i = 0; i < m_items.columnCount(); ++i) {
        columns.append(i);
    }
    for (const int candidate : std::as_const(columns)) {
        for (int i = 0; i < rows; ++i) {
            const int row = (from + i) % rows;
            if (m_items.textAt(row, candidate).startsWith(m_typed, Qt::CaseInsensitive)) {
                return row;
            }
        }
    }
    return -1;
}

int ListView::addItem(const ListItem& item) {
    if (isSorted()) {
        return m_items.insertSorted(item, sortKey(), sortOrder());
    }
    m_items.append({item});
    return m_items.rowCount() - 1;
}

QString ListView::selectedKey() const {
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? QString() : m_items.keyAt(rows.first().row());
}

void ListView::selectKey(const QString& key) {
    const int row = m_items.rowOf(key);
    if (row < 0) {
        selectionModel()->clear();
        return;
    }
    const QModelIndex index = m_items.index(row, 0);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                 QItemSelectionModel::Rows);
    scrollTo(index);
}

void ListView::sortBy(int column, Qt::SortOrder order) {
    change({column, order, true});
}

void ListView::setEmptyText(const QString& text) {
    m_emptyText = text;
    viewport()->update();
}

void ListView::keyboardSearch(const QString& search) {
    const bool sameWord = m_typing.isActive();
    // The same letter again goes on to the next row instead of looking for a doubled letter.
    const bool again = sameWord && m_typed == search;
    if (!again) {
        m_typed = sameWord ? QString(m_typed + search) : search;
    }
    const bool isWhole = m_items.rowCount() > 0 && fetchAll({});
    m_typing.start(QApplication::keyboardInputInterval()); // reading is none of the user's time
    if (!isWhole) {
        return;
    }
    const int current = currentIndex().row();
    const int next = m_typed.size() > 1 ? qMax(0, current) : current + 1;
    if (const int row = findTyped(next); row >= 0) {
        selectKey(m_items.keyAt(row));
    }
}

void ListView::mousePressEvent(QMouseEvent* event) {
    if (!indexAt(event->position().toPoint()).isValid()) {
        return; // beside the rows: what is selected stays so
    }
    QTreeView::mousePressEvent(event);
    Q_EMIT itemClick(selectedKey());
}

void ListView::mouseMoveEvent(QMouseEvent* event) {
    // Dragging over the rows does not select them one after the other.
    if (event->buttons() == Qt::NoButton) {
        QTreeView::mouseMoveEvent(event);
    }
}

void ListView::mouseReleaseEvent(QMouseEvent* event) {
    QTreeView::mouseReleaseEvent(event);
    if (event->button() == Qt::RightButton) {
        Q_EMIT rightClick(event->globalPosition().toPoint());
    }
}

void ListView::mouseDoubleClickEvent(QMouseEvent* event) {
    QTreeView::mouseDoubleClickEvent(event);
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && index.isValid()) {
        Q_EMIT itemDblClick(m_items.keyAt(index.row()));
    }
}

void ListView::contextMenuEvent(QContextMenuEvent* event) {
    // A mouse button raises it when it is released.
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const QPoint place = visualRect(currentIndex()).bottomLeft() + QPoint(8, 0);
        Q_EMIT rightClick(viewport()->mapToGlobal(place));
    }
    event->accept();
}

void ListView::keyPressEvent(QKeyEvent* event) {
    if (askedForMenu(*this, *event)) {
        return;
    }
    const QString before = selectedKey();
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && !before.isEmpty()) {
        Q_EMIT itemDblClick(before);
        return;
    }
    QTreeView::keyPressEvent(event);
    const QString after = selectedKey();
    if (!after.isEmpty() && after != before) {
        Q_EMIT itemClick(after);
    }
}

void ListView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        m_items.setBackground(palette().color(QPalette::Base));
    }
    QTreeView::changeEvent(event);
}

void ListView::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (m_items.rowCount() == 0 && !m_emptyText.isEmpty()) {
        QPainter painter(viewport());
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(viewport()->rect().adjusted(12, 4, -12, -4),
                         Qt::AlignCenter | Qt::TextWordWrap, m_emptyText);
    }
}

bool ListView::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip) {
        return QTreeView::viewportEvent(event);
    }
    // A text that its column cuts off is shown whole, and a mark is explained.
    const auto* const help = static_cast<QHelpEvent*>(event);
    const QModelIndex index = indexAt(help->pos());
    const bool isCut =
        index.isValid() && columnWidth(index.column()) < sizeHintForIndex(index).width();
    QStringList lines{isCut ? index.data().toString() : QString(),
                      index.data(Qt::ToolTipRole).toString()};
    lines.removeAll(QString());
    QToolTip::showText(help->globalPos(), plainToolTip(lines.join(u'\n')), viewport(),
                       visualRect(index));
    return true;
}

} // namespace yrw
