#include "platform/richtext/RichTextBox.h"

#include "platform/component/AutomationError.h"
#include "platform/forms/FontSubstitutes.h"
#include "platform/richtext/DocumentLoader.h"
#include "platform/richtext/DocumentScanner.h"
#include "platform/richtext/Formats.h"
#include "platform/richtext/InlineRenderer.h"
#include "platform/richtext/SpellingUnderlines.h"
#include "platform/rtf/Reader.h"
#include "platform/rtf/Writer.h"

#include <QAbstractTextDocumentLayout>
#include <QDesktopServices>
#include <QSignalBlocker>
#include <QTextDocument>

#include <algorithm>
#include <utility>

namespace yrw {

using richtext::DocumentLoader;
using richtext::DocumentScanner;

RichTextBox::RichTextBox(QWidget* parent)
    : QTextEdit(parent),
      m_renderer(std::make_unique<richtext::InlineRenderer>(m_inlines, nullptr)) {
    installFontSubstitutes();
    m_default.name = QStringLiteral("Comic Sans MS");
    document()->documentLayout()->registerHandler(richtext::kInlineObject, m_renderer.get());
    connect(this, &QTextEdit::textChanged, this, &RichTextBox::contentChanged);
    connect(this, &QTextEdit::selectionChanged, this, &RichTextBox::selectionStateChanged);
    connect(this, &QTextEdit::cursorPositionChanged, this, &RichTextBox::selectionStateChanged);
    connect(this, &QTextEdit::currentCharFormatChanged, this, &RichTextBox::selectionStateChanged);
    connect(this, &QTextEdit::cursorPositionChanged, this, &RichTextBox::leaveLink);
    m_openUrl = [](const QUrl& url) { QDesktopServices::openUrl(url); };
    m_takeFile = [this](const QString& path) {
        try {
            insertFile(path, ObjectDisplay::Icon);
        } catch (const AutomationError& error) {
            Q_EMIT insertionFailed(error.description());
        }
    };
    setText(QString());
}

RichTextBox::~RichTextBox() = default;

void RichTextBox::load(const rtf::Document& source) {
    {
        const QSignalBlocker quiet(this);
        document()->setUndoRedoEnabled(false);
        m_inlines.clear();
        m_renderer->reset();
        m_header = source;
        m_header.text.clear();
        m_header.runs.clear();
        m_header.paragraphs.clear();
        m_header.rows.clear();
        m_header.charFormats.clear();
        m_header.parFormats.clear();
        m_header.inlines.clear();
        m_header.fields.clear();
        // An insertion point that the text pushes to its end, or a text that was not emptied in the
        // same step, would have all of it laid out at once; so it happens while it is looked at.
        setTextCursor(QTextCursor());
        QTextCursor cursor(document());
        cursor.beginEditBlock();
        document()->clear();
        DocumentLoader(source, m_inlines, logicalDpiX()).insert(cursor);
        cursor.endEditBlock();
        document()->setUndoRedoEnabled(true);
        document()->setModified(false);
        setTextCursor(QTextCursor(document()));
    }
    Q_EMIT contentChanged();
    Q_EMIT selectionStateChanged();
}

rtf::Document RichTextBox::scan() const {
    return DocumentScanner(m_header, m_inlines, textCursor(), logicalDpiX()).scan(*document());
}

QString RichTextBox::TextRTF() const {
    return QString::fromLatin1(rtf::write(scan()));
}

void RichTextBox::setTextRTF(const QString& rtf) {
    if (rtf::isRtf(rtf)) {
        load(rtf::read(QStringView(rtf)));
    } else {
        setText(rtf);
    }
}

QString RichTextBox::Text() const {
    const rtf::Document model = scan();
    const bool onlyObjects = std::all_of(model.text.begin(), model.text.end(),
                                         [](QChar c) { return c == QChar(rtf::kInlineMark); });
    return onlyObjects && model.paragraphs.size() == 1 ? QString() : model.plainText();
}

void RichTextBox::setText(const QString& text) {
    rtf::Document source = rtf::fromPlainText(text);
    // The formats of a plain text are the default ones.
    source.fonts.front().name = m_default.name;
    for (rtf::CharFormat& format : source.charFormats) {
        format = richtext::fromScreen(richtext::toScreen(m_default));
    }
    load(source);
}

bool RichTextBox::isEmpty() const {
    return document()->isEmpty();
}

bool RichTextBox::isIncomplete() const {
    return m_header.incomplete;
}

void RichTextBox::setDefaultFontChoice(const FontChoice& font) {
    m_default = font;
    if (isEmpty()) {
        applyDefaultToEmpty();
    }
}

FontChoice RichTextBox::defaultFontChoice() const {
    return m_default;
}

std::unique_ptr<QTextDocument> RichTextBox::printable() {
    std::unique_ptr<QTextDocument> copy(document()->clone());
    copy->setDocumentMargin(0);
    QAbstractTextDocumentLayout& layout = *copy->documentLayout();
    // Margins and indents are lengths of the screen, so the copy is laid out for the screen too.
    layout.setPaintDevice(this);
    copy->setUseDesignMetrics(true);
    layout.registerHandler(richtext::kInlineObject,
                           new richtext::InlineRenderer(m_inlines, copy.get()));
    return copy;
}

void RichTextBox::setSpellChecker(std::shared_ptr<SpellChecker> checker) {
    delete m_spelling;
    m_spelling = nullptr;
    if (checker) {
        // Made as a child of the document, which ends with the box.
        m_spelling = new richtext::SpellingUnderlines(*document(), std::move(checker));
    }
}

QTextCursor RichTextBox::misspellingAt(const QPoint& point) const {
    return m_spelling == nullptr ? QTextCursor()
                                 : m_spelling->unknownWord(cursorForPosition(point));
}

void RichTextBox::checkSpellingAgain() {
    if (m_spelling != nullptr) {
        m_spelling->rehighlight();
    }
}

void RichTextBox::applyDefaultToEmpty() {
    const QSignalBlocker quiet(this);
    const QTextCharFormat format = richtext::toScreen(m_default);
    if (document()->isUndoAvailable()) {
        setCurrentCharFormat(format); // what the user deleted can still be brought back
        return;
    }
    document()->setUndoRedoEnabled(false);
    QTextCursor cursor = textCursor();
    cursor.setBlockCharFormat(format);
    cursor.setCharFormat(format);
    setTextCursor(cursor);
    document()->setUndoRedoEnabled(true);
}

} // namespace yrw
