#pragma once

#include "platform/toolbar/BandEvents.h"

#include <QComboBox>

#include <utility>

namespace yrw {

/// The field of a combo tool. Screen readers get the tool's name beside the text shown, which the
/// toolkit gives as the name.
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
    /// Where what is picked comes from: a key or the wheel over the closed field, the dropped list,
    /// or a list that has closed already.
    enum class Source { Field, List, ClosedList };
    /// The source of what has just been picked. A list gives one entry: while an assistive program
    /// listens, the key that picked it reaches the list once more.
    [[nodiscard]] Source takeSource() noexcept {
        return std::exchange(m_source, m_source == Source::Field ? m_source : Source::ClosedList);
    }

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void colourPlaceholder();

    BandEvents& m_events;
    ToolBand& m_band;
    QString m_toolKey;
    Source m_source = Source::Field;
};

} // namespace yrw
