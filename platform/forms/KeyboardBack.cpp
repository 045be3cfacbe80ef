#include "platform/forms/KeyboardBack.h"

#include <QApplication>
#include <QTimer>
#include <QWidget>

namespace yrw {

namespace {

constexpr int kWindowManagerMs = 100;

} // namespace

void giveKeyboardBack(QWidget* window) {
    if (window == nullptr || QGuiApplication::applicationState() != Qt::ApplicationActive) {
        return;
    }
    QTimer::singleShot(kWindowManagerMs, window, [window] {
        const QWidget* const modal = QApplication::activeModalWidget();
        if (window->isVisible() && QApplication::activeWindow() != window &&
            (modal == nullptr || modal == window)) {
            window->activateWindow();
        }
    });
}

} // namespace yrw
