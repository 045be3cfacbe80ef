#pragma once

#include "cli/CommandLine.h"
#include "cli/CommandStore.h"
#include "cli/CommandStreams.h"
#include "cli/ProgressLine.h"
#include "framework/Settings.h"

namespace yrw {

/// What one command works with.
struct CommandContext {
    const CommandLine& line;
    const CommandStreams& streams;
    const dao::EngineServices& engine;
    Clock& clock;
    NotesSettings settings;
    CommandStore* store; ///< nothing for a command that needs no data folder

    [[nodiscard]] Application& application() const { return store->application(); }
    /// Writes text as UTF-8, to a terminal without what it would take for commands. Raises
    /// `kErrorFileWrite` when it cannot be written.
    void print(const QString& text) const;
    void print(const QByteArray& bytes) const;
    /// Counts what a long command does, for whoever looks.
    [[nodiscard]] ProgressLine progress(const QString& what) const {
        return {streams.err, clock, what, streams.errIsTerminal};
    }
    /// Raises `kErrorRecordNotFound` saying so when there is no such note.
    [[nodiscard]] Ref<Note> note(qint64 id) const;
    /// One line on standard error.
    void complain(const QString& text) const;
    /// All bytes of a file; "-" is standard input. Raises `kErrorFileRead` naming it.
    [[nodiscard]] QByteArray readFile(const QString& path) const;
};

// The commands. Each returns how it ends and raises `UsageError` and `AutomationError`.

ExitStatus listNotes(const CommandContext& context);
ExitStatus showNote(const CommandContext& context);
ExitStatus listReminders(const CommandContext& context);
ExitStatus addNote(const CommandContext& context);
ExitStatus finishNote(const CommandContext& context);
ExitStatus reopenNote(const CommandContext& context);
ExitStatus removeNote(const CommandContext& context);
ExitStatus checkDatabase(const CommandContext& context);
/// The same for a file that does not even open: `problem` says why.
ExitStatus checkDamagedFile(const CommandContext& context, const QString& path,
                            const QString& problem);
ExitStatus exportNotes(const CommandContext& context);
ExitStatus backUpNotes(const CommandContext& context);
ExitStatus importNotes(const CommandContext& context);
ExitStatus convertRtf(const CommandContext& context);

} // namespace yrw
