#pragma once

#include "platform/dao/Types.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>

#include <functional>
#include <memory>
#include <vector>

namespace yrw {

/// A note with its reminders, as it is exported; names are those of the fields.
struct ExportedNote {
    dao::ValueList fields;
    std::vector<dao::ValueList> reminders;
    QString ownerTitle; ///< the record that the note belongs to, for a reader
};

/// Writes notes in one format, part by part.
class NoteWriter {
public:
    virtual ~NoteWriter();
    /// What stands before the first note.
    [[nodiscard]] virtual QByteArray begin() = 0;
    [[nodiscard]] virtual QByteArray note(const ExportedNote& note) = 0;
    /// What stands behind the last one.
    [[nodiscard]] virtual QByteArray end() = 0;
};

/// An array of objects; a note's reminders are an array in its field "Reminders".
[[nodiscard]] std::unique_ptr<NoteWriter> makeJsonWriter();
/// A heading of field names and a line per note, without the rich text. No text reads as a formula
/// in a spreadsheet; control characters are left out.
[[nodiscard]] std::unique_ptr<NoteWriter> makeCsvWriter();
/// One document with a page per record; notes come ordered by record.
[[nodiscard]] std::unique_ptr<NoteWriter> makeHtmlWriter();
/// An event per reminder; one that still waits has an alarm. `now` is the time of the export.
[[nodiscard]] std::unique_ptr<NoteWriter>
makeCalendarWriter(const QDateTime& now, const QHash<qint64, QString>& userNames);

} // namespace yrw
