#pragma once

#include "cli/Command.h"
#include "cli/CommandLine.h"
#include "cli/CommandStore.h"

namespace yrw {

/// What one command works with.
struct CommandContext {
    const CommandLine& line;
    const CommandStreams& streams;
    Clock& clock;
    CommandStore* store; ///< nothing for a command that needs no data folder

    [[nodiscard]] Application& application() const { return store->application(); }
    /// Writes text as UTF-8. Raises `kErrorDiskFull` when it cannot be written.
    void print(const QString& text) const;
    void print(const QByteArray& bytes) const;
    /// One line on standard error.
    void complain(const QString& text) const;
    /// All bytes of a file; "-" is standard input. Raises `kErrorCannotOpenDatabase` naming it.
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
ExitStatus exportNotes(const CommandContext& context);
ExitStatus convertRtf(const CommandContext& context);

} // namespace yrw
