#include "platform/richtext/DetachedDocument.h"

#include "platform/richtext/Formats.h"

#include <QAbstractTextDocumentLayout>
#include <QScrollBar>
#include <QTextDocument>
#include <QTextEdit>

namespace yrw::richtext {

DetachedDocument::DetachedDocument(QTextEdit& editor, QObject* renderer)
    : m_editor(editor), m_renderer(renderer), m_quiet(&editor), m_cursor(editor.textCursor()),
      m_document(editor.document()), m_standIn(m_document->clone()),
      m_scrolled(editor.horizontalScrollBar()->value(), editor.verticalScrollBar()->value()),
      m_readOnly(editor.isReadOnly()) {
    editor.setExtraSelections({}); // they point into the text that goes
    m_standIn->setUndoRedoEnabled(false);
    show(m_standIn.get());
    QTextCursor same(m_standIn.get());
    same.setPosition(m_cursor.anchor());
    same.setPosition(m_cursor.position(), QTextCursor::KeepAnchor);
    editor.setTextCursor(same);
    editor.horizontalScrollBar()->setValue(m_scrolled.x());
    editor.verticalScrollBar()->setValue(m_scrolled.y());
    editor.setReadOnly(true);
    m_document->setDocumentLayout(nullptr);
}

DetachedDocument::~DetachedDocument() {
    m_editor.setReadOnly(m_readOnly);
    show(m_document);
    m_editor.setTextCursor(m_cursor);
    m_editor.verticalScrollBar()->setValue(m_scrolled.y());
}

void DetachedDocument::show(QTextDocument* document) {
    document->documentLayout()->registerHandler(kInlineObject, m_renderer);
    m_editor.setDocument(document);
}

} // namespace yrw::richtext
