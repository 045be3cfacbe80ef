#pragma once

#include <QList>
#include <QTextEdit>

namespace yrw::richtext {

/// Pieces of an editor's text that are painted in another format, which stays out of the content:
/// those that a caller marks, and those in view whose own colour cannot be read.
///
/// Lifetime: its editor's. Thread: the user-interface thread.
class TextMarks {
public:
    using Marks = QList<QTextEdit::ExtraSelection>;

    explicit TextMarks(QTextEdit& editor) : m_editor(editor) {}

    /// Replaces the caller's.
    void set(const Marks& marks);
    /// To be called before the text is painted; `view` is what shows of it, in its coordinates.
    /// Another paint follows only where the colours that cannot be read have changed.
    void makeReadable(const QRect& view);
    /// Forgets all of them; call it before the text goes that they point into.
    void clear();

private:
    void show();

    QTextEdit& m_editor;
    Marks m_marks;
    Marks m_readable;
};

} // namespace yrw::richtext
