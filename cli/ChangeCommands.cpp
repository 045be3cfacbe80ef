// add, done, reopen and delete.
#include "cli/CommandContext.h"
#include "framework/DefaultFont.h"
#include "platform/clock/Clock.h"
#include "platform/component/AutomationError.h"
#include "platform/rtf/Reader.h"
#include "platform/rtf/Writer.h"
#include "store/Operations.h"

namespace yrw {

namespace {

const QString kRemind = QStringLiteral("remind");
const QString kAt = QStringLiteral("at");
const QString kGroupID = QStringLiteral("GroupID");
const QString kUsersPrefix = QStringLiteral("users:");

[[noreturn]] void raiseNotFound(const QString& text) {
    throw AutomationError(kErrorRecordNotFound, QStringLiteral("yrwnotes"), text);
}

/// Everything that "add" writes, read from the command line before anything is written.
struct NewNote {
    NoteChoices choices;
    NoteOwner owner;
    std::optional<rtf::Document> body;
    QList<qint64> recipients;
};

QString checkedSubject(const CommandLine& line) {
    const QString subject = line.value(QStringLiteral("subject"));
    if (subject.isEmpty()) {
        throw UsageError(QStringLiteral("Give the note a --subject."));
    }
    if (subject.size() > schema::kMaxText) {
        throw UsageError(QStringLiteral("The subject has %1 characters; the most are %2.")
                             .arg(subject.size())
                             .arg(schema::kMaxText));
    }
    return subject;
}

/// The codes behind "users:"; none for anything else.
QStringList chosenCodes(const QString& who) {
    QStringList codes;
    if (who.startsWith(kUsersPrefix)) {
        const QStringList parts = who.mid(kUsersPrefix.size()).split(u',');
        for (const QString& part : parts) {
            codes += part.trimmed();
        }
        codes.removeAll(QString());
    }
    return codes;
}

ReminderKind reminderKind(const CommandLine& line) {
    if (line.isSet(kRemind) != line.isSet(kAt)) {
        throw UsageError(QStringLiteral("--remind and --at go together."));
    }
    const QString who = line.value(kRemind);
    if (!line.isSet(kRemind)) {
        return ReminderKind::None;
    }
    if (!chosenCodes(who).isEmpty()) {
        return ReminderKind::SelectedUsers;
    }
    if (who == u"everyone") {
        return ReminderKind::Everyone;
    }
    if (who == u"me") {
        return ReminderKind::Me;
    }
    if (who == u"group") {
        return ReminderKind::MyGroup;
    }
    throw UsageError(
        QStringLiteral("--remind takes me, group, everyone or users:CODE,CODE, not '%1'.")
            .arg(who));
}

QList<qint64> everyone(const CommandContext& context) {
    QList<qint64> ids;
    for (const UserName& user : context.store->users()) {
        ids += user.UserID;
    }
    return ids;
}

/// Keys of the host's users in one group.
QList<qint64> usersInGroup(const CommandContext& context, const QVariant& groupID) {
    QList<qint64> ids;
    const Ref<dao::Recordset> users = context.store->hostApplication()->Users()->Recordset({});
    for (; !users->AtEof(); users->MoveNext()) {
        if (users->value(kGroupID) == groupID) {
            ids += users->value(QStringLiteral("RecordID")).toLongLong();
        }
    }
    users->Close();
    return ids;
}

QList<qint64> usersByCode(const CommandContext& context, const QStringList& codes) {
    QHash<QString, qint64> known;
    for (const UserName& user : context.store->users()) {
        known.insert(user.UserCode.toUpper(), user.UserID);
    }
    QList<qint64> ids;
    for (const QString& code : codes) {
        const auto found = known.constFind(code.toUpper());
        if (found == known.constEnd()) {
            raiseNotFound(QStringLiteral("There is no user '%1'.").arg(code));
        }
        if (!ids.contains(*found)) {
            ids += *found;
        }
    }
    return ids;
}

QList<qint64> recipientsOf(const CommandContext& context, ReminderKind kind) {
    switch (kind) {
    case ReminderKind::Everyone:
        return everyone(context);
    case ReminderKind::Me:
        return {context.store->dataHelper().CurrentUserID()};
    case ReminderKind::MyGroup: {
        context.store->requireHostDatabase(QStringLiteral("A group"));
        const QVariant mine = context.store->currentUser()->value(kGroupID);
        if (mine.isNull() || mine.toLongLong() == 0) {
            raiseNotFound(QStringLiteral("The user belongs to no group."));
        }
        return usersInGroup(context, mine);
    }
    case ReminderKind::SelectedUsers:
        return usersByCode(context, chosenCodes(context.line.value(kRemind)));
    case ReminderKind::None:
        break;
    }
    return {};
}

NoteOwner ownerFor(const CommandContext& context) {
    const std::optional<OwnerArgument> wanted = context.line.owner();
    if (!wanted) {
        return {};
    }
    CommandStore& store = *context.store;
    store.requireHostDatabase(QStringLiteral("A note on a record"));
    const Ref<IObjectDefinition> kind =
        store.hostApplication()->ObjectDefinition(wanted->objectKey);
    if (!kind) {
        raiseNotFound(
            QStringLiteral("The host has no kind of record '%1'.").arg(wanted->objectKey));
    }
    return ownerOf(kind->Collection()->Item(QVariant(wanted->recordID)), store);
}

/// 0x00RRGGBB of &H00BBGGRR.
int redFirst(int colour) {
    return (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF);
}

/// Plain text as the user would have typed it in the notes window.
rtf::Document inDefaultFont(rtf::Document text, const NotesSettings& settings) {
    const FontChoice font = defaultFont(settings);
    for (rtf::Font& only : text.fonts) {
        only.name = font.name;
    }
    for (rtf::CharFormat& format : text.charFormats) {
        format.halfPoints = qRound(font.points * 2);
        format.bold = font.bold;
        format.italic = font.italic;
        format.underline = font.underline;
        format.strike = font.strikethru;
        format.colour = font.colour == 0 ? rtf::kAutomatic : redFirst(font.colour);
    }
    return text;
}

std::optional<rtf::Document> bodyFor(const CommandContext& context) {
    const QString text = QStringLiteral("text");
    const QString file = QStringLiteral("rtf");
    if (context.line.isSet(text) && context.line.isSet(file)) {
        throw UsageError(QStringLiteral("--text and --rtf exclude each other."));
    }
    if (context.line.isSet(text)) {
        return inDefaultFont(rtf::fromPlainText(context.line.value(text)), context.settings);
    }
    if (context.line.isSet(file)) {
        return rtf::read(context.readFile(context.line.value(file)));
    }
    return std::nullopt;
}

NewNote newNoteOf(const CommandContext& context) {
    const CommandLine& line = context.line;
    NewNote note;
    note.choices.Subject = checkedSubject(line);
    note.choices.Kind = reminderKind(line);
    note.choices.Date = line.date(QStringLiteral("date")).value_or(context.clock.now());
    note.choices.ReminderDate = line.date(kAt).value_or(QDateTime());
    note.choices.AutomaticallyShow = line.isSet(QStringLiteral("auto-show"));
    note.choices.Type =
        line.isSet(QStringLiteral("private")) ? NoteType::Private : NoteType::Public;
    note.owner = ownerFor(context);
    note.body = bodyFor(context);
    note.recipients = recipientsOf(context, note.choices.Kind);
    return note;
}

ExitStatus setDone(const CommandContext& context, bool done) {
    context.store->requireUser();
    const Ref<Note> note = context.note(context.line.recordID());
    if (note->Done() == done) {
        context.complain(QStringLiteral("Note %1 is %2 already.")
                             .arg(context.line.recordID())
                             .arg(done ? QStringLiteral("done") : QStringLiteral("active")));
        return kExitNothing;
    }
    markDone(context.application(), *note, done);
    return kExitDone;
}

} // namespace

ExitStatus addNote(const CommandContext& context) {
    context.store->requireUser();
    const NewNote wanted = newNoteOf(context);
    CommandStore& store = *context.store;
    std::optional<NoteText> text;
    if (wanted.body) {
        text = NoteText{QString::fromLatin1(rtf::write(*wanted.body)), wanted.body->plainText()};
    }
    const Ref<Note> note = createWholeNote(store.application(), store, wanted.owner, wanted.choices,
                                           text, wanted.recipients);
    const qint64 id = note->value(QStringLiteral("RecordID")).toLongLong();
    if (context.line.isSet(QStringLiteral("json"))) {
        context.print(QStringLiteral("{\"RecordID\": %1}\n").arg(id));
    } else {
        context.print(QStringLiteral("%1\n").arg(id));
    }
    return kExitDone;
}

ExitStatus finishNote(const CommandContext& context) {
    return setDone(context, true);
}

ExitStatus reopenNote(const CommandContext& context) {
    return setDone(context, false);
}

ExitStatus removeNote(const CommandContext& context) {
    (void)context.note(context.line.recordID()); // one that is not there is an error
    deleteNote(context.application(), context.line.recordID());
    return kExitDone;
}

} // namespace yrw
