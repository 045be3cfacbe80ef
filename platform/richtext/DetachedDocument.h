#pragma once

#include <QPoint>
#include <QSignalBlocker>
#include <QTextCursor>

#include <memory>

class QObject;
class QTextDocument;
class QTextEdit;

namespace yrw::richtext {

/// Takes the text out of an editor for a long change. Inside, nothing is laid out; the change is an
/// undo step like any other, and the editor shows a copy of the text as it was before, which
/// nobody can change. At its end the editor has the text again and lays out what is looked at.
///
/// `renderer` draws the text's pictures. Editor and renderer outlive it; the editor raises no
/// signals meanwhile. Thread: the user-interface thread.
class DetachedDocument {
public:
    DetachedDocument(QTextEdit& editor, QObject* renderer);
    ~DetachedDocument();
    DetachedDocument(const DetachedDocument&) = delete;
    DetachedDocument& operator=(const DetachedDocument&) = delete;

    /// Where the insertion point was, and where the editor is to have it afterwards.
    [[nodiscard]] QTextCursor& cursor() { return m_cursor; }

private:
    void show(QTextDocument* document);

    QTextEdit& m_editor;
    QObject* m_renderer;
    QSignalBlocker m_quiet;
    QTextCursor m_cursor;
    QTextDocument* m_document;
    std::unique_ptr<QTextDocument> m_standIn;
    QPoint m_scrolled;
    bool m_readOnly;
};

} // namespace yrw::richtext
