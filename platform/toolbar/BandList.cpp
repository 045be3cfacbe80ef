#include "platform/toolbar/BandList.h"

#include <algorithm>
#include <tuple>

namespace yrw {

ToolBand* BandList::find(const QString& key) const {
    for (const auto& band : m_bands) {
        if (band->key().compare(key, Qt::CaseInsensitive) == 0) {
            return band.get();
        }
    }
    return nullptr;
}

ITool* BandList::findTool(const std::function<bool(const ITool&)>& fits) const {
    for (const auto& band : m_bands) {
        for (const auto& tool : band->tools()) {
            if (fits(*tool)) {
                return tool.get();
            }
        }
    }
    return nullptr;
}

ToolBand& BandList::add(const QString& key, bool popup) {
    BandDocking below;
    for (const auto& band : m_bands) {
        const int last = qMax(band->docking().row, band->home().row);
        below.row = band->isPopup() ? below.row : qMax(below.row, last + 1);
    }
    m_bands.push_back(std::make_unique<ToolBand>(key, popup, m_changed));
    m_bands.back()->setHome(below);
    return *m_bands.back();
}

void BandList::remove(const ToolBand& band) {
    std::erase_if(m_bands, [&band](const auto& own) { return own.get() == &band; });
}

void BandList::load(const QList<BandLayout>& layout) {
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
}

QList<BandPlace> BandList::places() const {
    QList<BandPlace> all;
    for (const auto& band : m_bands) {
        if (!band->isPopup()) {
            all.append({band->key(), band->docking()});
        }
    }
    return all;
}

QList<BandPlace> BandList::homes() const {
    QList<BandPlace> all = places();
    for (BandPlace& place : all) {
        place.docking = find(place.key)->home();
    }
    return all;
}

void BandList::number() {
    QList<BandPlace> all = places();
    numberPlaces(all);
    for (const BandPlace& place : std::as_const(all)) {
        find(place.key)->setDocking(place.docking);
    }
}

QString BandList::arrangement() const {
    const QString text = arrangementText(places());
    return text == arrangementText(homes()) ? QString() : text;
}

void BandList::setArrangement(const QString& text) {
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
    number();
}

QStringList BandList::reset() {
    const QList<BandPlace> before = places();
    setArrangement(QString());
    QStringList moved;
    for (const BandPlace& place : before) {
        if (find(place.key)->docking() != place.docking) {
            moved.append(place.key);
        }
    }
    return moved;
}

bool BandList::move(ToolBand& band, const BandDocking& to) {
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
    number();
    return arrangementText(places()) != before;
}

} // namespace yrw
