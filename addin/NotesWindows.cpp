#include "addin/NotesWindows.h"

#include "framework/ErrorGuards.h"
#include "platform/forms/Form.h"

#include <QApplication>

namespace yrw {

void NotesWindows::add(Form* window) {
    m_windows.append(window);
}

void NotesWindows::remove(Form* window) {
    m_windows.removeAll(window);
}

bool NotesWindows::isOnTop() const {
    return isOpen() && QApplication::activePopupWidget() == nullptr &&
           QApplication::activeModalWidget() == m_windows.last();
}

bool NotesWindows::unloadAll() {
    const QList<QPointer<Form>> windows = m_windows;
    bool areGone = true;
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
        const bool isGone =
            ignoreErrors([&] { areGone = (!*window || (*window)->unload()) && areGone; });
        areGone = areGone && isGone;
    }
    return areGone;
}

} // namespace yrw
