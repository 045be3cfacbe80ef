#pragma once

#include "platform/clock/Clock.h"
#include "platform/jet/JetRows.h"

#include <functional>

namespace yrw::jet {

/// True when a file begins as an old database does, whatever its version; false also for one that
/// cannot be opened.
[[nodiscard]] bool isJetFile(const QString& path);

/// How an old database is read.
struct JetReading {
    QStringList tables; ///< whose rows are wanted, in this order
    int codePage = 0;   ///< of texts of version 3; 0: the one that the file names
    const Clock& clock; ///< for the limits below
    /// Called again and again; false stops.
    std::function<bool()> step = [] { return true; };
    /// The program that reads; empty: the one beside this code.
    QString reader{};
    /// How long may pass without a word of the reader, in milliseconds.
    qint64 mostSilentMs = 8000;
};

/// How a reading ended.
enum class JetEnd { Read, Stopped };

/// Reads an old database in a process of its own, which is limited in time and memory and opens
/// nothing but that file. Where it dies or does not end in a table, that table ends as not whole
/// and the next one is read by another process. A table comes once; one that could not even be
/// begun does not come.
///
/// Raises `kErrorCannotOpenDatabase` when the file or the reader cannot be opened,
/// `kErrorNotADatabase` with a sentence that names the file when nothing can be read of it, and
/// what the sink raises.
/// Thread: any.
[[nodiscard]] JetEnd readJetFile(const QString& path, const JetReading& reading, JetSink& sink);

} // namespace yrw::jet
