#pragma once

#include <QObject>

#include <functional>

namespace yrw {

/// Ends the program when it is not the user who closes it: the session of the desktop ends, or a
/// signal says so (`EndSignals`).
///
/// Everything typed is kept first. Then what lies over the program's main window is closed, one
/// after the other, as closing by the user would: menus; boxes, which are answered by the button
/// that changes nothing; windows, which save. Last the main window itself. A window that cannot be
/// closed is waited for five seconds.
/// Where the session only asks for what is unsaved, it is kept and nothing is closed.
/// Lifetime: one for the program, from its start to its end. Thread: the user-interface thread.
class SessionEnd final : public QObject {
    Q_OBJECT

public:
    /// `closeProgram` closes the main window and leaves the event loop.
    explicit SessionEnd(std::function<void()> closeProgram);

    /// Begins the end; once begun it goes on by itself.
    void begin();
    /// True once the main window has been closed.
    [[nodiscard]] bool hasEnded() const noexcept { return m_closing; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void step();

    std::function<void()> m_closeProgram;
    bool m_begun = false;
    bool m_closing = false;
    int m_steps = 0;
};

} // namespace yrw
