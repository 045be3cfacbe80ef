#include "platform/richtext/ObjectMouse.h"

#include "platform/richtext/EmbeddedObjects.h"
#include "platform/richtext/TextTransfer.h"

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QTextEdit>
#include <QUrl>

namespace yrw::richtext {

bool ObjectMouse::press(const QMouseEvent& event) {
    const QPoint at = event.position().toPoint();
    const bool plain = event.button() == Qt::LeftButton && event.modifiers() == Qt::NoModifier;
    const int index = plain ? m_objects.at(at) : -1;
    if (index < 0) {
        return false;
    }
    m_objects.select(index);
    m_pressed = at;
    return true;
}

bool ObjectMouse::move(const QMouseEvent& event) {
    if (!m_pressed) {
        return false;
    }
    const QPoint way = event.position().toPoint() - *m_pressed;
    if (way.manhattanLength() >= QApplication::startDragDistance()) {
        m_pressed.reset();
        drag();
    }
    return true;
}

bool ObjectMouse::release() {
    const bool pressed = m_pressed.has_value();
    m_pressed.reset();
    return pressed;
}

/// Drags the selected object: into the text as it is, to other programs as a file. They get a copy;
/// only a move inside the editor takes it away from where it was.
void ObjectMouse::drag() {
    QTextCursor original = m_editor.textCursor();
    auto* const drag = new QDrag(m_editor.viewport()); // deletes itself when it is over
    QMimeData* const mime = m_transfer.copied();
    if (const QString copy = m_objects.copy(m_objects.current()); !copy.isEmpty()) {
        mime->setUrls({QUrl::fromLocalFile(copy)});
    }
    drag->setMimeData(mime);
    drag->exec(Qt::CopyAction);
    if (drag->target() == m_editor.viewport() && !m_editor.isReadOnly()) {
        original.removeSelectedText();
    }
}

} // namespace yrw::richtext
