#include "platform/forms/DatePicker.h"

#include "platform/clock/WallTime.h"

#include <QCalendarWidget>
#include <QMouseEvent>
#include <QWheelEvent>

namespace yrw {

namespace {

/// The hands at a whole minute, in a zone that leaves no time out.
QDateTime handsOf(const QDateTime& time) {
    return QDateTime(time.date(), QTime(time.time().hour(), time.time().minute()), Qt::UTC);
}

} // namespace

DatePicker::DatePicker(const QString& name, const QString& accessibleName, QWidget* parent)
    : QDateTimeEdit(parent) {
    setObjectName(name);
    setAccessibleName(accessibleName);
    setLocale(QLocale::c());
    setTimeSpec(Qt::UTC);
    setDisplayFormat(QStringLiteral("dd/MM/yyyy HH:mm"));
    setMinimumDateTime(QDateTime(QDate(1900, 1, 1), QTime(0, 0), Qt::UTC));
    setCalendarPopup(true);
    setFocusPolicy(Qt::StrongFocus);
}

QDateTime DatePicker::value() const {
    const QDateTime hands = handsOf(dateTime());
    if (m_stored.isValid() && hands == handsOf(m_stored)) {
        return m_stored;
    }
    return existingTime(hands.date(), hands.time());
}

void DatePicker::setValue(const QDateTime& value) {
    m_stored = {};
    setDateTime(handsOf(value));
}

void DatePicker::setStoredValue(const QDateTime& value) {
    m_stored = value;
    setDateTime(handsOf(value));
}

void DatePicker::addMinutes(int minutes) {
    setDateTime(handsOf(dateTime()).addSecs(qint64(minutes) * 60));
}

QString DatePicker::clockChange() const {
    const QDateTime hands = handsOf(dateTime());
    switch (wallTimeKind(hands.date(), hands.time())) {
    case WallTimeKind::Missing:
        return QStringLiteral("The clocks go forward and leave this time out: %1 counts instead.")
            .arg(value().toString(value().date() == hands.date()
                                      ? QStringLiteral("HH:mm")
                                      : QStringLiteral("dd/MM/yyyy HH:mm")));
    case WallTimeKind::Double:
        return QStringLiteral("The clocks go back and this time comes twice: the first counts.");
    case WallTimeKind::Ordinary:
        break;
    }
    return {};
}

void DatePicker::mousePressEvent(QMouseEvent* event) {
    if (!m_hasCalendar) { // making one takes longer than all the rest of the field
        m_hasCalendar = true;
        calendarWidget()->setFirstDayOfWeek(QLocale::system().firstDayOfWeek());
    }
    QDateTimeEdit::mousePressEvent(event);
}

void DatePicker::wheelEvent(QWheelEvent* event) {
    if (hasFocus()) {
        QDateTimeEdit::wheelEvent(event);
    } else {
        event->ignore();
    }
}

} // namespace yrw
