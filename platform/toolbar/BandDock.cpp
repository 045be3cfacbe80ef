#include "platform/toolbar/BandDock.h"

#include "platform/toolbar/FloatingBand.h"

#include <QApplication>
#include <QCoreApplication>
#include <QMenu>
#include <QPointer>
#include <QToolButton>

#include <algorithm>
#include <tuple>
#include <utility>

namespace yrw {

BandDock::BandDock(QWidget& area, IToolbar& toolbar, BandList& bands)
    : m_area(area), m_toolbar(toolbar), m_bands(bands), m_return(area) {}

BandDock::~BandDock() = default;

void BandDock::sync(const ToolBand& band, const BandTool* tool) const {
    if (BandBar* const bar = barOf(band)) {
        bar->sync(tool);
    }
}

void BandDock::end() {
    drop();
    endFloats();
}

BandBar* BandDock::barOf(const ToolBand& band) const {
    for (BandBar* const bar : m_bars) {
        if (&bar->band() == &band) {
            return bar;
        }
    }
    return nullptr;
}

void BandDock::drop() {
    for (BandBar* const bar : m_bars) {
        // It may be one of its own controls that is acting right now. Without their names the old
        // controls are not mistaken for the new ones.
        for (QWidget* const control : bar->findChildren<QWidget*>()) {
            control->setObjectName(QString());
        }
        bar->hide();
        bar->deleteLater();
    }
    m_bars.clear();
    m_drag.reset();
}

void BandDock::rebuild() {
    const QWidget* const focused = QApplication::focusWidget();
    const bool inBar = focused != nullptr &&
                       std::any_of(m_bars.begin(), m_bars.end(),
                                   [&](const BandBar* bar) { return bar->isAncestorOf(focused); });
    const QString focusKey = inBar ? focused->objectName() : QString();
    drop();
    for (const auto& band : m_bands.all()) {
        if (band->isShown()) {
            m_bars.push_back(new BandBar(*band, *this, &m_area));
            m_bars.back()->show();
        }
    }
    settle();
    if (!focusKey.isEmpty()) {
        if (auto* const control = m_area.findChild<QWidget*>(focusKey)) {
            focus(*control, Qt::OtherFocusReason);
        }
    }
}

std::vector<BandDock::Row> BandDock::rows() const {
    std::vector<Row> all;
    int number = -1;
    for (BandBar* const bar : m_bars) {
        const BandDocking& docking = bar->band().docking();
        if (docking.floating) {
            continue;
        }
        if (all.empty() || docking.row != number) {
            all.emplace_back();
        }
        number = docking.row;
        all.back().push_back(bar);
    }
    return all;
}

int BandDock::rowHeight() const {
    int height = 0;
    for (const BandBar* const bar : m_bars) {
        height = qMax(height, bar->sizeHint().height());
    }
    return height;
}

int BandDock::height() const {
    return rowHeight() * static_cast<int>(rows().size());
}

int BandDock::preferredWidth() const {
    int widest = 0;
    for (const Row& row : rows()) {
        int width = 0;
        for (const BandBar* const bar : row) {
            width += bar->preferredWidth();
        }
        widest = qMax(widest, width);
    }
    return widest;
}

void BandDock::arrangeRow(const Row& row, int y, int height) const {
    int over = -m_area.width();
    std::vector<int> widths(row.size());
    for (size_t i = 0; i < row.size(); ++i) {
        widths[i] = row[i]->preferredWidth();
        over += widths[i];
    }
    // The last bands give way first.
    for (size_t i = row.size(); i-- > 0;) {
        const int less = std::clamp(over, 0, widths[i] - row[i]->leastWidth());
        over -= less;
        widths[i] -= less;
    }
    int x = 0;
    for (size_t i = 0; i < row.size(); ++i) {
        row[i]->setGeometry(x, y, widths[i], height);
        x += widths[i];
    }
}

void BandDock::arrange() {
    const int height = rowHeight();
    int y = 0;
    for (const Row& row : rows()) {
        arrangeRow(row, y, height);
        y += height;
    }
}

void BandDock::settle() {
    m_bands.number();
    std::stable_sort(m_bars.begin(), m_bars.end(), [](const BandBar* a, const BandBar* b) {
        const BandDocking& left = a->band().docking();
        const BandDocking& right = b->band().docking();
        return std::tie(left.row, left.place) < std::tie(right.row, right.place);
    });
    for (BandBar* const bar : m_bars) {
        if (bar->band().docking().floating) {
            windowOf(*bar).setBar(*bar);
        } else if (bar->parentWidget() != &m_area) {
            bar->setParent(&m_area);
            bar->setFloating(false);
            bar->show();
        }
    }
    endFloats();
    arrange();
    setTabStop(nullptr);
    m_area.updateGeometry();
    showFloats();
}

FloatingBand& BandDock::windowOf(BandBar& bar) {
    const auto found = std::find_if(m_floats.begin(), m_floats.end(), [&](FloatingBand* window) {
        return &window->band() == &bar.band();
    });
    if (found != m_floats.end()) {
        return **found;
    }
    m_floats.push_back(new FloatingBand(bar.band(), *this, &m_area));
    return *m_floats.back();
}

void BandDock::endFloats() {
    std::erase_if(m_floats, [this](FloatingBand* window) {
        const BandBar* const bar = barOf(window->band());
        if (bar != nullptr && bar->parentWidget() == window) {
            return false;
        }
        window->end();
        return true;
    });
}

void BandDock::showFloats() {
    if (!m_area.isVisible()) {
        m_drag.reset();
    }
    for (FloatingBand* const window : m_floats) {
        if (const auto& place = window->band().docking().floating; place && m_area.isVisible()) {
            window->placeAt(*place);
            window->setShown(true);
        } else {
            window->setShown(false);
        }
    }
}

DropTarget BandDock::dockTarget(const BandBar& bar, const QPoint& place) const {
    const std::vector<Row> shown = rows();
    const int height = rowHeight();
    const int index = std::clamp(place.y() / qMax(1, height), 0, static_cast<int>(shown.size()));
    DropTarget target;
    int x = 0;
    int y = index * height;
    for (const std::unique_ptr<ToolBand>& band : m_bands.all()) {
        target.docking.row = qMax(target.docking.row, band->docking().row + 1);
    }
    if (index < static_cast<int>(shown.size())) {
        const Row& row = shown[size_t(index)];
        target.docking.row = row.front()->band().docking().row;
        for (const BandBar* const other : row) {
            if (other == &bar) {
                continue;
            }
            if (place.x() < other->geometry().center().x()) {
                target.docking.place = other->band().docking().place;
                break;
            }
            target.docking.place = other->band().docking().place + 1;
            x += other->width();
        }
    }
    // A row that the band leaves empty goes.
    for (int above = 0; above < qMin(index, static_cast<int>(shown.size())); ++above) {
        const Row& row = shown[size_t(above)];
        y -= row.size() == 1 && row.front() == &bar ? height : 0;
    }
    target.outline = QRect(m_area.mapToGlobal(QPoint(x, y)), QSize(bar.preferredWidth(), height));
    return target;
}

void BandDock::dragStarted() {
    m_drag = std::make_unique<BandDrag>();
}

void BandDock::bandDragged(ToolBand& band, const QPoint& pointer, const QPoint& taken) {
    const BandBar* const bar = barOf(band);
    if (bar == nullptr || !m_drag) {
        return;
    }
    // A row's height around the toolbar still belongs to it: below it a new row begins.
    const int height = rowHeight();
    const QPoint place = m_area.mapFromGlobal(pointer);
    const QRect zone = m_area.rect().adjusted(-height, -height, height, height);
    if (zone.contains(place)) {
        m_drag->moveTo(dockTarget(*bar, place));
        return;
    }
    DropTarget target{band.docking(), QRect(pointer - taken, FloatingBand::sizeFor(*bar))};
    target.docking.floating = pointer - taken;
    m_drag->moveTo(target);
}

void BandDock::bandDropped(ToolBand& band) {
    const std::unique_ptr<BandDrag> drag = std::move(m_drag);
    if (drag && drag->target()) {
        moveBand(band, drag->target()->docking);
    }
}

void BandDock::bandClosed(ToolBand& band) {
    BandDocking docked = band.docking();
    docked.floating.reset();
    moveBand(band, docked);
}

void BandDock::moveBand(ToolBand& band, const BandDocking& to) {
    if (m_bands.move(band, to)) {
        settle();
        m_toolbar.BandMove.raise(band);
    }
}

void BandDock::reset() {
    const QStringList moved = m_bands.reset();
    settle();
    const QPointer<QWidget> alive(&m_area);
    for (const QString& key : moved) {
        ToolBand* const band = alive.isNull() ? nullptr : m_bands.find(key);
        if (band != nullptr) {
            m_toolbar.BandMove.raise(*band);
        }
    }
}

void BandDock::menuWanted(const QPoint& globalPosition) {
    const QPointer<QWidget> alive(&m_area);
    QMenu menu;
    menu.setObjectName(QStringLiteral("toolbarMenu"));
    menu.setAccessibleName(QCoreApplication::translate("Toolbar", "Toolbars"));
    menu.setAccessibleDescription(
        QCoreApplication::translate("Toolbar", "Puts the toolbars back to where they were"));
    const QAction* const reset =
        menu.addAction(QCoreApplication::translate("Toolbar", "&Reset Toolbars"));
    if (menu.exec(globalPosition) == reset && !alive.isNull()) {
        this->reset();
    }
}

QList<QWidget*> BandDock::focusable() const {
    QList<QWidget*> docked;
    QList<QWidget*> floating;
    for (const BandBar* const bar : m_bars) {
        (bar->band().docking().floating ? floating : docked).append(bar->focusable());
    }
    return docked + floating;
}

void BandDock::setTabStop(QWidget* control) {
    const QList<QWidget*> controls = focusable();
    QWidget* stop = m_area.isAncestorOf(control) ? control : nullptr;
    for (QWidget* const candidate : controls) {
        // A floating band is reached by the arrow keys, and by Tab from no control of the window.
        if (qobject_cast<QToolButton*>(candidate) == nullptr || !m_area.isAncestorOf(candidate)) {
            continue;
        }
        stop = stop == nullptr ? candidate : stop;
        candidate->setFocusPolicy(candidate == stop ? Qt::TabFocus : Qt::NoFocus);
    }
}

void BandDock::focusFirst() {
    const QList<QWidget*> controls = focusable();
    if (!controls.isEmpty()) {
        focus(*controls.first(), Qt::ShortcutFocusReason);
        m_return.called();
    }
}

bool BandDock::leave() {
    if (!m_return.wasCalled()) {
        return false;
    }
    m_return.giveBack();
    return true;
}

void BandDock::focus(QWidget& control, Qt::FocusReason reason) {
    if (auto* const window = qobject_cast<FloatingBand*>(control.window())) {
        window->takeKeyboard();
    } else if (!control.isActiveWindow()) {
        control.activateWindow();
    }
    control.setFocus(reason);
}

void BandDock::focusMoved(QWidget& from, int step) {
    const QList<QWidget*> controls = focusable();
    const auto count = static_cast<int>(controls.size());
    const auto here = static_cast<int>(controls.indexOf(&from));
    if (count == 0) {
        return;
    }
    const int next = step == -2 ? 0 : step == 2 ? count - 1 : (here + step + count) % count;
    setTabStop(controls.at(next));
    focus(*controls.at(next), Qt::TabFocusReason);
}

void BandDock::toolUsed(ToolBand& band, const QString& toolKey, int entry) {
    ITool* const tool = band.findTool(toolKey);
    if (tool == nullptr || !tool->isEnabled()) {
        return;
    }
    if (entry > 0) {
        tool->setListIndex(entry);
        m_toolbar.ComboSelChange.raise(*tool);
        return;
    }
    const QPointer<QWidget> alive(&m_area);
    const BandBar* const bar = barOf(band);
    const auto before =
        std::exchange(m_clickedPlace, bar != nullptr ? bar->placeBelow(toolKey) : std::nullopt);
    m_toolbar.Click.raise(*tool);
    if (!alive.isNull()) {
        m_clickedPlace = before;
    }
}

void BandDock::comboDropped(ToolBand& band, const QString& toolKey) {
    if (ITool* const tool = band.findTool(toolKey)) {
        m_toolbar.ComboDrop.raise(*tool);
    }
}

} // namespace yrw
