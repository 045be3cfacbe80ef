#pragma once

#include <QDateTime>
#include <QString>

namespace yrw {

class Prompt;
struct NoteDraft;

/// What is to become of text that was typed but not saved.
enum class DraftAnswer { TakeOver, ThrowAway, Later };

/// Asks about the text of a note that is there. Only No throws it away. `now` is the present, for
/// naming the time.
[[nodiscard]] DraftAnswer askAboutDraft(Prompt& prompt, const NoteDraft& draft,
                                        const QString& subject, const QDateTime& now);

/// Asks about the text of a note that was deleted meanwhile: taking over makes a new note of it.
[[nodiscard]] DraftAnswer askAboutOrphan(Prompt& prompt, const NoteDraft& draft);

/// Asks whether text that could be neither saved nor kept as a draft may be lost.
[[nodiscard]] bool askToLose(Prompt& prompt, const QString& subject, const QString& problem);

} // namespace yrw
