#include "tour/Hands.h"

#include <QTest>

namespace yrw::tour {

void clickAt(QWidget& widget, const QPoint& place, Qt::MouseButton button) {
    QWidget* target = &widget;
    QPoint where = place;
    while (QWidget* child = target->childAt(where)) {
        where = child->mapFrom(target, where);
        target = child;
    }
    QTest::mouseClick(target, button, Qt::NoModifier, where);
    if (button == Qt::RightButton) {
        // What the window system sends along with the press.
        QContextMenuEvent wanted(QContextMenuEvent::Mouse, where, target->mapToGlobal(where));
        QApplication::sendEvent(target, &wanted);
    }
}

void click(const QString& name) {
    if (auto* widget = shown<QWidget>(name)) {
        clickAt(*widget, widget->rect().center());
    }
}

QAction* openEntry(const QString& name) {
    const auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (menu == nullptr) {
        return nullptr;
    }
    const QList<QAction*> entries = menu->actions();
    for (QAction* entry : entries) {
        if (entry->objectName() == name) {
            return entry;
        }
    }
    return nullptr;
}

void chooseEntry(const QString& name) {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (QAction* entry = openEntry(name)) {
        QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                          menu->actionGeometry(entry).center());
    }
}

void type(const QString& text) {
    if (QWidget* focused = QApplication::focusWidget()) {
        QTest::keyClicks(focused, text);
    }
}

void press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    if (QWidget* focused = QApplication::focusWidget()) {
        QTest::keyClick(focused, key, modifiers);
    }
}

} // namespace yrw::tour
