#include "host/desk/EndSignals.h"

#include <cerrno>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace yrw {

namespace {

constexpr int kSignals[] = {SIGTERM, SIGHUP, SIGINT};

/// Where the handler writes a byte for each signal.
int& writingEnd() {
    static int end = -1;
    return end;
}

void tell(int) {
    const int before = errno;
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(writingEnd(), &byte, 1);
    errno = before;
}

void handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

} // namespace

EndSignals::EndSignals(std::function<void()> onEnd) {
    handle(SIGXFSZ, SIG_IGN);
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    m_reading = ends[0];
    writingEnd() = ends[1];
    m_notifier = std::make_unique<QSocketNotifier>(m_reading, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [reading = m_reading, end = std::move(onEnd)] {
                         char bytes[16];
                         while (::read(reading, bytes, sizeof bytes) > 0) {
                         }
                         end();
                     });
    for (const int signal : kSignals) {
        handle(signal, tell);
    }
}

EndSignals::~EndSignals() {
    for (const int signal : kSignals) {
        handle(signal, SIG_DFL);
    }
    if (m_reading >= 0) {
        ::close(m_reading);
        ::close(std::exchange(writingEnd(), -1));
    }
}

} // namespace yrw
