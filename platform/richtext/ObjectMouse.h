#pragma once

#include <QPoint>

#include <optional>

class QMouseEvent;
class QTextEdit;

namespace yrw::richtext {

class EmbeddedObjects;
class TextTransfer;

/// The left mouse button on the objects of an editor: a press selects one, a drag takes it along,
/// into the text or to another program. Each function is true for an event that is none of the
/// text's own.
///
/// Lifetime: its editor's. Thread: the user-interface thread.
class ObjectMouse {
public:
    ObjectMouse(QTextEdit& editor, EmbeddedObjects& objects, const TextTransfer& transfer)
        : m_editor(editor), m_objects(objects), m_transfer(transfer) {}

    bool press(const QMouseEvent& event);
    bool move(const QMouseEvent& event);
    bool release();

private:
    void drag();

    QTextEdit& m_editor;
    EmbeddedObjects& m_objects;
    const TextTransfer& m_transfer;
    std::optional<QPoint> m_pressed; ///< where the button went down on an object
};

} // namespace yrw::richtext
