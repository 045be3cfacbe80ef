#include "platform/toolbar/ComboAccessible.h"

#include "platform/toolbar/ToolControls.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>

#include <mutex>

namespace yrw {

namespace {

class ComboItem final : public QAccessibleWidget {
public:
    explicit ComboItem(ToolCombo& combo)
        : QAccessibleWidget(&combo, QAccessible::ComboBox), m_combo(combo) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? m_combo.shownText() : QAccessibleWidget::text(kind);
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.expandable = true;
        state.hasPopup = true;
        state.expanded = m_combo.view()->isVisible();
        state.collapsed = !state.expanded;
        return state;
    }
    [[nodiscard]] QStringList actionNames() const override {
        return QStringList{showMenuAction()} + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& action) override {
        if (action == showMenuAction()) {
            m_combo.view()->isVisible() ? m_combo.hidePopup() : m_combo.showPopup();
        } else {
            QAccessibleWidget::doAction(action);
        }
    }

private:
    ToolCombo& m_combo;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* const combo = qobject_cast<ToolCombo*>(object);
    return combo == nullptr ? nullptr : new ComboItem(*combo);
}

} // namespace

void installComboAccessibility() {
    static std::once_flag once;
    std::call_once(once, [] { QAccessible::installFactory(makeInterface); });
}

} // namespace yrw
