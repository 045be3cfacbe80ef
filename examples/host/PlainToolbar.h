#pragma once

#include "platform/toolbar/api/IToolbar.h"

#include <QPushButton>

#include <map>
#include <memory>

namespace example {

/// A tool as a push button that shows its caption.
class PlainTool final : public yrw::ITool {
public:
    PlainTool(int id, QString key, QWidget* parent) : m_id(id), m_key(std::move(key)) {
        m_button = new QPushButton(parent);
        m_button->setObjectName(m_key);
    }
    ~PlainTool() override { delete m_button; }
    [[nodiscard]] QPushButton& button() const { return *m_button; }

    [[nodiscard]] int id() const override { return m_id; }
    [[nodiscard]] QString key() const override { return m_key; }
    [[nodiscard]] yrw::ToolKind kind() const override { return yrw::ToolKind::Button; }
    void setKind(yrw::ToolKind /*kind*/) override {}
    [[nodiscard]] QString caption() const override { return m_button->text(); }
    void setCaption(const QString& caption) override { m_button->setText(caption); }
    void setStyle(yrw::ToolStyle /*style*/) override {}
    void setIconName(const QString& /*name*/) override {}
    void setToolTip(const QString& text) override { m_button->setToolTip(text); }
    void setShortcutText(const QString& /*text*/) override {}
    [[nodiscard]] bool isChecked() const override { return m_button->isChecked(); }
    void setChecked(bool checked) override { m_button->setChecked(checked); }
    [[nodiscard]] bool isEnabled() const override { return m_button->isEnabled(); }
    void setEnabled(bool enabled) override { m_button->setEnabled(enabled); }
    [[nodiscard]] bool isVisible() const override { return !m_button->isHidden(); }
    void setVisible(bool visible) override { m_button->setVisible(visible); }
    [[nodiscard]] bool beginsGroup() const override { return false; }
    void setBeginsGroup(bool /*begins*/) override {}
    [[nodiscard]] QString text() const override { return {}; }
    void setText(const QString& /*text*/) override {}
    [[nodiscard]] QStringList list() const override { return {}; }
    void setList(const QStringList& /*entries*/) override {}
    [[nodiscard]] int listIndex() const override { return 0; }
    void setListIndex(int /*index*/) override {}

private:
    int m_id;
    QString m_key;
    QPushButton* m_button;
};

/// The one band of the toolbar.
class PlainBand final : public yrw::IBand {
public:
    PlainBand(QString key, QWidget* parent, std::function<void(yrw::ITool&)> clicked)
        : m_key(std::move(key)), m_parent(parent), m_clicked(std::move(clicked)) {}

    [[nodiscard]] QString key() const override { return m_key; }
    [[nodiscard]] QString caption() const override { return m_key; }
    void setCaption(const QString& /*caption*/) override {}
    [[nodiscard]] bool isPopup() const override { return false; }
    [[nodiscard]] bool isEnabled() const override { return true; }
    void setEnabled(bool /*enabled*/) override {}
    void setVisible(bool /*visible*/) override {}
    [[nodiscard]] int toolCount() const override { return int(m_tools.size()); }
    [[nodiscard]] yrw::ITool* toolAt(int index) const override {
        const bool isThere = index >= 0 && index < toolCount();
        return isThere ? std::next(m_tools.begin(), index)->second.get() : nullptr;
    }
    [[nodiscard]] yrw::ITool* findTool(const QString& key) const override {
        const auto found = m_tools.find(key);
        return found == m_tools.end() ? nullptr : found->second.get();
    }
    yrw::ITool& addTool(int id, const QString& key) override {
        auto& tool = m_tools[key];
        tool = std::make_unique<PlainTool>(id, key, m_parent);
        QObject::connect(&tool->button(), &QPushButton::clicked, m_parent,
                         [this, made = tool.get()] { m_clicked(*made); });
        return *tool;
    }
    void removeTool(const QString& key) override { m_tools.erase(key); }

private:
    QString m_key;
    QWidget* m_parent;
    std::function<void(yrw::ITool&)> m_clicked;
    std::map<QString, std::unique_ptr<PlainTool>> m_tools;
};

/// The least that a host may offer as a toolbar: one band of buttons.
class PlainToolbar final : public QWidget, public yrw::IToolbar {
public:
    using QWidget::QWidget;

    [[nodiscard]] QObject* asQObject() override { return this; }
    [[nodiscard]] int bandCount() const override { return m_band ? 1 : 0; }
    [[nodiscard]] yrw::IBand* bandAt(int index) const override {
        return index == 0 ? m_band.get() : nullptr;
    }
    [[nodiscard]] yrw::IBand* findBand(const QString& key) const override {
        return m_band && m_band->key() == key ? m_band.get() : nullptr;
    }
    yrw::IBand& addBand(const QString& key, bool /*popup*/) override {
        m_band = std::make_unique<PlainBand>(key, this, [this](auto& tool) { Click.raise(tool); });
        return *m_band;
    }
    void removeBand(const QString& /*key*/) override { m_band.reset(); }
    [[nodiscard]] yrw::ITool* findToolById(int /*id*/) const override { return nullptr; }
    [[nodiscard]] yrw::ITool* findTool(const QString& key) const override {
        return m_band ? m_band->findTool(key) : nullptr;
    }
    void recalcLayout() override { adjustSize(); }
    void refresh() override { update(); }
    void popup(const QString& /*bandKey*/) override {}
    void activate(const QString& /*toolKey*/) override {}

private:
    std::unique_ptr<PlainBand> m_band;
};

} // namespace example
