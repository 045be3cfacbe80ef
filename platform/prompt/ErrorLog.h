#pragma once

#include "platform/prompt/Prompt.h"

class QDateTime;

namespace yrw {

/// The file that failures are written to: `yarrowen/log.txt` below `$XDG_STATE_HOME`
/// (`~/.local/state` without it).
[[nodiscard]] QString errorLogFile();

/// Appends one line about a failure: when, source, number and words, with tabs between them. A log
/// that cannot be written costs nothing but the line.
void appendToErrorLog(const QDateTime& when, const ErrorReport& report);

} // namespace yrw
