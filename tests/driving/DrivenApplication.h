#pragma once

#include <QApplication>
#include <QList>
#include <QPointer>

class QKeyEvent;

namespace yrw::test {

/// The application of a test that drives windows.
///
/// On a real display a key that the test presses in a control goes the way of a key of the
/// keyboard: by the control's window, to what has the keyboard there, and, while a reader listens
/// (tools/with-display.sh --reader), held back and sent again. The press returns once the key has
/// arrived. On a platform without a display all is as the toolkit does it.
class DrivenApplication final : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override;

    /// Runs all tests. Where a reader was started (YRW_READER), only once it has keys held back;
    /// where a screen was chosen (YRW_SCREEN), a window that a test opens there and that is cut or
    /// leaves the screen fails the test.
    int runTests();

    /// False where a reader was started and keys are not held back in time.
    bool waitForReader();

private:
    bool notifyWindow(QObject* window, QKeyEvent& event);
    bool notifyControl(QWidget& control, QKeyEvent& event);
    bool isFromTest(const QWidget& control, const QKeyEvent& event) const;
    bool pressInWindow(QWidget& control, const QKeyEvent& event);

    QList<const QKeyEvent*> m_inWindows;     ///< on their way through a window
    QList<QPointer<QObject>> m_doomed;       ///< to be deleted when the key under way has arrived
    int m_waiting = 0;                       ///< keys under way
    const QWidget* m_offeredAgain = nullptr; ///< whom the press under way is offered to once more
    int m_held = 0;                          ///< keys that a window got and did not hand on
    int m_sentAgain = 0;                     ///< keys that arrived later, as copies
};

} // namespace yrw::test
