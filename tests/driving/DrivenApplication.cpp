#include "tests/driving/DrivenApplication.h"

#include "tests/driving/ScreenWatch.h"

#include <QKeyEvent>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <gtest/gtest.h>

#include <utility>

namespace yrw::test {

namespace {

constexpr int kPatience = 5000; ///< for a key that is held back, in milliseconds

/// Fails each test whose windows break the rule of the screen.
class ScreenRule final : public testing::EmptyTestEventListener {
public:
    void OnTestEnd(const testing::TestInfo&) override {
        const QStringList faults = m_watch.takeFaults();
        for (const QString& fault : faults) {
            ADD_FAILURE() << fault.toStdString();
        }
    }

private:
    ScreenWatch m_watch;
};

} // namespace

int DrivenApplication::runTests() {
    if (!waitForReader()) {
        qWarning("No reader has keys held back");
        return 1;
    }
    if (qEnvironmentVariableIsSet("YRW_SCREEN")) {
        testing::UnitTest::GetInstance()->listeners().Append(new ScreenRule);
    }
    return RUN_ALL_TESTS();
}

bool DrivenApplication::notify(QObject* receiver, QEvent* event) {
    static const bool display = platformName() == u"xcb";
    const QEvent::Type type = event->type();
    if (m_waiting > 0 && type == QEvent::DeferredDelete && receiver->isWidgetType()) {
        m_doomed.append(receiver); // a key pressed offscreen returns before that, too
        return true;
    }
    if (!display || (type != QEvent::ShortcutOverride && type != QEvent::KeyPress &&
                     type != QEvent::KeyRelease)) {
        return QApplication::notify(receiver, event);
    }
    auto& key = *static_cast<QKeyEvent*>(event);
    return receiver->isWidgetType() ? notifyControl(*static_cast<QWidget*>(receiver), key)
                                    : notifyWindow(receiver, key);
}

bool DrivenApplication::notifyWindow(QObject* window, QKeyEvent& event) {
    const bool copy = event.type() != QEvent::ShortcutOverride && !event.spontaneous();
    m_inWindows.append(&event);
    const bool result = QApplication::notify(window, &event);
    // What reached a control was struck out.
    if (m_inWindows.removeOne(&event) && !copy && event.type() != QEvent::ShortcutOverride) {
        ++m_held;
    }
    m_sentAgain += copy ? 1 : 0;
    return result;
}

bool DrivenApplication::notifyControl(QWidget& control, QKeyEvent& event) {
    if (isFromTest(control, event)) {
        if (event.type() == QEvent::ShortcutOverride) {
            event.accept(); // the window makes this offer itself
            return true;
        }
        return pressInWindow(control, event);
    }
    m_inWindows.removeOne(&event);
    m_offeredAgain = event.type() == QEvent::KeyPress && !event.spontaneous() ? &control : nullptr;
    return QApplication::notify(&control, &event);
}

/// True for what neither a window nor the toolkit hands on, nor the program sends by itself.
bool DrivenApplication::isFromTest(const QWidget& control, const QKeyEvent& event) const {
    if (m_inWindows.contains(&event) || control.window()->windowHandle() == nullptr) {
        return false;
    }
    return event.type() == QEvent::ShortcutOverride
               ? !event.spontaneous() && m_offeredAgain != &control
               : event.spontaneous();
}

bool DrivenApplication::pressInWindow(QWidget& control, const QKeyEvent& event) {
    const QPointer<QWindow> window = control.window()->windowHandle();
    // A release goes to whatever has the keyboard by now.
    if (event.type() == QEvent::KeyPress && !control.isWindow() &&
        control.focusPolicy() != Qt::NoFocus) {
        control.setFocus();
    }
    const int held = m_held;
    const int sentAgain = m_sentAgain;
    qt_handleKeyEvent(window, event.type(), event.key(), event.modifiers(), event.text(),
                      event.isAutoRepeat());
    ++m_waiting;
    if (m_held > held &&
        !QTest::qWaitFor([&] { return m_sentAgain > sentAgain || window.isNull(); }, kPatience)) {
        qWarning("A key was held back and did not come again");
    }
    if (--m_waiting == 0) {
        for (const QPointer<QObject>& each : std::exchange(m_doomed, {})) {
            if (each) {
                QTimer::singleShot(0, each, [each] { delete each; });
            }
        }
    }
    return true;
}

bool DrivenApplication::waitForReader() {
    if (!qEnvironmentVariableIsSet("YRW_READER")) {
        return true;
    }
    QWidget window;
    window.show();
    return QTest::qWaitForWindowExposed(&window) &&
           QTest::qWaitFor(
               [&] {
                   const int held = m_held;
                   QTest::keyClick(window.windowHandle(), Qt::Key_F35);
                   return m_held > held;
               },
               kPatience);
}

} // namespace yrw::test
