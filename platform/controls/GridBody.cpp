#include "platform/controls/GridBody.h"

#include "platform/controls/PlainToolTip.h"
#include "platform/forms/Contrast.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>

namespace yrw {

namespace {

constexpr int kPadding = 4;
constexpr short kFrameBorder = 6;
constexpr int kMarkCorner = 8; ///< pixels that the corner of a marked row measures

bool alignsRight(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

/// Runs a handler of the host; a failing one leaves the row as it is, for painting must go on.
template <class Raise>
void raiseQuietly(Raise raise) {
    try {
        raise();
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch)
    }
}

} // namespace

GridSource::~GridSource() = default;

GridBody::GridBody(GridSource& source, int split, QHeaderView& header, QWidget* parent)
    : QWidget(parent), m_source(source), m_split(split), m_header(header) {
    setObjectName(QStringLiteral("gridBody(%1)").arg(split));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

QRect GridBody::rowRect(qint64 row) const {
    const qint64 offset = row - m_source.topRow();
    const int height = m_source.rowHeight();
    if (row < 0 || row >= m_source.shownRows() || offset < 0 || offset * height >= this->height()) {
        return {};
    }
    return {0, static_cast<int>(offset) * height, width(), height};
}

QRect GridBody::cellRect(qint64 row, int column) const {
    const QRect line = rowRect(row);
    if (line.isEmpty() || column < 0 || column >= m_header.count() ||
        m_header.isSectionHidden(column)) {
        return {};
    }
    const int x = m_header.sectionViewportPosition(column) + markWidth();
    const QRect cell(x, line.y(), m_header.sectionSize(column), line.height());
    return cell.intersected(QRect(markWidth(), 0, width() - markWidth(), height()));
}

qint64 GridBody::rowAt(int y) const {
    const qint64 row = m_source.topRow() + y / m_source.rowHeight();
    return y < 0 || row >= m_source.shownRows() ? -1 : row;
}

QColor GridBody::paintedColour(qint64 row) const {
    return rowRect(row).isEmpty() ? QColor() : m_painted.value(row);
}

int GridBody::fullRows() const {
    return qMax(1, height() / m_source.rowHeight());
}

int GridBody::rowsInView() const {
    const qint64 room = (height() + m_source.rowHeight() - 1) / m_source.rowHeight();
    return static_cast<int>(qMin(room, m_source.shownRows() - m_source.topRow()));
}

QString GridBody::cellText(int column) const {
    const int field = m_source.fieldOf(column);
    QVariant value;
    if (field >= 0) {
        raiseQuietly([&] { value = m_source.rows().value(field); });
    }
    const GridColumn& shown = m_source.gridColumns().at(column);
    return shown.header + u' ' + gridText(value, shown.decimals);
}

QString GridBody::rowText(qint64 row) const {
    if (row >= m_source.rows().count()) {
        return tr("New record");
    }
    QStringList cells;
    raiseQuietly([&] {
        m_source.rows().select(row);
        for (int column = 0; column < m_source.gridColumns().size(); ++column) {
            if (m_source.gridColumns().at(column).visible) {
                cells.append(cellText(column));
            }
        }
    });
    cells += rowRemark(row, false);
    return tr("Row %1: %2").arg(row + 1).arg(cells.join(QStringLiteral(", ")));
}

QStringList GridBody::rowRemark(qint64 row, bool withDetails) const {
    RowRemark remark(withDetails);
    raiseQuietly([&] {
        if (m_source.rows().select(row)) {
            m_source.grid().FetchRowRemark.raise(m_split, m_source.rows().bookmark(), remark);
        }
    });
    return remark.lines();
}

QString GridBody::cursorText(qint64 row) const {
    const int column = m_source.cursorColumn();
    QString text;
    if (isCursorRow(row) && column >= 0 && row < m_source.rows().count()) {
        raiseQuietly([&] {
            m_source.rows().select(row);
            text = cellText(column);
        });
    }
    return text;
}

void GridBody::announceCursor() {
    if (!QAccessible::isActive() || cursorRow() < 0) {
        return;
    }
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(static_cast<int>(cursorRow() - firstRow()));
    QAccessible::updateAccessibility(&event);
}

QColor GridBody::rowColour(qint64 row, bool readable) {
    m_finding = RowFinding();
    m_marked = false;
    if (fetchesRowStyle && readable) {
        RowStyle style;
        raiseQuietly([&] {
            m_source.grid().FetchRowStyle.raise(m_split, m_source.rows().bookmark(), style);
        });
        m_finding = style.finding;
        m_marked = style.hasBackColor();
        if (m_marked) {
            return colourOfBgr(style.backColor());
        }
    }
    const QColor base = palette().color(QPalette::Base);
    return row == m_source.cursorRow()
               ? blended(palette().color(QPalette::Active, QPalette::Highlight), base, 0.25)
               : base;
}

CellStyle GridBody::cellStyle(int column) {
    CellStyle style(m_finding);
    raiseQuietly([&] {
        m_source.grid().FetchCellStyle.raise(0, m_split, m_source.rows().bookmark(), column, style);
    });
    return style;
}

bool GridBody::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        showRemark(*static_cast<QHelpEvent*>(event));
        return true;
    }
    return QWidget::event(event);
}

void GridBody::showRemark(const QHelpEvent& event) {
    const qint64 row = rowAt(event.pos().y());
    const QStringList lines = row < 0 ? QStringList() : rowRemark(row, true);
    // No lines hide the tool-tip.
    QToolTip::showText(event.globalPos(), plainToolTip(lines.join(u'\n')), this, rowRect(row));
}

void GridBody::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QRect dirty = event->rect();
    const int rowHeight = m_source.rowHeight();
    const qint64 first = m_source.topRow() + dirty.top() / rowHeight;
    const qint64 last =
        qMin(m_source.shownRows() - 1, m_source.topRow() + dirty.bottom() / rowHeight);
    for (qint64 row = first; row <= last; ++row) {
        paintRow(painter, row, dirty);
    }
    // Its frame depends on the colours of the rows beside it.
    if (const qint64 cursor = m_source.cursorRow(); cursor >= first && cursor <= last) {
        paintCursor(painter, cursor);
    }
    const auto end = static_cast<int>(qMax<qint64>(last + 1, first) - m_source.topRow());
    painter.fillRect(QRect(0, end * rowHeight, width(), height() - end * rowHeight),
                     palette().color(QPalette::Base));
}

void GridBody::paintRow(QPainter& painter, qint64 row, const QRect& dirty) {
    bool readable = false;
    raiseQuietly([&] { readable = m_source.rows().select(row); });
    const QColor back = rowColour(row, readable);
    m_painted.insert(row, back);
    const QRect line = rowRect(row);
    painter.fillRect(line, back);
    paintCells(painter, row, readable, back, dirty);
    painter.setPen(blended(palette().color(QPalette::Text), palette().color(QPalette::Base), 0.18));
    painter.drawLine(line.bottomLeft(), line.bottomRight());
    paintMark(painter, row, back);
}

void GridBody::paintCells(QPainter& painter, qint64 row, bool readable, const QColor& back,
                          const QRect& dirty) {
    const QColor lines =
        blended(palette().color(QPalette::Text), palette().color(QPalette::Base), 0.18);
    const QColor text = textOn(back, palette().color(QPalette::Text));
    for (int column = 0; column < m_header.count(); ++column) {
        const QRect cell = cellRect(row, column);
        if (!cell.intersects(dirty)) {
            continue;
        }
        painter.setPen(text);
        paintCell(painter, cell, column, readable || m_source.rows().editRow() == row);
        painter.setPen(lines);
        painter.drawLine(cell.topRight(), cell.bottomRight());
        if (!fetchesCellStyle || !readable) {
            continue;
        }
        const CellStyle style = cellStyle(column);
        if (style.borderKind() == kFrameBorder && style.borderWidth() > 0) {
            painter.setPen(QPen(colourOfBgr(style.borderColor()), style.borderWidth(),
                                Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
            const int inset = 1 + style.borderWidth() / 2;
            painter.drawRect(cell.adjusted(inset, inset, -inset - 2, -inset - 2));
        }
    }
}

void GridBody::paintCell(QPainter& painter, const QRect& rect, int column, bool readable) {
    const int field = m_source.fieldOf(column);
    if (field < 0 || !readable) {
        return;
    }
    QVariant value = QStringLiteral("#Deleted");
    raiseQuietly([&] { value = m_source.rows().value(field); });
    const QRect inner = rect.adjusted(kPadding, 0, -kPadding - 1, -1);
    const int decimals = m_source.gridColumns().at(column).decimals;
    const QString text =
        painter.fontMetrics().elidedText(gridText(value, decimals), Qt::ElideRight, inner.width());
    painter.drawText(inner,
                     int(Qt::AlignVCenter | Qt::TextSingleLine) |
                         int(alignsRight(value) ? Qt::AlignRight : Qt::AlignLeft),
                     text);
}

void GridBody::paintMark(QPainter& painter, qint64 row, const QColor& back) const {
    if (markWidth() == 0) {
        return;
    }
    const QRect line = rowRect(row);
    const QRect mark(0, line.y(), markWidth(), line.height());
    painter.fillRect(mark, palette().color(QPalette::Button));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(mark.topRight(), mark.bottomRight());
    painter.drawLine(mark.bottomLeft(), mark.bottomRight());
    if (m_marked) {
        // The colour alone does not tell everybody that the row is marked.
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(visibleOn({palette().color(QPalette::Button)}, back));
        const QPoint corner(mark.right(), mark.top());
        painter.drawPolygon(
            QPolygon({corner, corner - QPoint(kMarkCorner, 0), corner + QPoint(0, kMarkCorner)}));
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setBrush(Qt::NoBrush);
    }
    QString sign;
    if (row == m_source.rows().editRow()) {
        sign = QStringLiteral("✎");
    } else if (row == m_source.cursorRow()) {
        sign = QStringLiteral("▸");
    } else if (row >= m_source.rows().count()) {
        sign = QStringLiteral("*");
    }
    painter.setPen(palette().color(QPalette::ButtonText));
    painter.drawText(mark, Qt::AlignCenter, sign);
}

/// Colours of the current row's frame: outside against the rows beside it, inside against its own.
/// One colour where one can be seen on all of them.
std::pair<QColor, QColor> GridBody::frameColours(qint64 row) const {
    const auto colourOf = [this](qint64 each) {
        const QColor painted = paintedColour(each);
        return painted.isValid() ? painted : palette().color(QPalette::Base);
    };
    const QColor wanted = palette().color(QPalette::Active, QPalette::Highlight);
    const QColor own = colourOf(row);
    const QList<QColor> beside{colourOf(row - 1), colourOf(row + 1)};
    const QList<QColor> all = beside + QList<QColor>{own};
    const QColor one = visibleOn(all, wanted);
    const bool suffices = std::all_of(all.begin(), all.end(), [&one](const QColor& each) {
        return contrast(one, each) >= kVisibleContrast;
    });
    return suffices ? std::pair(one, one)
                    : std::pair(visibleOn(beside, wanted), visibleOn({own}, wanted));
}

void GridBody::paintCursor(QPainter& painter, qint64 row) const {
    const auto [outer, inner] = frameColours(row);
    const QRect line = rowRect(row).adjusted(markWidth(), 0, 0, 0);
    painter.fillRect(QRect(line.topLeft(), QSize(line.width(), 2)), outer);
    painter.fillRect(QRect(line.left(), line.bottom() - 1, line.width(), 2), outer);
    if (outer != inner) {
        painter.fillRect(QRect(line.left(), line.top() + 2, line.width(), 1), inner);
        painter.fillRect(QRect(line.left(), line.bottom() - 2, line.width(), 1), inner);
    }
    const QRect cell = cellRect(row, m_source.cursorColumn());
    if (!cell.isEmpty()) {
        painter.setPen(QPen(inner, 2, m_source.hasKeyFocus() ? Qt::SolidLine : Qt::DotLine,
                            Qt::SquareCap, Qt::MiterJoin));
        const int inset = outer == inner ? 1 : 3; // within the frame's outer line
        painter.drawRect(cell.adjusted(1, inset, -2, -inset));
    }
}

void GridBody::mousePressEvent(QMouseEvent* event) {
    const QPoint place = event->position().toPoint();
    const qint64 row = rowAt(place.y());
    if (row >= 0) {
        const int column = m_header.logicalIndexAt(place.x() - markWidth());
        m_source.bodyPressed(m_split, row, place.x() < markWidth() ? -1 : column);
    }
}

void GridBody::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton) {
        m_source.menuWanted(event->globalPosition().toPoint());
    }
}

void GridBody::mouseDoubleClickEvent(QMouseEvent* event) {
    const qint64 row = rowAt(event->position().toPoint().y());
    if (event->button() == Qt::LeftButton && row >= 0) {
        m_source.bodyDoubleClicked(row);
    }
}

void GridBody::wheelEvent(QWheelEvent* event) {
    m_source.bodyWheel(event);
}

void GridBody::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_source.bodyResized();
}

void GridBody::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update(rowRect(m_source.cursorRow()));
}

void GridBody::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update(rowRect(m_source.cursorRow()));
}

bool GridBody::focusNextPrevChild(bool next) {
    return m_source.tabPressed(next) || QWidget::focusNextPrevChild(next);
}

} // namespace yrw
