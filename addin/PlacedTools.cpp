#include "addin/PlacedTools.h"

#include "addin/Tools.h"
#include "framework/ErrorGuards.h"

namespace yrw {

void PlacedTools::place() noexcept {
    ignoreErrors([this] {
        if (m_host.atbComponent) {
            m_bandKey = placeShowNotesTool(*m_host.atbComponent);
        }
    });
    ignoreErrors([this] {
        IBand* band = m_host.atbInterface ? m_host.atbInterface->findBand(kGridBandKey) : nullptr;
        if (ITool* tool = band != nullptr ? band->findTool(kNotesToolKey) : nullptr) {
            tool->setEnabled(true);
            m_inGridMenu = true;
        }
    });
}

void PlacedTools::placeIn(IBand& band) {
    if (band.key() == kGridBandKey) {
        placeGridNotesTool(band);
        m_inGridMenu = true;
    }
}

void PlacedTools::switchOff() {
    IBand* const band = m_host.atbComponent ? m_host.atbComponent->findBand(m_bandKey) : nullptr;
    if (ITool* const tool = band != nullptr ? band->findTool(kNotesToolKey) : nullptr) {
        tool->setEnabled(false);
    }
}

bool PlacedTools::isIn(const IToolbar* toolbar) const noexcept {
    return toolbar != nullptr && ((toolbar == m_host.atbComponent.get() && !m_bandKey.isEmpty()) ||
                                  (toolbar == m_host.atbInterface.get() && m_inGridMenu));
}

void PlacedTools::remove(const std::function<bool(const IToolbar*)>& isShared) noexcept {
    const auto removeFrom = [&](const GuardedPtr<IToolbar>& toolbar, const QString& bandKey,
                                bool isPlaced) {
        ignoreErrors([&] {
            if (toolbar && isPlaced && !isShared(toolbar.get())) {
                removeNotesTool(*toolbar, bandKey);
            }
        });
    };
    removeFrom(m_host.atbComponent, m_bandKey, !m_bandKey.isEmpty());
    removeFrom(m_host.atbInterface, kGridBandKey, m_inGridMenu);
    m_bandKey.clear();
    m_inGridMenu = false;
    for (const GuardedPtr<IToolbar>& toolbar : {m_host.atbComponent, m_host.atbInterface}) {
        ignoreErrors([&] {
            if (toolbar) {
                toolbar->recalcLayout();
                toolbar->refresh();
            }
        });
    }
}

} // namespace yrw
