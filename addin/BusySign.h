#pragma once

#include "addin/AddInHost.h"
#include "framework/ErrorGuards.h"

namespace yrw {

/// Tells the user that something takes a while: the hourglass and a text on the host's window,
/// both taken back at its end.
/// Lifetime: one block of code. Thread: the user-interface thread.
class BusySign {
public:
    /// An empty text shows the hourglass alone.
    BusySign(Prompt& prompt, const AddInHost& host, const QString& text)
        : m_prompt(prompt),
          m_interface(text.isEmpty() ? GuardedPtr<IHostInterface>() : host.hostInterface) {
        m_prompt.setMousePointer(MousePointer::Hourglass);
        showStatus(text);
    }
    BusySign(const BusySign&) = delete;
    BusySign& operator=(const BusySign&) = delete;
    ~BusySign() {
        m_prompt.setMousePointer(MousePointer::Default);
        showStatus({});
    }

private:
    void showStatus(const QString& text) noexcept {
        ignoreErrors([&] {
            if (m_interface) {
                m_interface->ShowStatus(text);
            }
        });
    }

    Prompt& m_prompt;
    GuardedPtr<IHostInterface> m_interface;
};

} // namespace yrw
