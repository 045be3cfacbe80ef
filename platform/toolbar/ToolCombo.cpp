#include "platform/toolbar/ToolCombo.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QPointer>
#include <QSignalBlocker>

#include <mutex>

namespace yrw {

namespace {

/// What screen readers get of a combo tool's field.
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

ToolCombo::ToolCombo(BandEvents& events, ToolBand& band, QString toolKey, QWidget* parent)
    : QComboBox(parent), m_events(events), m_band(band), m_toolKey(std::move(toolKey)) {
    static std::once_flag once;
    std::call_once(once, [] { QAccessible::installFactory(makeInterface); });
    setFocusPolicy(Qt::StrongFocus);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    colourPlaceholder();
}

void ToolCombo::colourPlaceholder() {
    // A text outside the list is as good as one of it, and looks the same.
    const QColor text = palette().color(QPalette::ButtonText);
    if (palette().color(QPalette::PlaceholderText) != text) {
        QPalette own;
        own.setColor(QPalette::PlaceholderText, text);
        setPalette(own);
    }
}

void ToolCombo::changeEvent(QEvent* event) {
    QComboBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        colourPlaceholder();
    }
}

void ToolCombo::show(const QStringList& entries, const QString& text) {
    const QSignalBlocker blocker(this);
    QStringList shown;
    for (int i = 0; i < count(); ++i) {
        shown.append(itemText(i));
    }
    if (shown != entries) {
        clear();
        addItems(entries);
    }
    setPlaceholderText(text);
    setCurrentIndex(static_cast<int>(entries.indexOf(text)));
}

void ToolCombo::showPopup() {
    const QPointer<ToolCombo> self(this);
    m_events.comboDropped(m_band, m_toolKey);
    if (!self.isNull()) {
        m_source = Source::List;
        QComboBox::showPopup();
    }
}

void ToolCombo::keyPressEvent(QKeyEvent* event) {
    m_source = Source::Field;
    if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
        m_events.focusMoved(*this, event->key() == Qt::Key_Left ? -1 : 1);
        return;
    }
    QComboBox::keyPressEvent(event);
}

void ToolCombo::wheelEvent(QWheelEvent* event) {
    if (hasFocus()) {
        m_source = Source::Field;
        QComboBox::wheelEvent(event);
    } else {
        event->ignore();
    }
}

} // namespace yrw
