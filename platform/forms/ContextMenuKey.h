#pragma once

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QWidget>

namespace yrw {

/// Shift+F10 asks for a control's menu as the menu key does; true when the key was that.
inline bool askedForMenu(QWidget& control, const QKeyEvent& key) {
    if (key.key() != Qt::Key_F10 || key.modifiers() != Qt::ShiftModifier) {
        return false;
    }
    const QPoint place = control.rect().center();
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, place, control.mapToGlobal(place));
    QApplication::sendEvent(&control, &menu);
    return true;
}

} // namespace yrw
