#pragma once

#include <QLabel>

namespace yrw {

class DatePicker;

/// One line below a date picker that appears when the clocks are changed over the time picked, and
/// says what becomes of it. Screen readers have the same words as the picker's description.
/// Lifetime: no longer than the picker. Thread: the user-interface thread.
class ClockChangeLabel final : public QLabel {
    Q_OBJECT

public:
    explicit ClockChangeLabel(DatePicker& picker, QWidget* parent = nullptr);

private:
    void followPicker();

    DatePicker& m_picker;
};

} // namespace yrw
