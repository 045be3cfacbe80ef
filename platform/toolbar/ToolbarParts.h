#pragma once

#include "platform/toolbar/BandArrangement.h"
#include "platform/toolbar/api/IToolbar.h"

#include <functional>
#include <memory>
#include <vector>

namespace yrw {

class ToolBand;

/// What changed in a tool or band, so that its controls follow.
enum class ToolChange {
    State,  ///< text, icon, checked, enabled: the controls stay
    Layout, ///< tools came, went, are shown or hidden: the controls are made anew
};

/// What a tool is made of; also what a layout file says about it.
struct ToolData {
    int id = 0;
    QString key;
    QString caption;
    ToolKind kind = ToolKind::Button;
    ToolStyle style = ToolStyle::IconAndCaption;
    QString iconName;
    QString toolTip;
    QString shortcut;
    bool checked = false;
    bool enabled = true;
    bool visible = true;
    bool beginsGroup = false;
    QStringList list;
    QString text;
    int widthTwips = 1800; ///< of a combo tool's field
};

/// A tool of the toolbar control.
class BandTool final : public ITool {
public:
    BandTool(ToolBand& band, ToolData data) : m_band(band), m_data(std::move(data)) {}

    [[nodiscard]] const ToolData& data() const noexcept { return m_data; }
    [[nodiscard]] ToolBand& band() const noexcept { return m_band; }
    /// Caption without the access key's mark.
    [[nodiscard]] QString plainCaption() const;
    /// Tool-tip as shown: its own text, else the caption, and the shortcut.
    [[nodiscard]] QString shownToolTip() const;

    [[nodiscard]] int id() const override { return m_data.id; }
    [[nodiscard]] QString key() const override { return m_data.key; }
    [[nodiscard]] ToolKind kind() const override { return m_data.kind; }
    void setKind(ToolKind kind) override;
    [[nodiscard]] QString caption() const override { return m_data.caption; }
    void setCaption(const QString& caption) override;
    void setStyle(ToolStyle style) override;
    void setIconName(const QString& name) override;
    void setToolTip(const QString& text) override;
    void setShortcutText(const QString& text) override;
    [[nodiscard]] bool isChecked() const override { return m_data.checked; }
    void setChecked(bool checked) override;
    /// False also while the band is disabled.
    [[nodiscard]] bool isEnabled() const override;
    void setEnabled(bool enabled) override;
    [[nodiscard]] bool isVisible() const override { return m_data.visible; }
    void setVisible(bool visible) override;
    [[nodiscard]] bool beginsGroup() const override { return m_data.beginsGroup; }
    void setBeginsGroup(bool begins) override;
    [[nodiscard]] QString text() const override { return m_data.text; }
    void setText(const QString& text) override;
    [[nodiscard]] QStringList list() const override { return m_data.list; }
    void setList(const QStringList& entries) override;
    [[nodiscard]] int listIndex() const override;
    void setListIndex(int index) override;

private:
    template <class Value>
    void change(Value& member, const Value& value, ToolChange kind);

    ToolBand& m_band;
    ToolData m_data;
};

/// A band of the toolbar control: its tools, without any control on the screen.
class ToolBand final : public IBand {
public:
    /// `changed` is called after each change; the tool is nothing for a change of the band.
    using Changed = std::function<void(ToolBand&, BandTool*, ToolChange)>;

    ToolBand(QString key, bool popup, Changed changed);
    ToolBand(const ToolBand&) = delete;
    ToolBand& operator=(const ToolBand&) = delete;
    ~ToolBand() override;

    [[nodiscard]] const std::vector<std::unique_ptr<BandTool>>& tools() const { return m_tools; }
    BandTool& add(ToolData data);
    void report(BandTool* tool, ToolChange kind) { m_changed(*this, tool, kind); }
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
    void setCaption(const QString& caption) override;
    [[nodiscard]] bool isPopup() const override { return m_popup; }
    [[nodiscard]] bool isEnabled() const override { return m_enabled; }
    void setEnabled(bool enabled) override;
    void setVisible(bool visible) override;
    [[nodiscard]] int toolCount() const override { return static_cast<int>(m_tools.size()); }
    [[nodiscard]] ITool* toolAt(int index) const override;
    [[nodiscard]] ITool* findTool(const QString& key) const override;
    ITool& addTool(int id, const QString& key) override;
    void removeTool(const QString& key) override;

private:
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
