#include "platform/richtext/RichTextBox.h"

#include "platform/forms/ContextMenuKey.h"
#include "platform/forms/FontSubstitutes.h"
#include "platform/richtext/DocumentLoader.h"
#include "platform/richtext/DocumentScanner.h"
#include "platform/richtext/Formats.h"
#include "platform/richtext/LayoutPace.h"
#include "platform/richtext/Links.h"
#include "platform/richtext/ListNumbers.h"
#include "platform/richtext/SpellingUnderlines.h"
#include "platform/richtext/TableLimits.h"
#include "platform/rtf/Reader.h"
#include "platform/rtf/Writer.h"

#include <QAbstractTextDocumentLayout>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <QScopeGuard>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTextBlock>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace yrw {

using richtext::DocumentLoader;
using richtext::InlineRenderer;
using richtext::TextTransfer;

namespace {

const QString kTooDeep = QStringLiteral(
    "This note has more tables inside tables than can be shown. They are shown as their text; the "
    "stored note keeps them and cannot be changed here.");
const QString kTooLarge = QStringLiteral("This note has more parts than can be shown. Only its "
                                         "beginning is shown; the stored note keeps "
                                         "all of it and cannot be changed here.");

QTextCharFormat noticeFormat() {
    QTextCharFormat format;
    format.setFontItalic(true);
    return format;
}

/// The plain text; empty where there is nothing but objects that show none.
QString plainOf(const rtf::Document& model) {
    const bool onlyObjects = std::all_of(model.text.begin(), model.text.end(),
                                         [](QChar c) { return c == QChar(rtf::kInlineMark); });
    const QString plain = model.plainText();
    return onlyObjects && model.paragraphs.size() == 1 ? plain.trimmed() : plain;
}

} // namespace

RichTextBox::RichTextBox(QWidget* parent) : QTextEdit(parent) {
    installFontSubstitutes();
    connect(this, &QTextEdit::textChanged, this, &RichTextBox::contentChanged);
    connect(this, &QTextEdit::selectionChanged, this, &RichTextBox::selectionStateChanged);
    connect(this, &QTextEdit::cursorPositionChanged, this, &RichTextBox::selectionStateChanged);
    connect(this, &QTextEdit::currentCharFormatChanged, this, &RichTextBox::selectionStateChanged);
    connect(this, &QTextEdit::cursorPositionChanged, this, [this] { richtext::leaveLink(*this); });
    connect(&m_transfer, &TextTransfer::inserted, this, &RichTextBox::contentChanged);
    connect(&m_transfer, &TextTransfer::inserted, this, &RichTextBox::selectionStateChanged);
    setText(QString());
}

RichTextBox::~RichTextBox() = default;

/// Fills a document that nothing shows yet: it is laid out when it is looked at, and whatever
/// happens in `goesOn` finds the box as it was. False when it was stopped or ended early, of which
/// `shortening` tells the reason then.
bool RichTextBox::fill(QTextDocument& fresh, const rtf::Document& source,
                       std::vector<rtf::Inline>& inlines, const WorkStep& goesOn,
                       QString& shortening) const {
    fresh.setUndoRedoEnabled(false);
    QTextCursor cursor(&fresh);
    cursor.beginEditBlock();
    DocumentLoader loader(source, inlines, logicalDpiX(), goesOn);
    const bool whole = loader.insert(cursor);
    if (loader.isFull()) {
        shortening = kTooLarge;
        QTextCursor(&fresh).insertText(kTooLarge + QChar(QChar::ParagraphSeparator),
                                       noticeFormat());
    }
    cursor.endEditBlock();
    fresh.setUndoRedoEnabled(true);
    fresh.setModified(false);
    return whole;
}

void RichTextBox::take(std::unique_ptr<QTextDocument> fresh) {
    fresh->documentLayout()->registerHandler(richtext::kInlineObject, &m_parts.renderer);
    new richtext::LayoutPace(*fresh); // its layout's
    m_marks.clear();
    const QPointer<QTextDocument> before(document());
    fresh->setParent(this);
    setDocument(fresh.release());
    if (m_spelling != nullptr) {
        m_spelling->setDocument(document());
    }
    delete before;
    setTextCursor(QTextCursor(document()));
}

bool RichTextBox::load(rtf::Document&& source, const WorkStep& goesOn) {
    QString shortening;
    if (richtext::flattenTables(source)) {
        shortening = kTooDeep;
        richtext::addNotice(source, shortening);
    }
    rtf::Document header;
    header.colours = source.colours;
    header.fonts = source.fonts;
    header.kept = source.kept;
    header.codePage = source.codePage;
    header.defaultFont = source.defaultFont;
    header.incomplete = source.incomplete;
    auto fresh = std::make_unique<QTextDocument>();
    fresh->setDefaultFont(document()->defaultFont());
    std::vector<rtf::Inline> inlines;
    bool whole = false;
    {
        const rtf::Document text = std::move(source); // gone before the old text is
        whole = fill(*fresh, text, inlines, goesOn, shortening) && shortening.isEmpty();
    }
    header.incomplete = header.incomplete || !whole;
    {
        const QSignalBlocker quiet(this);
        m_parts.inlines.swap(inlines);
        m_parts.renderer.reset();
        m_parts.header = std::move(header);
        m_shortening = shortening;
        take(std::move(fresh));
    }
    Q_EMIT contentChanged();
    Q_EMIT selectionStateChanged();
    return whole;
}

rtf::Document RichTextBox::scan(const std::function<void(int percent)>& progress) const {
    richtext::DocumentScanner scanner(m_parts.header, m_parts.inlines, textCursor(), logicalDpiX());
    scanner.setProgress(progress);
    return scanner.scan(*document());
}

QString RichTextBox::TextRTF() const {
    return QString::fromLatin1(rtf::write(scan()));
}

bool RichTextBox::setTextRTF(const QString& rtf, const WorkStep& goesOn) {
    if (rtf::isRtf(rtf)) {
        return load(rtf::read(QStringView(rtf)), goesOn);
    }
    return load(plainModel(rtf), goesOn);
}

QString RichTextBox::Text() const {
    return plainOf(scan());
}

RichTextBox::Texts RichTextBox::texts(const std::function<void(int percent)>& progress) const {
    const rtf::Document model = scan(progress);
    return {.rtf = QString::fromLatin1(rtf::write(model)), .plain = plainOf(model)};
}

rtf::Document RichTextBox::plainModel(const QString& text) const {
    rtf::Document source = rtf::fromPlainText(text);
    // The formats of a plain text are the default ones.
    source.fonts.front().name = m_parts.font.name;
    for (rtf::CharFormat& format : source.charFormats) {
        format = richtext::fromScreen(richtext::toScreen(m_parts.font));
    }
    return source;
}

void RichTextBox::setText(const QString& text) {
    load(plainModel(text));
}

void RichTextBox::setDefaultFontChoice(const FontChoice& font) {
    m_parts.font = font;
    if (isEmpty()) {
        applyDefaultToEmpty();
    }
}

std::unique_ptr<QTextDocument> RichTextBox::printable() {
    std::unique_ptr<QTextDocument> copy(document()->clone());
    copy->setDocumentMargin(0);
    QAbstractTextDocumentLayout& layout = *copy->documentLayout();
    // Margins and indents are lengths of the screen, so the copy is laid out for the screen too.
    layout.setPaintDevice(this);
    copy->setUseDesignMetrics(true);
    layout.registerHandler(
        richtext::kInlineObject,
        new InlineRenderer(m_parts.inlines, InlineRenderer::Target::Paper, copy.get()));
    return copy;
}

void RichTextBox::setSpellChecker(std::shared_ptr<SpellChecker> checker) {
    delete m_spelling;
    m_spelling = nullptr;
    if (checker) {
        m_spelling = new richtext::SpellingUnderlines(*document(), std::move(checker));
        m_spelling->setParent(this); // the document is another one with each text
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

void RichTextBox::setPrompt(Prompt* prompt) {
    m_prompt = prompt;
    m_transfer.setPrompt(prompt);
}

void RichTextBox::applyDefaultToEmpty() {
    const QSignalBlocker quiet(this);
    const QTextCharFormat format = richtext::toScreen(m_parts.font);
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

bool RichTextBox::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Paint) {
        const QPoint scrolled(horizontalScrollBar()->value(), verticalScrollBar()->value());
        const QRect view = viewport()->rect().translated(scrolled);
        m_marks.makeReadable(view);
        m_parts.renderer.setView(view);
        const bool painted = QTextEdit::viewportEvent(event);
        QPainter painter(viewport());
        painter.translate(-scrolled);
        const QRect shown = static_cast<QPaintEvent*>(event)->rect().translated(scrolled);
        richtext::paintListNumbers(painter, *document(), shown, palette());
        return painted;
    }
    if (event->type() == QEvent::ToolTip) {
        showToolTip(*static_cast<QHelpEvent*>(event));
        return true;
    }
    return QTextEdit::viewportEvent(event);
}

void RichTextBox::showToolTip(const QHelpEvent& event) {
    const QString target = anchorAt(event.pos());
    const int object = m_objects.at(event.pos());
    QString text;
    if (object >= 0) {
        text = m_objects.name(object).toHtmlEscaped() +
               QStringLiteral("<br>Double-click to open, drag to copy");
    } else if (!target.isEmpty()) {
        text = target.toHtmlEscaped() + QStringLiteral("<br>Ctrl+click to open");
    }
    QToolTip::showText(event.globalPos(), text, viewport()); // an empty text hides it
}

void RichTextBox::keyPressEvent(QKeyEvent* event) {
    if (askedForMenu(*this, *event)) {
        return;
    }
    if (event->key() == Qt::Key_V &&
        event->modifiers() == (Qt::ControlModifier | Qt::ShiftModifier)) {
        m_transfer.pastePlain();
        event->accept();
        return;
    }
    if (leavesList(*event)) {
        m_selection.setBullet(false);
        event->accept();
        return;
    }
    QTextEdit::keyPressEvent(event);
}

/// Enter in an empty item and Backspace before an item's text end the list there.
bool RichTextBox::leavesList(const QKeyEvent& event) const {
    const QTextCursor cursor = textCursor();
    if (isReadOnly() || cursor.currentList() == nullptr || cursor.hasSelection()) {
        return false;
    }
    const bool enter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    return (enter && event.modifiers() == Qt::NoModifier && cursor.block().length() == 1) ||
           (event.key() == Qt::Key_Backspace && cursor.atBlockStart());
}

void RichTextBox::mousePressEvent(QMouseEvent* event) {
    if (!m_mouse.press(*event)) {
        QTextEdit::mousePressEvent(event);
    }
}

void RichTextBox::mouseMoveEvent(QMouseEvent* event) {
    if (!m_mouse.move(*event)) {
        QTextEdit::mouseMoveEvent(event);
    }
}

void RichTextBox::mouseReleaseEvent(QMouseEvent* event) {
    if (m_mouse.release()) {
        return;
    }
    QTextEdit::mouseReleaseEvent(event);
    const bool wanted =
        event->button() == Qt::LeftButton && event->modifiers() == Qt::ControlModifier;
    const QString target = wanted ? anchorAt(event->position().toPoint()) : QString();
    if (!target.isEmpty() && !textCursor().hasSelection()) {
        richtext::openLink(target, m_prompt);
    }
}

void RichTextBox::mouseDoubleClickEvent(QMouseEvent* event) {
    const int index = m_objects.at(event->position().toPoint());
    if (index < 0) {
        QTextEdit::mouseDoubleClickEvent(event);
        return;
    }
    m_mouse.release();
    Q_EMIT objectActivated(index);
}

QMimeData* RichTextBox::createMimeDataFromSelection() const {
    return m_transfer.copied();
}

bool RichTextBox::canInsertFromMimeData(const QMimeData* source) const {
    return TextTransfer::accepts(source);
}

void RichTextBox::insertFromMimeData(const QMimeData* source) {
    m_transfer.paste(*source);
}

void RichTextBox::dropEvent(QDropEvent* event) {
    m_transfer.setDropping(true);
    const auto over = qScopeGuard([this] { m_transfer.setDropping(false); });
    QTextEdit::dropEvent(event);
}

} // namespace yrw
