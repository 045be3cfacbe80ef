#pragma once

#include <QApplication>
#include <QMenu>
#include <QWidget>

namespace yrw::tour {

/// The shown widget with an object name, in any window; nothing when none is shown.
template <class T>
[[nodiscard]] T* shown(const QString& name) {
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (!window->isVisible()) {
            continue;
        }
        if (auto* self = dynamic_cast<T*>(window);
            self != nullptr && window->objectName() == name) {
            return self;
        }
        const QWidgetList widgets = window->findChildren<QWidget*>(name);
        for (QWidget* widget : widgets) {
            auto* found = dynamic_cast<T*>(widget);
            if (found != nullptr && widget->isVisible()) {
                return found;
            }
        }
    }
    return nullptr;
}

/// Clicks at a place of a widget: the part of it that lies there gets the click.
void clickAt(QWidget& widget, const QPoint& place, Qt::MouseButton button = Qt::LeftButton);
/// Clicks in the middle of the shown widget with that name.
void click(const QString& name);
/// Clicks an entry of the open menu.
void chooseEntry(const QString& name);
/// The entry of the open menu with that name; nothing when there is none.
[[nodiscard]] QAction* openEntry(const QString& name);
/// Types into whatever has the keyboard.
void type(const QString& text);
void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

} // namespace yrw::tour
