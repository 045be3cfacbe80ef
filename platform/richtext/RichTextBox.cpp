#include "platform/richtext/RichTextBox.h"

#include "platform/component/AutomationError.h"
#include "platform/forms/FontSubstitutes.h"
#include "platform/richtext/DocumentLoader.h"
#include "platform/richtext/DocumentScanner.h"
#include "platform/richtext/Formats.h"
#include "platform/richtext/InlineRenderer.h"
#include "platform/richtext/LayoutPace.h"
#include "platform/richtext/SpellingUnderlines.h"
#include "platform/richtext/TableLimits.h"
#include "platform/rtf/Reader.h"
#include "platform/rtf/Writer.h"

#include <QAbstractTextDocumentLayout>
#include <QDesktopServices>
#include <QPointer>
#include <QSignalBlocker>
#include <QTextDocument>

#include <algorithm>
#include <utility>

namespace yrw {

using richtext::DocumentLoader;
using richtext::DocumentScanner;

namespace {

/// Bytes that a text may take in the editor, and for each of its characters when that is more: long
/// notes are shown whole, short ones that unfold into something large are not.
constexpr qint64 kMostMemory = 120LL * 1024 * 1024;
constexpr qint64 kMemoryPerCharacter = 30;

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

RichTextBox::RichTextBox(QWidget* parent)
    : QTextEdit(parent), m_renderer(std::make_unique<richtext::InlineRenderer>(
                             m_inlines, richtext::InlineRenderer::Target::Screen, nullptr)) {
    installFontSubstitutes();
    m_default.name = QStringLiteral("Comic Sans MS");
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

/// Fills a document that nothing shows yet: it is laid out when it is looked at, and whatever
/// happens in `goesOn` finds the box as it was.
RichTextBox::Filling RichTextBox::fill(QTextDocument& fresh, const rtf::Document& source,
                                       std::vector<rtf::Inline>& inlines,
                                       const LoadStep& goesOn) const {
    fresh.setUndoRedoEnabled(false);
    QTextCursor cursor(&fresh);
    cursor.beginEditBlock();
    DocumentLoader loader(source, inlines, logicalDpiX(), goesOn);
    loader.setMostMemory(memoryFor(source));
    const bool whole = loader.insert(cursor);
    if (loader.isFull()) {
        QTextCursor(&fresh).insertText(kTooLarge + QChar(QChar::ParagraphSeparator),
                                       noticeFormat());
    }
    cursor.endEditBlock();
    fresh.setUndoRedoEnabled(true);
    fresh.setModified(false);
    return {whole, loader.isFull()};
}

qint64 RichTextBox::memoryFor(const rtf::Document& model) {
    return std::max(kMostMemory, kMemoryPerCharacter * model.text.size());
}

void RichTextBox::take(std::unique_ptr<QTextDocument> fresh) {
    fresh->documentLayout()->registerHandler(richtext::kInlineObject, m_renderer.get());
    new richtext::LayoutPace(*fresh); // its layout's
    m_marks.clear();                  // they point into the text that goes
    m_readable.clear();
    setExtraSelections({});
    const QPointer<QTextDocument> before(document());
    fresh->setParent(this);
    setDocument(fresh.release());
    if (m_spelling != nullptr) {
        m_spelling->setDocument(document());
    }
    delete before;
    setTextCursor(QTextCursor(document()));
}

bool RichTextBox::load(rtf::Document&& source, const LoadStep& goesOn) {
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
        const Filling filled = fill(*fresh, text, inlines, goesOn);
        shortening = filled.full ? kTooLarge : shortening;
        whole = filled.whole && shortening.isEmpty();
    }
    header.incomplete = header.incomplete || !whole;
    {
        const QSignalBlocker quiet(this);
        m_inlines.swap(inlines);
        m_renderer->reset();
        m_header = std::move(header);
        m_shortening = shortening;
        take(std::move(fresh));
    }
    Q_EMIT contentChanged();
    Q_EMIT selectionStateChanged();
    return whole;
}

rtf::Document RichTextBox::scan(const std::function<void(int percent)>& progress) const {
    DocumentScanner scanner(m_header, m_inlines, textCursor(), logicalDpiX());
    scanner.setProgress(progress);
    return scanner.scan(*document());
}

QString RichTextBox::TextRTF() const {
    return QString::fromLatin1(rtf::write(scan()));
}

bool RichTextBox::setTextRTF(const QString& rtf, const LoadStep& goesOn) {
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
    source.fonts.front().name = m_default.name;
    for (rtf::CharFormat& format : source.charFormats) {
        format = richtext::fromScreen(richtext::toScreen(m_default));
    }
    return source;
}

void RichTextBox::setText(const QString& text) {
    load(plainModel(text));
}

bool RichTextBox::isEmpty() const {
    return document()->isEmpty();
}

bool RichTextBox::isIncomplete() const {
    return m_header.incomplete;
}

QString RichTextBox::shortening() const {
    return m_shortening;
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
                           new richtext::InlineRenderer(
                               m_inlines, richtext::InlineRenderer::Target::Paper, copy.get()));
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
