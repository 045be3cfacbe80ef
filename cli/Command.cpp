#include "cli/Command.h"

#include "cli/CommandContext.h"
#include "platform/component/AutomationError.h"
#include "store/Salvage.h"

#include <QFileInfo>

#include <optional>

namespace yrw {

namespace {

struct Handler {
    const char* name;
    ExitStatus (*run)(const CommandContext& context);
    bool needsStore;
};

constexpr Handler kHandlers[] = {
    {"list", listNotes, true},
    {"show", showNote, true},
    {"add", addNote, true},
    {"done", finishNote, true},
    {"reopen", reopenNote, true},
    {"delete", removeNote, true},
    {"reminders", listReminders, true},
    {"check", checkDatabase, true},
    {"export", exportNotes, true},
    {"backup", backUpNotes, true},
    {"import", importNotes, false},
    {"rtf", convertRtf, false},
};

const Handler& handlerOf(const QString& command) {
    for (const Handler& handler : kHandlers) {
        if (command == QLatin1String(handler.name)) {
            return handler;
        }
    }
    throw UsageError(QStringLiteral("There is no command '%1'.").arg(command));
}

/// The reason of a failure as one line. What the store raises is about the notes database, which
/// is named where that text names no file; the command's own texts are complete.
QString oneLine(const AutomationError& error, const QString& dataFolder) {
    const QString text = error.description().simplified();
    const QString path = FileSystem::join(dataFolder, kNotesDatabaseName);
    if (error.number() == kErrorRecordNotFound || dataFolder.isEmpty() ||
        error.source() == u"yrwnotes" || text.startsWith(u'/') || text.contains(u".mdb") ||
        text.contains(dataFolder)) {
        return text;
    }
    return error.number() == kErrorReadOnly ? QStringLiteral("%1 is read-only.").arg(path)
                                            : QStringLiteral("%1: %2").arg(path, text);
}

ExitStatus run(const CommandLine& line, const CommandStreams& streams,
               const CommandServices& services) {
    const Handler& handler = handlerOf(line.command());
    const QString data = line.value(QStringLiteral("data"));
    std::optional<CommandStore> store;
    if (handler.needsStore) {
        if (data.isEmpty()) {
            throw UsageError(QStringLiteral("Say with --data where the notes are."));
        }
    }
    CommandContext context{
        line,   streams, services.engine, services.engine.clock, NotesSettings(services.settings),
        nullptr};
    if (handler.needsStore) {
        try {
            store.emplace(services.engine, data, line.value(QStringLiteral("user")));
        } catch (const AutomationError& error) {
            const QString path =
                services.engine.files.resolve(FileSystem::join(data, kNotesDatabaseName));
            const bool isDamaged =
                handler.run == checkDatabase && error.number() == kErrorNotADatabase &&
                error.description().contains(path) && isDamagedNotesDatabase(path);
            if (!isDamaged) {
                throw;
            }
            return checkDamagedFile(context, path, error.description());
        }
        context.store = &*store;
    }
    return handler.run(context);
}

} // namespace

ExitStatus runCommand(const QStringList& arguments, const CommandStreams& streams,
                      const CommandServices& services) {
    QString data;
    try {
        const CommandLine line(arguments);
        if (!line.answer().isEmpty()) {
            streams.out.write(line.answer().toUtf8());
            return kExitDone;
        }
        data = line.value(QStringLiteral("data"));
        return run(line, streams, services);
    } catch (const UsageError& error) {
        complain(streams, QString::fromUtf8(error.what()));
        return kExitUsage;
    } catch (...) {
        const AutomationError error = currentError();
        complain(streams, oneLine(error, data));
        return error.number() == kErrorRecordNotFound ? kExitNothing : kExitFailed;
    }
}

} // namespace yrw
