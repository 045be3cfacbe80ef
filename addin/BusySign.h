#pragma once

#include "framework/ErrorGuards.h"
#include "framework/HostObjects.h"
#include "platform/component/GuardedPtr.h"

#include <utility>

namespace yrw {

/// Tells the user that something takes a while: the hourglass and a text on the host's window,
/// both taken back at its end. A host that fails to show the text stops nothing.
/// Lifetime: one block of code. Thread: the user-interface thread.
class BusySign {
public:
    BusySign(Prompt& prompt, GuardedPtr<IHostInterface> interface_, const QString& text)
        : m_prompt(prompt), m_interface(std::move(interface_)) {
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
