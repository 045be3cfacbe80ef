#pragma once

#include "platform/toolbar/BandBar.h"

namespace yrw {

/// The button of a tool. It never toggles by itself.
class ToolButton final : public QToolButton {
    Q_OBJECT

public:
    ToolButton(BandEvents& events, QWidget* parent);
    void show(const BandTool& tool);

protected:
    void nextCheckState() override {}
    void keyPressEvent(QKeyEvent* event) override;

private:
    BandEvents& m_events;
};

/// The field of a combo tool.
class ToolCombo final : public QComboBox {
    Q_OBJECT

public:
    ToolCombo(BandEvents& events, ToolBand& band, QString toolKey, QWidget* parent);
    /// The width that was fixed, not the one that the entries would take.
    [[nodiscard]] QSize sizeHint() const override {
        return QComboBox::sizeHint().expandedTo(minimumSize()).boundedTo(maximumSize());
    }
    /// Shows the entries and a text, which need not be one of them.
    void show(const QStringList& entries, const QString& text);
    [[nodiscard]] QString shownText() const {
        return currentIndex() < 0 ? placeholderText() : currentText();
    }
    void showPopup() override;
    /// True while what is picked comes from the dropped list, and not from a key or the wheel over
    /// the closed field.
    [[nodiscard]] bool wasDropped() const noexcept { return m_dropped; }

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void colourPlaceholder();

    BandEvents& m_events;
    ToolBand& m_band;
    QString m_toolKey;
    bool m_dropped = false;
};

} // namespace yrw
