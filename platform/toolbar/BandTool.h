#pragma once

#include "platform/toolbar/api/IToolbar.h"

#include <functional>
#include <utility>

namespace yrw {

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
    /// Called after each change.
    using Changed = std::function<void(const BandTool&, ToolChange)>;

    BandTool(ToolData data, Changed changed)
        : m_data(std::move(data)), m_changed(std::move(changed)) {}

    [[nodiscard]] const ToolData& data() const noexcept { return m_data; }
    /// Caption without the access key's mark.
    [[nodiscard]] QString plainCaption() const;
    /// Tool-tip as shown: its own text, else the caption, and the shortcut.
    [[nodiscard]] QString shownToolTip() const;
    /// While its band is disabled the tool is, too. Not reported.
    void setBandEnabled(bool enabled) noexcept { m_bandEnabled = enabled; }

    [[nodiscard]] int id() const override { return m_data.id; }
    [[nodiscard]] QString key() const override { return m_data.key; }
    [[nodiscard]] ToolKind kind() const override { return m_data.kind; }
    void setKind(ToolKind kind) override { change(m_data.kind, kind, ToolChange::Layout); }
    [[nodiscard]] QString caption() const override { return m_data.caption; }
    void setCaption(const QString& text) override {
        change(m_data.caption, text, ToolChange::Layout);
    }
    void setStyle(ToolStyle style) override { change(m_data.style, style, ToolChange::Layout); }
    void setIconName(const QString& name) override {
        change(m_data.iconName, name, ToolChange::Layout);
    }
    void setToolTip(const QString& text) override {
        change(m_data.toolTip, text, ToolChange::State);
    }
    void setShortcutText(const QString& text) override {
        change(m_data.shortcut, text, ToolChange::State);
    }
    [[nodiscard]] bool isChecked() const override { return m_data.checked; }
    void setChecked(bool checked) override { change(m_data.checked, checked, ToolChange::State); }
    [[nodiscard]] bool isEnabled() const override { return m_data.enabled && m_bandEnabled; }
    void setEnabled(bool enabled) override { change(m_data.enabled, enabled, ToolChange::State); }
    [[nodiscard]] bool isVisible() const override { return m_data.visible; }
    void setVisible(bool visible) override { change(m_data.visible, visible, ToolChange::Layout); }
    [[nodiscard]] bool beginsGroup() const override { return m_data.beginsGroup; }
    void setBeginsGroup(bool begins) override {
        change(m_data.beginsGroup, begins, ToolChange::Layout);
    }
    [[nodiscard]] QString text() const override { return m_data.text; }
    void setText(const QString& text) override { change(m_data.text, text, ToolChange::State); }
    [[nodiscard]] QStringList list() const override { return m_data.list; }
    void setList(const QStringList& list) override { change(m_data.list, list, ToolChange::State); }
    [[nodiscard]] int listIndex() const override {
        return static_cast<int>(m_data.list.indexOf(m_data.text)) + 1;
    }
    void setListIndex(int index) override { setText(m_data.list.value(index - 1)); }

private:
    template <class Value>
    void change(Value& member, const Value& value, ToolChange kind) {
        if (member != value) {
            member = value;
            m_changed(*this, kind);
        }
    }

    ToolData m_data;
    Changed m_changed;
    bool m_bandEnabled = true;
};

} // namespace yrw
