#include "platform/controls/ListView.h"

#include "platform/controls/ListModel.h"
#include "platform/controls/PlainToolTip.h"
#include "platform/forms/ContextMenuKey.h"
#include "platform/forms/Twips.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTimer>
#include <QToolTip>

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

class ListView::Private {
public:
    struct Sorting {
        int column = 0;
        Qt::SortOrder order = Qt::AscendingOrder;
        bool on = false;
    };

    explicit Private(ListView* owner) : list(owner), model(owner), typing(owner), fetching(owner) {
        typing.setSingleShot(true);
        QObject::connect(&fetching, &QTimer::timeout, owner, [this] { fetchInPassing(); });
    }

    void fetchInPassing() {
        const bool went = model.fetchSome(kRowsPerTurn);
        if (!went || model.missing() == 0) {
            fetching.stop();
        }
        if (!went) {
            Q_EMIT list->sourceFailed();
        }
    }
    /// Fetches what is missing; false when it was stopped or failed.
    bool fetchAll(const WorkStep& goesOn) {
        const int all = model.missing();
        while (model.missing() > 0) {
            const int done = 100 - int(qint64(100) * model.missing() / qMax(all, 1));
            if ((goesOn && !goesOn(done)) || !model.fetchSome(kRowsPerStep)) {
                return false;
            }
        }
        return true;
    }
    /// Sorts as it is wanted now; false when it was stopped.
    bool sortAll() {
        if (!sorting.on || model.columnCount() == 0) {
            return true;
        }
        const WorkStep goesOn = beginWork ? beginWork() : WorkStep();
        return fetchAll(goesOn) && model.sortRows(sorting.column, sorting.order, goesOn);
    }
    /// Goes over to another order; one that is stopped leaves everything as it was.
    void change(const Sorting& to) {
        const Sorting before = std::exchange(sorting, to);
        if (!sortAll()) {
            sorting = before;
        }
        showIndicator();
    }
    void showIndicator() const {
        list->header()->setSortIndicatorShown(sorting.on);
        if (sorting.on) {
            list->header()->setSortIndicator(sorting.column, sorting.order);
        }
    }
    [[nodiscard]] int findTyped(int from) const {
        const int rows = model.rowCount();
        QList<int> columns{sorting.column};
        for (int i = 0; i < model.columnCount(); ++i) {
            columns.append(i);
        }
        for (const int candidate : std::as_const(columns)) {
            for (int i = 0; i < rows; ++i) {
                const int row = (from + i) % rows;
                if (model.textAt(row, candidate).startsWith(typed, Qt::CaseInsensitive)) {
                    return row;
                }
            }
        }
        return -1;
    }

    ListView* list;
    ListModel model;
    QTimer typing; ///< runs while letters typed belong to one word
    QString typed;
    QString emptyText;
    QTimer fetching; ///< runs while rows are missing
    std::function<WorkStep()> beginWork;
    Sorting sorting;
};

ListView::ListView(QWidget* parent)
    : QTreeView(parent), m_private(std::make_unique<Private>(this)) {
    setModel(&m_private->model);
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
    m_private->model.setBackground(palette().color(QPalette::Base));
    connect(header(), &QHeaderView::sectionClicked, this, &ListView::columnClick);
}

ListView::~ListView() {
    setModel(nullptr);
}

void ListView::addColumn(const QString& header, const QString& key, int widthTwips) {
    m_private->model.addColumn(header, key);
    setColumnWidth(columns() - 1, twipsToPixels(widthTwips));
}

void ListView::removeColumn(const QString& key) {
    const int column = columnOf(key);
    if (column < 0) {
        return;
    }
    m_private->model.removeColumn(column);
    Private::Sorting sorting = m_private->sorting;
    if (sorting.column > column) {
        --m_private->sorting.column;
    } else if (sorting.column == column) {
        sorting.column = 0;
        m_private->change(sorting);
    }
    m_private->showIndicator();
}

int ListView::columnOf(const QString& key) const {
    return m_private->model.columnOf(key);
}

int ListView::columns() const {
    return m_private->model.columnCount();
}

void ListView::clearItems() {
    m_private->fetching.stop();
    m_private->model.clear();
}

void ListView::addItems(const QList<ListItem>& items) {
    m_private->model.append(items);
    sortAdded();
}

void ListView::addKeys(const QStringList& keys) {
    m_private->model.appendKeys(keys);
    sortAdded();
    if (m_private->model.missing() > 0) {
        m_private->fetching.start(0);
    }
}

/// Sorts after rows were added; when that is stopped they stay as they came.
void ListView::sortAdded() {
    m_private->sorting.on = m_private->sortAll() && m_private->sorting.on;
    m_private->showIndicator();
}

void ListView::setSource(ListSource source) {
    m_private->model.setSource(std::move(source));
}

int ListView::missingItems() const {
    return m_private->model.missing();
}

void ListView::removeMissing() {
    m_private->model.removeMissing();
}

void ListView::setWorkWatch(std::function<WorkStep()> begin) {
    m_private->beginWork = std::move(begin);
}

int ListView::addItem(const ListItem& item) {
    if (isSorted()) {
        return m_private->model.insertSorted(item, sortKey(), sortOrder());
    }
    m_private->model.append({item});
    return itemCount() - 1;
}

void ListView::removeItem(const QString& key) {
    m_private->model.remove(key);
}

void ListView::showOnly(const std::function<bool(QStringView)>& keeps) {
    m_private->model.showOnly(keeps);
}

void ListView::showAll() {
    m_private->model.showAll();
}

void ListView::forEachKey(const std::function<void(QStringView)>& call) const {
    m_private->model.forEachKey(call);
}

int ListView::allItems() const {
    return m_private->model.allRows();
}

int ListView::itemCount() const {
    return m_private->model.rowCount();
}

int ListView::rowOf(const QString& key) const {
    return m_private->model.rowOf(key);
}

QString ListView::keyAt(int row) const {
    return row >= 0 && row < itemCount() ? m_private->model.keyAt(row) : QString();
}

QString ListView::text(const QString& key, int column) const {
    const int row = rowOf(key);
    return row < 0 ? QString() : m_private->model.textAt(row, column).toString();
}

void ListView::setItemText(const QString& key, int column, const QString& text) {
    if (const int row = rowOf(key); row >= 0 && column >= 0 && column < columns()) {
        m_private->model.setText(row, column, text);
    }
}

void ListView::setItemStyle(const QString& key, bool bold, const std::optional<QColor>& foreColour,
                            bool marked) {
    if (const int row = rowOf(key); row >= 0) {
        m_private->model.setStyle(row, bold, foreColour, marked);
    }
}

void ListView::setMark(int column, const QIcon& icon, const QString& words) {
    m_private->model.setMark({column, icon, words});
}

bool ListView::isBold(const QString& key) const {
    const int row = rowOf(key);
    return row >= 0 && m_private->model.isBold(row);
}

std::optional<QColor> ListView::foreColour(const QString& key) const {
    const int row = rowOf(key);
    return row < 0 ? std::nullopt : m_private->model.foreColour(row);
}

QString ListView::selectedKey() const {
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? QString() : keyAt(rows.first().row());
}

void ListView::selectKey(const QString& key) {
    const int row = rowOf(key);
    if (row < 0) {
        selectionModel()->clear();
        return;
    }
    const QModelIndex index = m_private->model.index(row, 0);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                 QItemSelectionModel::Rows);
    scrollTo(index);
}

int ListView::sortKey() const {
    return m_private->sorting.column;
}

void ListView::setSortKey(int column) {
    Private::Sorting sorting = m_private->sorting;
    if (column >= 0 && column < columns() && column != sorting.column) {
        sorting.column = column;
        m_private->change(sorting);
    }
}

Qt::SortOrder ListView::sortOrder() const {
    return m_private->sorting.order;
}

void ListView::setSortOrder(Qt::SortOrder order) {
    Private::Sorting sorting = m_private->sorting;
    if (order != sorting.order) {
        sorting.order = order;
        m_private->change(sorting);
    }
}

bool ListView::isSorted() const {
    return m_private->sorting.on;
}

void ListView::setSorted(bool sorted) {
    Private::Sorting sorting = m_private->sorting;
    if (sorted != sorting.on) {
        sorting.on = sorted;
        m_private->change(sorting);
    }
}

void ListView::sortBy(int column, Qt::SortOrder order) {
    m_private->change({column, order, true});
}

void ListView::setEmptyText(const QString& text) {
    m_private->emptyText = text;
    viewport()->update();
}

void ListView::keyboardSearch(const QString& search) {
    const bool sameWord = m_private->typing.isActive();
    m_private->typing.start(QApplication::keyboardInputInterval());
    // The same letter again goes on to the next row instead of looking for a doubled letter.
    const bool again = sameWord && m_private->typed == search;
    if (!again) {
        m_private->typed = sameWord ? QString(m_private->typed + search) : search;
    }
    if (itemCount() == 0 || !m_private->fetchAll({})) {
        return;
    }
    const int current = currentIndex().row();
    const int next = m_private->typed.size() > 1 ? qMax(0, current) : current + 1;
    if (const int row = m_private->findTyped(next); row >= 0) {
        selectKey(keyAt(row));
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
        Q_EMIT itemDblClick(keyAt(index.row()));
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
        m_private->model.setBackground(palette().color(QPalette::Base));
    }
    QTreeView::changeEvent(event);
}

void ListView::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (itemCount() == 0 && !m_private->emptyText.isEmpty()) {
        QPainter painter(viewport());
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(viewport()->rect().adjusted(12, 4, -12, -4),
                         Qt::AlignCenter | Qt::TextWordWrap, m_private->emptyText);
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
