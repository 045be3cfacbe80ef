#include "notes_window/TextTools.h"

#include "notes_window/EachTool.h"
#include "platform/richtext/RichTextBox.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTextCursor>
#include <QTextDocument>

namespace yrw {

TextTools::TextTools(const RichTextBox& text, Toolbar& toolbar, QObject* parent)
    : QObject(parent), m_text(text), m_toolbar(toolbar) {
    connect(&text, &RichTextBox::contentChanged, this, &TextTools::update);
    connect(&text, &RichTextBox::selectionStateChanged, this, &TextTools::update);
    connect(&text, &RichTextBox::undoAvailable, this, &TextTools::update);
    connect(&text, &RichTextBox::redoAvailable, this, &TextTools::update);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        m_clipboardChanged = true;
        update();
    });
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, &TextTools::update);
}

void TextTools::lookAtClipboard() {
    if (m_clipboardChanged && QGuiApplication::applicationState() == Qt::ApplicationActive) {
        m_clipboardChanged = false;
        m_hasContent = richtext::TextTransfer::accepts(QGuiApplication::clipboard()->mimeData());
    }
}

void TextTools::update() {
    lookAtClipboard();
    constexpr int undo = 40000;
    constexpr int redo = 40001;
    constexpr int copy = 40010;
    constexpr int paste = 40011;
    constexpr int clear = 40012;
    const bool shown = m_text.isEnabled();
    const bool changeable = shown && !m_text.isReadOnly();
    const bool selected = m_text.textCursor().hasSelection();
    const QTextDocument& document = *m_text.document();
    const auto light = [this](int id, bool lit) {
        forEachTool(m_toolbar, id, [lit](ITool& tool) { tool.setEnabled(lit); });
    };
    light(undo, changeable && document.isUndoAvailable());
    light(redo, changeable && document.isRedoAvailable());
    light(copy, shown && selected);
    light(paste, changeable && m_hasContent);
    light(clear, changeable && selected);
}

} // namespace yrw
