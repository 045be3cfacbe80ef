#pragma once

#include "platform/toolbar/BandArrangement.h"
#include "platform/toolbar/BandTool.h"

#include <functional>
#include <memory>
#include <vector>

namespace yrw {

/// A band of the toolbar control: its tools, without any control on the screen.
class ToolBand final : public IBand {
public:
    /// `changed` is called after each change; the tool is nothing for a change of the band.
    using Changed = std::function<void(const ToolBand&, const BandTool*, ToolChange)>;

    ToolBand(QString key, bool popup, Changed changed);
    ToolBand(const ToolBand&) = delete;
    ToolBand& operator=(const ToolBand&) = delete;
    ~ToolBand() override;

    [[nodiscard]] const std::vector<std::unique_ptr<BandTool>>& tools() const { return m_tools; }
    BandTool& add(ToolData data);
    /// True when the band is on the screen: it is visible, no menu, and has a visible tool.
    [[nodiscard]] bool isShown() const;
    [[nodiscard]] const BandDocking& docking() const noexcept { return m_docking; }
    void setDocking(const BandDocking& docking) { m_docking = docking; }
    /// Where the band lies before the user moves it.
    [[nodiscard]] const BandDocking& home() const noexcept { return m_home; }
    void setHome(const BandDocking& home) { m_home = m_docking = home; }
    /// Caption; the key when there is none.
    [[nodiscard]] QString shownCaption() const { return m_caption.isEmpty() ? m_key : m_caption; }

    [[nodiscard]] QString key() const override { return m_key; }
    [[nodiscard]] QString caption() const override { return m_caption; }
    void setCaption(const QString& text) override { change(m_caption, text, ToolChange::State); }
    [[nodiscard]] bool isPopup() const override { return m_popup; }
    [[nodiscard]] bool isEnabled() const override { return m_enabled; }
    void setEnabled(bool enabled) override;
    void setVisible(bool visible) override { change(m_visible, visible, ToolChange::Layout); }
    [[nodiscard]] int toolCount() const override { return static_cast<int>(m_tools.size()); }
    [[nodiscard]] ITool* toolAt(int index) const override;
    [[nodiscard]] ITool* findTool(const QString& key) const override;
    ITool& addTool(int id, const QString& key) override;
    void removeTool(const QString& key) override;

private:
    void report(const BandTool* tool, ToolChange kind) { m_changed(*this, tool, kind); }
    template <class Value>
    void change(Value& member, const Value& value, ToolChange kind) {
        if (member != value) {
            member = value;
            report(nullptr, kind);
        }
    }

    QString m_key;
    QString m_caption;
    bool m_popup;
    bool m_enabled = true;
    bool m_visible = true;
    BandDocking m_docking;
    BandDocking m_home;
    Changed m_changed;
    std::vector<std::unique_ptr<BandTool>> m_tools;
};

} // namespace yrw
