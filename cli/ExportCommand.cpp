// export: all notes in a format for others.
#include "cli/CommandContext.h"
#include "cli/NoteWriters.h"
#include "cli/OutputFile.h"
#include "framework/ErrorGuards.h"
#include "store/NoteReading.h"

#include <algorithm>

namespace yrw {

namespace {

const QString kNoteID = QStringLiteral("NoteID");

using Sink = std::function<void(const QByteArray&)>;

dao::ValueList rowValues(const dao::Recordset& rows, const QStringList& without) {
    dao::ValueList values;
    for (int column = 0; column < rows.FieldCount(); ++column) {
        if (!without.contains(rows.FieldName(column))) {
            values.set(rows.FieldName(column), rows.value(column));
        }
    }
    return values;
}

/// Finds the reminders of one note after the other, without holding those of all.
class RemindersOfNotes {
public:
    explicit RemindersOfNotes(dao::Database& database)
        : m_rows(database.OpenRecordset(schema::kTblReminders, dao::RecordsetType::Table,
                                        dao::kReadOnlyOption)) {
        m_rows->setIndex(QStringLiteral("RemindersByNote"));
    }

    /// In the order in which they fall due.
    std::vector<dao::ValueList> of(qint64 noteID) {
        std::vector<dao::ValueList> reminders;
        m_rows->Seek(u"=", {QVariant(noteID)});
        if (m_rows->NoMatch()) {
            return reminders;
        }
        for (; !m_rows->AtEof() && m_rows->value(kNoteID).toLongLong() == noteID;
             m_rows->MoveNext()) {
            reminders.push_back(rowValues(*m_rows, {}));
        }
        std::stable_sort(reminders.begin(), reminders.end(),
                         [](const dao::ValueList& a, const dao::ValueList& b) {
                             return a.value(u"NextDate").toDateTime() <
                                    b.value(u"NextDate").toDateTime();
                         });
        return reminders;
    }

private:
    Ref<dao::Recordset> m_rows;
};

/// Names records for a reader; remembers the last one, for notes come ordered by record.
class OwnerTitles {
public:
    explicit OwnerTitles(CommandStore& store) : m_store(store) {}

    QString titleOf(const dao::ValueList& note) {
        const QString key = note.value(u"OwnerObjectKey").toString();
        const qint64 id = note.value(u"OwnerRecordID").toLongLong();
        if (m_title.isEmpty() || key != m_key || id != m_id) {
            m_key = key;
            m_id = id;
            m_title = key.isEmpty() ? QStringLiteral("System notes") : lookUp();
        }
        return m_title;
    }

private:
    [[nodiscard]] QString lookUp() const {
        QString title = QStringLiteral("%1 %2").arg(m_key).arg(m_id);
        // A record that is gone keeps its notes, under its key.
        ignoreErrors([&] {
            const Ref<IObjectDefinition> kind = m_store.hostApplication()->ObjectDefinition(m_key);
            if (kind) {
                title = QStringLiteral("%1 %2").arg(kind->UseName()).arg(m_id);
                const Ref<IRecord> record = kind->Collection()->Item(QVariant(m_id));
                title = QStringLiteral("%1 %2").arg(
                    kind->UseName(), record->ShortDisplayValue()->Value().toString());
            }
        });
        return title;
    }

    CommandStore& m_store;
    QString m_key;
    qint64 m_id = 0;
    QString m_title;
};

std::unique_ptr<NoteWriter> writerFor(const CommandContext& context, const QString& format) {
    if (format == u"csv") {
        return makeCsvWriter();
    }
    if (format == u"html") {
        return makeHtmlWriter();
    }
    if (format == u"ics") {
        QHash<qint64, QString> names;
        for (const UserName& user : context.store->users()) {
            names.insert(user.UserID, user.UseName);
        }
        return makeCalendarWriter(context.clock.now(), names);
    }
    return makeJsonWriter();
}

void writeNotes(const CommandContext& context, NoteWriter& writer, const Sink& write) {
    RemindersOfNotes reminders(*context.store->database());
    OwnerTitles titles(*context.store);
    ProgressLine progress = context.progress(QStringLiteral("notes exported"));
    write(writer.begin());
    NoteSelection all;
    all.order = NoteOrder::ByOwner;
    const Ref<dao::Recordset> notes = openNotes(context.store->dataHelper(), all);
    for (; !notes->AtEof(); notes->MoveNext()) {
        progress.step();
        ExportedNote note{rowValues(*notes, {kNoteID}), {}, {}};
        note.reminders = reminders.of(notes->value(kNoteID).toLongLong());
        note.ownerTitle = titles.titleOf(note.fields);
        write(writer.note(note));
    }
    write(writer.end());
}

} // namespace

ExitStatus exportNotes(const CommandContext& context) {
    const QString option = QStringLiteral("format");
    const QString format = context.line.word(
        option,
        {QStringLiteral("json"), QStringLiteral("csv"), QStringLiteral("html"),
         QStringLiteral("ics")},
        context.line.isSet(QStringLiteral("json")) ? QStringLiteral("json") : QString());
    const std::unique_ptr<NoteWriter> writer = writerFor(context, format);
    const QString path = context.line.value(QStringLiteral("output"));
    if (path.isEmpty() || path == u"-") {
        writeNotes(context, *writer, [&](const QByteArray& bytes) { context.print(bytes); });
        return kExitDone;
    }
    OutputFile file(path, context.store->databaseFiles());
    writeNotes(context, *writer, [&](const QByteArray& bytes) { file.write(bytes); });
    file.finish();
    return kExitDone;
}

} // namespace yrw
