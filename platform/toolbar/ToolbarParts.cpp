#include "platform/toolbar/ToolbarParts.h"

#include "platform/component/AutomationError.h"

#include <algorithm>
#include <utility>

namespace yrw {

namespace {

QString withoutAccessKey(const QString& caption) {
    QString plain;
    for (qsizetype i = 0; i < caption.size(); ++i) {
        if (caption.at(i) == u'&') {
            ++i; // "&&" is one '&', "&x" is x
        }
        if (i < caption.size()) {
            plain.append(caption.at(i));
        }
    }
    return plain;
}

} // namespace

template <class Value>
void BandTool::change(Value& member, const Value& value, ToolChange kind) {
    if (member != value) {
        member = value;
        m_band.report(this, kind);
    }
}

QString BandTool::plainCaption() const {
    return withoutAccessKey(m_data.caption);
}

QString BandTool::shownToolTip() const {
    QString tip = m_data.toolTip.isEmpty() ? plainCaption() : m_data.toolTip;
    if (!m_data.shortcut.isEmpty()) {
        tip += u" (" + m_data.shortcut + u')';
    }
    return tip;
}

void BandTool::setKind(ToolKind kind) {
    change(m_data.kind, kind, ToolChange::Layout);
}

void BandTool::setCaption(const QString& caption) {
    change(m_data.caption, caption, ToolChange::Layout);
}

void BandTool::setStyle(ToolStyle style) {
    change(m_data.style, style, ToolChange::Layout);
}

void BandTool::setIconName(const QString& name) {
    change(m_data.iconName, name, ToolChange::Layout);
}

void BandTool::setToolTip(const QString& text) {
    change(m_data.toolTip, text, ToolChange::State);
}

void BandTool::setShortcutText(const QString& text) {
    change(m_data.shortcut, text, ToolChange::State);
}

void BandTool::setChecked(bool checked) {
    change(m_data.checked, checked, ToolChange::State);
}

bool BandTool::isEnabled() const {
    return m_data.enabled && m_band.isEnabled();
}

void BandTool::setEnabled(bool enabled) {
    change(m_data.enabled, enabled, ToolChange::State);
}

void BandTool::setVisible(bool visible) {
    change(m_data.visible, visible, ToolChange::Layout);
}

void BandTool::setBeginsGroup(bool begins) {
    change(m_data.beginsGroup, begins, ToolChange::Layout);
}

void BandTool::setText(const QString& text) {
    change(m_data.text, text, ToolChange::State);
}

void BandTool::setList(const QStringList& entries) {
    change(m_data.list, entries, ToolChange::State);
}

int BandTool::listIndex() const {
    return static_cast<int>(m_data.list.indexOf(m_data.text)) + 1;
}

void BandTool::setListIndex(int index) {
    setText(m_data.list.value(index - 1));
}

ToolBand::ToolBand(QString key, bool popup, Changed changed)
    : m_key(std::move(key)), m_popup(popup), m_changed(std::move(changed)) {}

ToolBand::~ToolBand() = default;

BandTool& ToolBand::add(ToolData data) {
    m_tools.push_back(std::make_unique<BandTool>(*this, std::move(data)));
    BandTool& tool = *m_tools.back();
    report(nullptr, ToolChange::Layout);
    return tool;
}

bool ToolBand::isShown() const {
    return !m_popup && m_visible &&
           std::any_of(m_tools.begin(), m_tools.end(),
                       [](const auto& tool) { return tool->isVisible(); });
}

void ToolBand::setCaption(const QString& caption) {
    m_caption = caption;
    report(nullptr, ToolChange::State);
}

void ToolBand::setEnabled(bool enabled) {
    if (m_enabled != enabled) {
        m_enabled = enabled;
        report(nullptr, ToolChange::State);
    }
}

void ToolBand::setVisible(bool visible) {
    if (m_visible != visible) {
        m_visible = visible;
        report(nullptr, ToolChange::Layout);
    }
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
