// list, show and reminders.
#include "cli/CommandContext.h"
#include "cli/Rows.h"
#include "cli/SafeText.h"
#include "platform/collation/TextOrder.h"
#include "platform/component/AutomationError.h"
#include "store/NoteReading.h"
#include "store/ReminderOperations.h"

namespace yrw {

namespace {

const QString kSubject = QStringLiteral("Subject");
const QString kPlainNote = QStringLiteral("PlainNote");
const QString kRTFNote = QStringLiteral("RTFNote");
const QString kRecordID = QStringLiteral("RecordID");
const QString kStatus = QStringLiteral("Status");
const QString kDate = QStringLiteral("Date");
const QString kJson = QStringLiteral("json");

void chooseOwner(const CommandContext& context, NoteSelection& notes) {
    const std::optional<OwnerArgument> owner = context.line.owner();
    notes.onNoRecord = context.line.isSet(QStringLiteral("system"));
    if (owner && notes.onNoRecord) {
        throw UsageError(QStringLiteral("--owner and --system exclude each other."));
    }
    if (owner) {
        notes.owner = OwnerKey{owner->objectKey, owner->recordID};
    }
}

NoteSelection selectionOf(const CommandContext& context) {
    const CommandLine& line = context.line;
    NoteSelection notes;
    chooseOwner(context, notes);
    if (line.isSet(QStringLiteral("mine"))) {
        context.store->requireUser();
        notes.authorID = context.store->dataHelper().CurrentUserID();
    }
    const QStringList words{QStringLiteral("active"), QStringLiteral("done"),
                            QStringLiteral("all")};
    const QString status = line.word(QStringLiteral("status"), words, words.last());
    if (status != words.last()) {
        notes.status = NoteStatus(words.indexOf(status) + 1);
    }
    if (const std::optional<WrittenDate> from = line.writtenDate(QStringLiteral("from"))) {
        notes.from = WallMoment{from->date, from->time};
    }
    if (const std::optional<WrittenDate> to = line.writtenDate(QStringLiteral("to"))) {
        notes.to = WallMoment{to->date, to->last};
    }
    return notes;
}

bool isFound(const dao::Recordset& note, const QString& text) {
    return note.value(kSubject).toString().contains(text, Qt::CaseInsensitive) ||
           note.value(kPlainNote).toString().contains(text, Qt::CaseInsensitive);
}

QString noteLine(const dao::Recordset& note) {
    return QStringLiteral("%1  %2  %3 %4 %5 %6\n")
        .arg(note.value(kRecordID).toString(), 6)
        .arg(shownDate(note.value(kDate)), -16)
        .arg(shownStatus(note.value(kStatus)), -6)
        .arg(shownOwner(note), -10)
        .arg(onOneLine(note.value(QStringLiteral("RecordUserCode")).toString()), -8)
        .arg(onOneLine(note.value(kSubject).toString()));
}

/// Prints notes in the wanted order: as they come where the engine can order them, texts in the
/// order of the user's language once all have come.
class SortedOutput {
public:
    /// Raises `UsageError` for an order that there is none of.
    SortedOutput(const CommandContext& context, bool asJson)
        : m_context(context), m_asJson(asJson),
          m_order(context.line.word(QStringLiteral("sort"),
                                    {QStringLiteral("id"), QStringLiteral("date"),
                                     QStringLiteral("subject"), QStringLiteral("author")},
                                    QStringLiteral("id"))) {
        m_textField = m_order == u"subject"  ? kSubject
                      : m_order == u"author" ? QStringLiteral("RecordUserCode")
                                             : QString();
    }
    [[nodiscard]] NoteOrder engineOrder() const {
        return m_order == u"date" ? NoteOrder::ByDate : NoteOrder::ByID;
    }
    void add(const dao::Recordset& note) {
        if (!m_textField.isEmpty()) {
            m_texts.append(note.value(m_textField).toString());
        }
        if (m_asJson) {
            const QJsonObject object = jsonRow(note, {kRTFNote, kPlainNote});
            m_textField.isEmpty() ? m_context.print(m_array.next(object))
                                  : m_objects.append(object);
        } else {
            m_textField.isEmpty() ? m_context.print(noteLine(note))
                                  : m_lines.append(noteLine(note));
        }
    }
    void finish() {
        if (!m_textField.isEmpty()) {
            const std::vector<QStringView> views(m_texts.begin(), m_texts.end());
            const auto order = orderOf(views, Qt::AscendingOrder, WorkStep());
            for (const int place : *order) {
                m_asJson ? m_context.print(m_array.next(m_objects.at(place)))
                         : m_context.print(m_lines.at(place));
            }
        }
        if (m_asJson) {
            m_context.print(m_array.end());
        }
    }

private:
    const CommandContext& m_context;
    bool m_asJson;
    QString m_order;
    QString m_textField; ///< that orders the notes; empty when the engine does
    JsonArray m_array;
    QStringList m_texts; ///< that the notes are ordered by; with what is printed of each:
    QStringList m_lines;
    QList<QJsonObject> m_objects;
};

QString noteText(IRecord& note) {
    const auto text = [&](const char16_t* field) {
        return onOneLine(note.value(QString::fromUtf16(field)).toString());
    };
    QString owner = QStringLiteral("none");
    if (!note.value(QStringLiteral("OwnerObjectKey")).isNull()) {
        owner = text(u"OwnerObjectKey") + u':' + text(u"OwnerRecordID");
    }
    return QStringLiteral("Subject: %1\nDate: %2\nAuthor: %3\nStatus: %4\nRecord: %5\n\n%6")
        .arg(text(u"Subject"), shownDate(note.value(kDate)), text(u"UseName"),
             shownStatus(note.value(kStatus)), owner, shellText(note.value(kPlainNote).toString()));
}

QJsonObject noteJson(IRecord& note) {
    QJsonObject object;
    for (const QString& name : note.Fields()->names()) {
        object.insert(name, jsonValue(note.value(name)));
    }
    return object;
}

Ref<dao::Recordset> remindersOf(const CommandContext& context) {
    CommandStore& store = *context.store;
    const QString noteOption = QStringLiteral("note");
    const bool dueOnly = context.line.isSet(QStringLiteral("due"));
    std::optional<qint64> noteID;
    if (context.line.isSet(noteOption)) {
        bool isNumber = false;
        const qint64 id = context.line.value(noteOption).toLongLong(&isNumber);
        if (!isNumber || dueOnly) {
            throw UsageError(dueOnly ? QStringLiteral("--due and --note exclude each other.")
                                     : QStringLiteral("--note takes the id of a note."));
        }
        (void)context.note(id); // one that is not there is an error
        noteID = id;
    }
    if (dueOnly) {
        store.requireUser();
        store.requireOneHost();
        return openDueReminders(store.dataHelper(), store.hostProgID(),
                                store.dataHelper().CurrentUserID());
    }
    return openReminders(store.dataHelper(), noteID);
}

QString shownReminderStatus(const QVariant& status) {
    switch (status.toInt()) {
    case static_cast<int>(ReminderStatus::ClosedUnanswered):
        return QStringLiteral("closed");
    case static_cast<int>(ReminderStatus::ToldLater):
        return QStringLiteral("later");
    case static_cast<int>(ReminderStatus::Dismissed):
        return QStringLiteral("dismissed");
    default:
        return QStringLiteral("waiting");
    }
}

/// Codes of the users by their key.
QHash<qint64, QString> userCodes(const CommandContext& context) {
    QHash<qint64, QString> codes;
    for (const UserName& user : context.store->users()) {
        codes.insert(user.UserID, user.UserCode);
    }
    return codes;
}

} // namespace

ExitStatus listNotes(const CommandContext& context) {
    NoteSelection selection = selectionOf(context);
    const QString find = context.line.value(QStringLiteral("find"));
    const bool asJson = context.line.isSet(kJson);
    SortedOutput output(context, asJson);
    selection.order = output.engineOrder();
    const Ref<dao::Recordset> notes = openNotes(context.store->dataHelper(), selection);
    ProgressLine progress = context.progress(QStringLiteral("notes"));
    qint64 count = 0;
    for (; !notes->AtEof(); notes->MoveNext()) {
        progress.step();
        if (!find.isEmpty() && !isFound(*notes, find)) {
            continue;
        }
        ++count;
        output.add(*notes);
    }
    output.finish();
    return count == 0 && !find.isEmpty() ? kExitNothing : kExitDone;
}

ExitStatus showNote(const CommandContext& context) {
    const CommandLine& line = context.line;
    const bool asText = line.isSet(QStringLiteral("text"));
    const bool asRtf = line.isSet(QStringLiteral("rtf"));
    const bool asJson = line.isSet(kJson);
    if (int(asText) + int(asRtf) + int(asJson) > 1) {
        throw UsageError(QStringLiteral("--text, --rtf and --json exclude each other."));
    }
    const Ref<Note> note = context.note(line.recordID());
    if (asText) {
        context.print(shellText(note->value(kPlainNote).toString()));
    } else if (asRtf) {
        context.print(note->value(kRTFNote).toString());
    } else if (asJson) {
        context.print(jsonText(noteJson(*note)));
    } else {
        context.print(noteText(*note));
    }
    return kExitDone;
}

ExitStatus listReminders(const CommandContext& context) {
    const Ref<dao::Recordset> reminders = remindersOf(context);
    const QHash<qint64, QString> codes = userCodes(context);
    const bool asJson = context.line.isSet(kJson);
    ProgressLine progress = context.progress(QStringLiteral("reminders"));
    JsonArray array;
    for (; !reminders->AtEof(); reminders->MoveNext()) {
        progress.step();
        if (asJson) {
            context.print(array.next(jsonRow(*reminders, {kPlainNote})));
            continue;
        }
        const QVariant userID = reminders->value(QStringLiteral("UserID"));
        context.print(QStringLiteral("%1  %2  %3 %4 note %5  %6\n")
                          .arg(reminders->value(kRecordID).toString(), 6)
                          .arg(shownDate(reminders->value(QStringLiteral("NextDate"))), -16)
                          .arg(codes.value(userID.toLongLong(), userID.toString()), -8)
                          .arg(shownReminderStatus(reminders->value(kStatus)), -9)
                          .arg(reminders->value(QStringLiteral("NoteID")).toString())
                          .arg(onOneLine(reminders->value(kSubject).toString())));
    }
    if (asJson) {
        context.print(array.end());
    }
    return kExitDone;
}

} // namespace yrw
