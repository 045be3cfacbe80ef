#pragma once

#include <QDateTime>
#include <QString>

namespace yrw {

/// Dates as the notes window writes them, the same in every locale.
/// "dd/mm/yyyy HH:mm"; empty for an invalid date.
[[nodiscard]] QString noteDateText(const QDateTime& date);
/// "dd/mm/yyyy".
[[nodiscard]] QString noteDayText(const QDateTime& date);
/// "HH:mm".
[[nodiscard]] QString noteTimeText(const QDateTime& date);
/// "[dd/mm/yy HH:mm NAME] - ", the head of what a user adds to a note.
[[nodiscard]] QString noteStampText(const QDateTime& date, const QString& userName);

/// Key of a note's list item: "xn" and the note's id.
[[nodiscard]] QString noteItemKey(qint64 noteID);
/// The note's id of a list item's key; 0 for none.
[[nodiscard]] qint64 noteIdOf(QStringView itemKey);

} // namespace yrw
