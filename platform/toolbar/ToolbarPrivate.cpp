#include "platform/toolbar/ToolbarPrivate.h"

#include "platform/component/AutomationError.h"
#include "platform/toolbar/BandMenu.h"
#include "platform/toolbar/FloatingBand.h"

#include <QApplication>
#include <QPointer>

#include <algorithm>

namespace yrw {

Toolbar::Private::~Private() = default;

ToolBand* Toolbar::Private::find(const QString& key) const {
    for (const auto& band : m_bands) {
        if (band->key().compare(key, Qt::CaseInsensitive) == 0) {
            return band.get();
        }
    }
    return nullptr;
}

bool Toolbar::Private::contains(const ToolBand* band) const {
    return std::any_of(m_bands.begin(), m_bands.end(),
                       [band](const auto& own) { return own.get() == band; });
}

ToolBand& Toolbar::Private::add(const QString& key, bool popup) {
    BandDocking below;
    for (const auto& band : m_bands) {
        const int last = qMax(band->docking().row, band->home().row);
        below.row = band->isPopup() ? below.row : qMax(below.row, last + 1);
    }
    m_bands.push_back(std::make_unique<ToolBand>(
        key, popup, [this](ToolBand& band, BandTool* tool, ToolChange change) {
            changed(band, tool, change);
        }));
    m_bands.back()->setHome(below);
    return *m_bands.back();
}

void Toolbar::Private::remove(const QString& key) {
    ToolBand* const band = find(key);
    if (band == nullptr) {
        return;
    }
    drop();
    endFloats();
    std::erase_if(m_bands, [band](const auto& own) { return own.get() == band; });
    rebuild();
}

void Toolbar::Private::load(const QList<BandLayout>& layout) {
    m_loading = true;
    drop();
    endFloats();
    m_bands.clear();
    int place = 0;
    for (const BandLayout& read : layout) {
        ToolBand& band = add(read.key, read.popup);
        band.setCaption(read.caption);
        band.setHome({read.row, place++, std::nullopt});
        band.setVisible(read.visible);
        for (const ToolData& tool : read.tools) {
            band.add(tool);
        }
    }
    m_loading = false;
    rebuild();
}

void Toolbar::Private::popup(const QString& key, const QPoint& globalPosition) {
    const QPointer<Toolbar> alive(&m_toolbar);
    m_toolbar.BandOpen.raise(*find(key));
    // A handler may have taken the band, or the toolbar, away.
    const ToolBand* const band = alive.isNull() ? nullptr : find(key);
    if (band == nullptr) {
        return;
    }
    std::vector<BandTool*> tools;
    for (const auto& tool : band->tools()) {
        tools.push_back(tool.get());
    }
    QMenu menu;
    menu.setObjectName(band->key());
    menu.setAccessibleName(band->caption());
    menu.setAccessibleDescription(Toolbar::tr("Commands of the menu %1").arg(band->caption()));
    fillMenu(menu, tools);
    const MenuChoice choice = menu.isEmpty() ? MenuChoice() : execMenu(menu, globalPosition);
    ToolBand* const after = alive.isNull() ? nullptr : find(key);
    if (after == nullptr || choice.toolKey.isEmpty()) {
        return;
    }
    if (choice.entry > 0) {
        entryPicked(*after, choice.toolKey, choice.entry);
    } else {
        toolClicked(*after, choice.toolKey);
    }
}

void Toolbar::Private::changed(ToolBand& band, BandTool* tool, ToolChange change) {
    if (m_loading) {
        return;
    }
    if (change == ToolChange::Layout && !band.isPopup()) {
        rebuild();
    } else if (BandBar* const bar = barOf(band)) {
        bar->sync(tool);
    }
}

BandBar* Toolbar::Private::barOf(const ToolBand& band) const {
    for (BandBar* const bar : m_bars) {
        if (&bar->band() == &band) {
            return bar;
        }
    }
    return nullptr;
}

void Toolbar::Private::drop() {
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

void Toolbar::Private::rebuild() {
    const QWidget* const focused = QApplication::focusWidget();
    const bool inBar = focused != nullptr &&
                       std::any_of(m_bars.begin(), m_bars.end(),
                                   [&](const BandBar* bar) { return bar->isAncestorOf(focused); });
    const QString focusKey = inBar ? focused->objectName() : QString();
    drop();
    for (const auto& band : m_bands) {
        if (band->isShown()) {
            m_bars.push_back(new BandBar(*band, *this, &m_toolbar));
            m_bars.back()->show();
        }
    }
    settle();
    if (!focusKey.isEmpty()) {
        if (auto* const control = m_toolbar.findChild<QWidget*>(focusKey)) {
            focus(*control, Qt::OtherFocusReason);
        }
    }
}

Toolbar::Private::Rows Toolbar::Private::rows() const {
    Rows all;
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

int Toolbar::Private::rowHeight() const {
    int height = 0;
    for (const BandBar* const bar : m_bars) {
        height = qMax(height, bar->sizeHint().height());
    }
    return height;
}

int Toolbar::Private::height() const {
    return rowHeight() * static_cast<int>(rows().size());
}

int Toolbar::Private::preferredWidth() const {
    int widest = 0;
    for (const std::vector<BandBar*>& row : rows()) {
        int width = 0;
        for (const BandBar* const bar : row) {
            width += bar->preferredWidth();
        }
        widest = qMax(widest, width);
    }
    return widest;
}

void Toolbar::Private::arrangeRow(const std::vector<BandBar*>& row, int y, int height) const {
    int over = -m_toolbar.width();
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

void Toolbar::Private::arrange() {
    const int height = rowHeight();
    int y = 0;
    for (const std::vector<BandBar*>& row : rows()) {
        arrangeRow(row, y, height);
        y += height;
    }
}

QList<QWidget*> Toolbar::Private::focusable() const {
    QList<QWidget*> docked;
    QList<QWidget*> floating;
    for (const BandBar* const bar : m_bars) {
        (bar->band().docking().floating ? floating : docked).append(bar->focusable());
    }
    return docked + floating;
}

void Toolbar::Private::setTabStop(QWidget* control) {
    const QList<QWidget*> controls = focusable();
    QWidget* stop = m_toolbar.isAncestorOf(control) ? control : nullptr;
    for (QWidget* const candidate : controls) {
        // A floating band is reached by the arrow keys, and by Tab from no control of the window.
        if (qobject_cast<QToolButton*>(candidate) == nullptr ||
            !m_toolbar.isAncestorOf(candidate)) {
            continue;
        }
        stop = stop == nullptr ? candidate : stop;
        candidate->setFocusPolicy(candidate == stop ? Qt::TabFocus : Qt::NoFocus);
    }
}

void Toolbar::Private::focusFirst() {
    const QList<QWidget*> controls = focusable();
    if (!controls.isEmpty()) {
        focus(*controls.first(), Qt::ShortcutFocusReason);
        m_return->called();
    }
}

bool Toolbar::Private::leave() {
    if (!m_return->wasCalled()) {
        return false;
    }
    m_return->giveBack();
    return true;
}

void Toolbar::Private::focus(QWidget& control, Qt::FocusReason reason) {
    if (auto* const window = qobject_cast<FloatingBand*>(control.window())) {
        window->takeKeyboard();
    } else if (!control.isActiveWindow()) {
        control.activateWindow();
    }
    control.setFocus(reason);
}

void Toolbar::Private::focusMoved(QWidget& from, int step) {
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

void Toolbar::Private::toolClicked(ToolBand& band, const QString& toolKey) {
    ITool* const tool = band.findTool(toolKey);
    if (tool == nullptr || !tool->isEnabled()) {
        return;
    }
    const QPointer<Toolbar> alive(&m_toolbar);
    const BandBar* const bar = barOf(band);
    const auto before =
        std::exchange(m_clickedPlace, bar != nullptr ? bar->placeBelow(toolKey) : std::nullopt);
    m_toolbar.Click.raise(*tool);
    if (!alive.isNull()) {
        m_clickedPlace = before;
    }
}

void Toolbar::Private::entryPicked(ToolBand& band, const QString& toolKey, int entry) {
    ITool* const tool = band.findTool(toolKey);
    if (tool == nullptr || !tool->isEnabled()) {
        return;
    }
    tool->setListIndex(entry);
    m_toolbar.ComboSelChange.raise(*tool);
}

void Toolbar::Private::comboDropped(ToolBand& band, const QString& toolKey) {
    if (ITool* const tool = band.findTool(toolKey)) {
        m_toolbar.ComboDrop.raise(*tool);
    }
}

} // namespace yrw
