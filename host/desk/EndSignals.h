#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace yrw {

/// Turns the signals that ask a program to end (SIGTERM, SIGHUP, SIGINT) into a call from the event
/// loop, and lets a file that may not grow be a failed write instead of the program's death.
///
/// For programs alone: a library leaves the signals to its host.
/// Lifetime: one for the program, until it ends. Thread: the user-interface thread.
class EndSignals {
public:
    explicit EndSignals(std::function<void()> onEnd);
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;
    ~EndSignals();

private:
    int m_reading = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace yrw
