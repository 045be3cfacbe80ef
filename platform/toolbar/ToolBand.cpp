#include "platform/toolbar/ToolBand.h"

#include "platform/component/AutomationError.h"

#include <algorithm>
#include <utility>

namespace yrw {

ToolBand::ToolBand(QString key, bool popup, Changed changed)
    : m_key(std::move(key)), m_popup(popup), m_changed(std::move(changed)) {}

ToolBand::~ToolBand() = default;

BandTool& ToolBand::add(ToolData data) {
    const auto changed = [this](const BandTool& tool, ToolChange kind) { report(&tool, kind); };
    BandTool& tool = *m_tools.emplace_back(std::make_unique<BandTool>(std::move(data), changed));
    tool.setBandEnabled(m_enabled);
    report(nullptr, ToolChange::Layout);
    return tool;
}

bool ToolBand::isShown() const {
    return !m_popup && m_visible &&
           std::any_of(m_tools.begin(), m_tools.end(),
                       [](const auto& tool) { return tool->isVisible(); });
}

void ToolBand::setEnabled(bool enabled) {
    for (const auto& tool : m_tools) {
        tool->setBandEnabled(enabled);
    }
    change(m_enabled, enabled, ToolChange::State);
}

ITool* ToolBand::toolAt(int index) const {
    return index >= 0 && index < toolCount() ? m_tools[size_t(index)].get() : nullptr;
}

ITool* ToolBand::findTool(const QString& key) const {
    const auto found = std::find_if(m_tools.begin(), m_tools.end(), [&key](const auto& tool) {
        return tool->key().compare(key, Qt::CaseInsensitive) == 0;
    });
    return found == m_tools.end() ? nullptr : found->get();
}

ITool& ToolBand::addTool(int id, const QString& key) {
    if (findTool(key) != nullptr) {
        throw AutomationError(
            kErrorInvalidOperation, QStringLiteral("YRW.Toolbar"),
            QStringLiteral("The band '%1' has a tool '%2' already.").arg(m_key, key));
    }
    ToolData data;
    data.id = id;
    data.key = key;
    return add(std::move(data));
}

void ToolBand::removeTool(const QString& key) {
    const auto removed = std::erase_if(m_tools, [&key](const auto& tool) {
        return tool->key().compare(key, Qt::CaseInsensitive) == 0;
    });
    if (removed > 0) {
        report(nullptr, ToolChange::Layout);
    }
}

} // namespace yrw
