#pragma once

#include <QObject>

namespace yrw {

class Clock;
class Prompt;
class SettingsStore;

/// Tells what went wrong with a settings store: a line in the log at once, and one message as soon
/// as the event loop has its turn, so that no window is interrupted while it closes. What another
/// watch of the process has told of the same file is not told again.
/// Lifetime: ends before the store, the clock and the prompt that it was given.
/// Thread: the user-interface thread.
class SettingsWatch final : public QObject {
public:
    SettingsWatch(SettingsStore& store, const Clock& clock, Prompt& prompt, QString title);
    ~SettingsWatch() override;

    /// Shows the message that waits, if there is one.
    void tell();

private:
    void problemNoted(const QString& problem);

    SettingsStore& m_store;
    const Clock& m_clock;
    Prompt& m_prompt;
    QString m_title;
};

} // namespace yrw
