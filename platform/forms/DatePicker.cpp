#include "platform/forms/DatePicker.h"

#include <QCalendarWidget>
#include <QWheelEvent>

namespace yrw {

namespace {

QDateTime toMinutes(QDateTime time) {
    time.setTime(QTime(time.time().hour(), time.time().minute()));
    return time;
}

} // namespace

DatePicker::DatePicker(const QString& name, const QString& accessibleName, QWidget* parent)
    : QDateTimeEdit(parent) {
    setObjectName(name);
    setAccessibleName(accessibleName);
    setLocale(QLocale::c());
    setDisplayFormat(QStringLiteral("dd/MM/yyyy HH:mm"));
    setMinimumDateTime(QDateTime(QDate(1900, 1, 1), QTime(0, 0)));
    setCalendarPopup(true);
    calendarWidget()->setFirstDayOfWeek(QLocale::system().firstDayOfWeek());
    setFocusPolicy(Qt::StrongFocus);
}

QDateTime DatePicker::value() const {
    return toMinutes(dateTime());
}

void DatePicker::setValue(const QDateTime& value) {
    setDateTime(toMinutes(value));
}

void DatePicker::addMinutes(int minutes) {
    setDateTime(value().addSecs(qint64(minutes) * 60));
}

void DatePicker::wheelEvent(QWheelEvent* event) {
    if (hasFocus()) {
        QDateTimeEdit::wheelEvent(event);
    } else {
        event->ignore();
    }
}

} // namespace yrw
