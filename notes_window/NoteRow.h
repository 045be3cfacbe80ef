#pragma once

#include "framework/IRecord.h"
#include "platform/controls/ListView.h"
#include "platform/dao/Recordset.h"

#include <QDateTime>

#include <array>
#include <optional>

namespace yrw {

/// What the notes list needs of one note.
struct NoteRow {
    qint64 id = 0;
    QDateTime date;
    QString subject;
    bool active = true;
    bool popup = false;
    bool hasReminders = false;
    QString userCode;
};

/// Reads such rows through columns looked up once. Lifetime: the recordset outlives it.
class NoteRowReader {
public:
    explicit NoteRowReader(const dao::Recordset& rows);
    /// Of the current row.
    [[nodiscard]] qint64 id() const;
    [[nodiscard]] NoteRow read() const;

private:
    const dao::Recordset& m_rows;
    std::array<int, 7> m_columns{};
};

[[nodiscard]] NoteRow noteRowOf(IRecord& note);

/// A row of the list: the user's name where the list shows it, and the styles that tell done notes
/// from active ones where it shows all. The style of notes with reminders goes before those.
[[nodiscard]] ListItem listItemOf(const NoteRow& row, const std::optional<QString>& userName,
                                  bool amongAll);
/// The row of a note that somebody deleted before it was read.
[[nodiscard]] ListItem goneItem(const QString& key);

} // namespace yrw
