#pragma once

#include <QTextCursor>
#include <QTextEdit>

namespace yrw::test {

/// Selects characters of a text, or puts the insertion point before one.
inline void select(QTextEdit& box, int start, int length = 0) {
    QTextCursor cursor = box.textCursor();
    cursor.setPosition(start);
    cursor.setPosition(start + length, QTextCursor::KeepAnchor);
    box.setTextCursor(cursor);
}

} // namespace yrw::test
