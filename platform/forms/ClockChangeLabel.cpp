#include "platform/forms/ClockChangeLabel.h"

#include "platform/forms/DatePicker.h"

namespace yrw {

ClockChangeLabel::ClockChangeLabel(DatePicker& picker, QWidget* parent)
    : QLabel(parent), m_picker(picker) {
    setObjectName(QStringLiteral("lblClockChange"));
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    connect(&picker, &QDateTimeEdit::dateTimeChanged, this, &ClockChangeLabel::followPicker);
    followPicker();
}

void ClockChangeLabel::followPicker() {
    const QString words = m_picker.clockChange();
    setText(words);
    setHidden(words.isEmpty());
    m_picker.setAccessibleDescription(words);
}

} // namespace yrw
