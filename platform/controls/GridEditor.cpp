#include "platform/controls/GridEditor.h"

#include <QKeyEvent>

namespace yrw {

GridEditor::GridEditor(QWidget* parent) : QLineEdit(parent) {
    setObjectName(QStringLiteral("gridEditor"));
    setFrame(false);
    setAutoFillBackground(true);
}

void GridEditor::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Escape:
        Q_EMIT canceled();
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Q_EMIT finished();
        return;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        Q_EMIT rowKeyPressed(event->key());
        return;
    default:
        QLineEdit::keyPressEvent(event);
    }
}

bool GridEditor::focusNextPrevChild(bool next) {
    Q_EMIT tabbed(next);
    return true;
}

void GridEditor::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    // The editor's own pop-up menu and another window leave the edit as it is.
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) {
        Q_EMIT focusLost();
    }
}

} // namespace yrw
