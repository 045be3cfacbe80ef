// Where the bands of a toolbar are: docked, floating, dragged, stored and reset.
#include "platform/toolbar/FloatingBand.h"
#include "platform/toolbar/ToolbarPrivate.h"

#include <QMenu>
#include <QPointer>

#include <algorithm>
#include <tuple>

namespace yrw {

QList<BandPlace> Toolbar::Private::places() const {
    QList<BandPlace> all;
    for (const auto& band : m_bands) {
        if (!band->isPopup()) {
            all.append({band->key(), band->docking()});
        }
    }
    return all;
}

QList<BandPlace> Toolbar::Private::homes() const {
    QList<BandPlace> all = places();
    for (BandPlace& place : all) {
        place.docking = find(place.key)->home();
    }
    return all;
}

void Toolbar::Private::numberBands() {
    QList<BandPlace> all = places();
    numberPlaces(all);
    for (const BandPlace& place : std::as_const(all)) {
        find(place.key)->setDocking(place.docking);
    }
}

QString Toolbar::Private::arrangement() const {
    const QString text = arrangementText(places());
    return text == arrangementText(homes()) ? QString() : text;
}

void Toolbar::Private::setArrangement(const QString& text) {
    const QList<BandPlace> stored = parseArrangement(text).value_or(QList<BandPlace>());
    for (const auto& band : m_bands) {
        BandDocking docking = band->home();
        docking.place += static_cast<int>(stored.size()); // behind those that are stored
        band->setDocking(docking);
    }
    for (const BandPlace& place : stored) {
        if (ToolBand* const band = find(place.key); band != nullptr && !band->isPopup()) {
            band->setDocking(place.docking);
        }
    }
    settle();
}

void Toolbar::Private::reset() {
    QStringList moved;
    const QList<BandPlace> before = places();
    setArrangement(QString());
    for (const BandPlace& place : before) {
        const BandDocking& now = find(place.key)->docking();
        if (std::tie(now.row, now.place, now.floating) !=
            std::tie(place.docking.row, place.docking.place, place.docking.floating)) {
            moved.append(place.key);
        }
    }
    const QPointer<Toolbar> alive(&m_toolbar);
    for (const QString& key : std::as_const(moved)) {
        ToolBand* const band = alive.isNull() ? nullptr : find(key);
        if (band != nullptr) {
            m_toolbar.BandMove.raise(*band);
        }
    }
}

void Toolbar::Private::settle() {
    numberBands();
    std::stable_sort(m_bars.begin(), m_bars.end(), [](const BandBar* a, const BandBar* b) {
        const BandDocking& left = a->band().docking();
        const BandDocking& right = b->band().docking();
        return std::tie(left.row, left.place) < std::tie(right.row, right.place);
    });
    for (BandBar* const bar : m_bars) {
        if (bar->band().docking().floating) {
            windowOf(*bar).setBar(*bar);
        } else if (bar->parentWidget() != &m_toolbar) {
            bar->setParent(&m_toolbar);
            bar->setFloating(false);
            bar->show();
        }
    }
    endFloats();
    arrange();
    setTabStop(nullptr);
    m_toolbar.updateGeometry();
    showFloats();
}

FloatingBand& Toolbar::Private::windowOf(BandBar& bar) {
    const auto found = std::find_if(m_floats.begin(), m_floats.end(), [&](FloatingBand* window) {
        return &window->band() == &bar.band();
    });
    if (found != m_floats.end()) {
        return **found;
    }
    m_floats.push_back(new FloatingBand(bar.band(), *this, &m_toolbar));
    return *m_floats.back();
}

void Toolbar::Private::endFloats() {
    std::erase_if(m_floats, [this](FloatingBand* window) {
        const BandBar* const bar = barOf(window->band());
        if (bar != nullptr && bar->parentWidget() == window) {
            return false;
        }
        window->end();
        return true;
    });
}

void Toolbar::Private::showFloats() {
    if (!m_toolbar.isVisible()) {
        m_drag.reset();
    }
    for (FloatingBand* const window : m_floats) {
        if (const auto& place = window->band().docking().floating; place && m_toolbar.isVisible()) {
            window->placeAt(*place);
            window->setShown(true);
        } else {
            window->setShown(false);
        }
    }
}

DropTarget Toolbar::Private::dockTarget(const BandBar& bar, const QPoint& place) const {
    const Rows shown = rows();
    const int height = rowHeight();
    const int index = std::clamp(place.y() / qMax(1, height), 0, static_cast<int>(shown.size()));
    DropTarget target;
    int x = 0;
    int y = index * height;
    for (const std::unique_ptr<ToolBand>& band : m_bands) {
        target.docking.row = qMax(target.docking.row, band->docking().row + 1);
    }
    if (index < static_cast<int>(shown.size())) {
        const std::vector<BandBar*>& row = shown[size_t(index)];
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
        const std::vector<BandBar*>& row = shown[size_t(above)];
        y -= row.size() == 1 && row.front() == &bar ? height : 0;
    }
    target.outline =
        QRect(m_toolbar.mapToGlobal(QPoint(x, y)), QSize(bar.preferredWidth(), height));
    return target;
}

DropTarget Toolbar::Private::floatTarget(const BandBar& bar, const QPoint& topLeft) const {
    DropTarget target{bar.band().docking(), QRect(topLeft, FloatingBand::sizeFor(bar))};
    target.docking.floating = topLeft;
    return target;
}

void Toolbar::Private::dragStarted() {
    m_drag = std::make_unique<BandDrag>();
}

void Toolbar::Private::bandDragged(ToolBand& band, const QPoint& pointer, const QPoint& taken) {
    const BandBar* const bar = barOf(band);
    if (bar == nullptr || !m_drag) {
        return;
    }
    // A row's height around the toolbar still belongs to it: below it a new row begins.
    const int height = rowHeight();
    const QPoint place = m_toolbar.mapFromGlobal(pointer);
    const QRect zone = m_toolbar.rect().adjusted(-height, -height, height, height);
    m_drag->moveTo(zone.contains(place) ? dockTarget(*bar, place)
                                        : floatTarget(*bar, pointer - taken));
}

void Toolbar::Private::bandDropped(ToolBand& band) {
    const std::unique_ptr<BandDrag> drag = std::move(m_drag);
    if (drag && drag->target()) {
        moveBand(band, drag->target()->docking);
    }
}

void Toolbar::Private::bandClosed(ToolBand& band) {
    BandDocking docked = band.docking();
    docked.floating.reset();
    moveBand(band, docked);
}

void Toolbar::Private::moveBand(ToolBand& band, const BandDocking& to) {
    const QString before = arrangementText(places());
    const bool changesPlace =
        std::tie(to.row, to.place) != std::tie(band.docking().row, band.docking().place);
    for (const auto& other : m_bands) {
        BandDocking docking = other->docking();
        if (changesPlace && docking.row == to.row && docking.place >= to.place) {
            ++docking.place;
            other->setDocking(docking);
        }
    }
    band.setDocking(to);
    if (arrangementText(places()) == before) {
        numberBands();
        return;
    }
    settle();
    m_toolbar.BandMove.raise(band);
}

void Toolbar::Private::menuWanted(const QPoint& globalPosition) {
    const QPointer<Toolbar> alive(&m_toolbar);
    QMenu menu;
    menu.setObjectName(QStringLiteral("toolbarMenu"));
    menu.setAccessibleName(Toolbar::tr("Toolbars"));
    menu.setAccessibleDescription(Toolbar::tr("Puts the toolbars back to where they were"));
    const QAction* const reset = menu.addAction(Toolbar::tr("&Reset Toolbars"));
    if (menu.exec(globalPosition) == reset && !alive.isNull()) {
        this->reset();
    }
}

} // namespace yrw
