#pragma once

#include <QDateTimeEdit>

namespace yrw {

/// A field for a date and a time to the minute, shown as "dd/MM/yyyy HH:mm" in every locale, with a
/// calendar behind its arrow.
///
/// Up and Down step the part under the cursor. The mouse wheel changes the value only while the
/// field has the focus. The earliest date is 1 January 1900.
///
/// The field shows what the hands of the clock will show, so a time that the clocks leave out can
/// be picked; `value` then gives the time that takes its place, and `clockChange` says so.
/// Thread: the user-interface thread.
class DatePicker final : public QDateTimeEdit {
    Q_OBJECT

public:
    /// `name` is the object name, `accessibleName` what screen readers say.
    explicit DatePicker(const QString& name, const QString& accessibleName,
                        QWidget* parent = nullptr);

    /// The value, cut to whole minutes unless it is the stored one; a time that the clocks leave
    /// out is moved on.
    [[nodiscard]] QDateTime value() const;
    /// Sets the value, cut to whole minutes.
    void setValue(const QDateTime& value);
    /// Sets the value; as long as the field shows that minute, `value` is this one to the second.
    void setStoredValue(const QDateTime& value);
    /// Moves the hands by minutes, negative for back; stays within the earliest date.
    void addMinutes(int minutes);
    /// One sentence when the clocks are changed over the time shown; empty for any other time.
    [[nodiscard]] QString clockChange() const;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    QDateTime m_stored; ///< what the field was set to, with its seconds; invalid for none
    bool m_hasCalendar = false;
};

} // namespace yrw
