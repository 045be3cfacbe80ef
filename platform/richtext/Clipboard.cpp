#include "platform/component/AutomationError.h"
#include "platform/richtext/DetachedDocument.h"
#include "platform/richtext/DocumentLoader.h"
#include "platform/richtext/DocumentScanner.h"
#include "platform/richtext/Formats.h"
#include "platform/richtext/InlineRenderer.h"
#include "platform/richtext/LocalFile.h"
#include "platform/richtext/Pictures.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/richtext/TableLimits.h"

#include "platform/rtf/Reader.h"
#include "platform/rtf/ShallowHtml.h"
#include "platform/rtf/Writer.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextTable>

#include <algorithm>
#include <utility>

// What is copied, pasted and dropped.

namespace yrw {

namespace {

/// The same bytes as the public types; tells text of a rich-text box from foreign text.
const QString kOwnType = QStringLiteral("application/x-yarrowen-rtf");
const QStringList kRtfTypes = {QStringLiteral("text/rtf"), QStringLiteral("application/rtf"),
                               QStringLiteral("text/richtext")};

/// Shows foreign HTML without fetching anything that it names.
class PastedHtml : public QTextDocument {
protected:
    QVariant loadResource(int type, const QUrl& name) override {
        return name.scheme() == QLatin1String("data") ? QTextDocument::loadResource(type, name)
                                                      : QVariant();
    }
};

/// The type under which a clipboard has RTF; empty where it has none.
QString rtfTypeOf(const QMimeData& source) {
    const auto found =
        std::find_if(kRtfTypes.begin(), kRtfTypes.end(),
                     [&source](const QString& type) { return source.hasFormat(type); });
    return found == kRtfTypes.end() ? QString() : *found;
}

/// More than this is put in while the text is not laid out.
bool isLarge(const rtf::Document& model) {
    constexpr qsizetype kLargeText = 50000;
    constexpr std::size_t kLargeCount = 1000;
    return model.text.size() > kLargeText || model.paragraphs.size() > kLargeCount ||
           model.runs.size() > 2 * kLargeCount;
}

bool areLocalFiles(const QList<QUrl>& urls) {
    return !urls.isEmpty() &&
           std::all_of(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); });
}

/// Gives foreign text the font, size and colours around it; what it stresses stays.
void takeLook(rtf::Document& model, const rtf::CharFormat& look, const QString& font) {
    for (rtf::CharFormat& format : model.charFormats) {
        format.halfPoints = look.halfPoints;
        format.colour = look.colour;
        format.background = look.background;
    }
    for (rtf::Font& each : model.fonts) {
        // Symbols are characters of their own font.
        constexpr int kSymbolCharset = 2;
        if (each.charset != kSymbolCharset) {
            each.name = font;
        }
    }
    for (rtf::ParFormat& format : model.parFormats) {
        format.before = format.after = format.lineSpacing = 0;
        format.lineMultiple = false;
        format.style = 0;
    }
}

int tablesAround(const QTextCursor& cursor) {
    int count = 0;
    for (const QTextFrame* frame = cursor.currentFrame(); frame != nullptr;
         frame = frame->parentFrame()) {
        count += qobject_cast<const QTextTable*>(frame) != nullptr ? 1 : 0;
    }
    return count;
}

/// Dots that a text is high without what is selected in it, were it as narrow as it can be shown.
/// As far as it is laid out, so that nobody waits for that.
double heightKept(const QTextCursor& cursor, int width) {
    const QTextDocument& text = *cursor.document();
    const double selected = cursor.selectionEnd() - cursor.selectionStart();
    const double kept = 1 - selected / std::max(1, text.characterCount() - 1);
    return text.documentLayout()->documentSize().height() * kept *
           std::max(1.0, width / richtext::kShownWidth);
}

} // namespace

void RichTextBox::setPasteKeepsLook(bool keep) {
    m_pasteKeepsLook = keep;
}

QMimeData* RichTextBox::createMimeDataFromSelection() const {
    const QTextCursor cursor = textCursor();
    const rtf::Document model =
        richtext::DocumentScanner(m_header, m_inlines, QTextCursor(), logicalDpiX())
            .scan(*document(), cursor.selectionStart(), cursor.selectionEnd());
    auto* const mime = new QMimeData; // owned by the clipboard or the drag that asks for it
    const QByteArray rtf = rtf::write(model);
    mime->setData(kOwnType, rtf);
    for (const QString& type : kRtfTypes) {
        mime->setData(type, rtf);
    }
    mime->setHtml(cursor.selection().toHtml());
    QString plain = model.plainText();
    plain.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    mime->setText(plain);
    return mime;
}

bool RichTextBox::canInsertFromMimeData(const QMimeData* source) const {
    return source->hasText() || source->hasHtml() || source->hasImage() || source->hasUrls() ||
           !rtfTypeOf(*source).isEmpty();
}

void RichTextBox::insertFromMimeData(const QMimeData* source) {
    if (isReadOnly()) {
        return;
    }
    const bool isOwn = source->hasFormat(kOwnType);
    if (!isOwn && areLocalFiles(source->urls())) {
        insertFiles(source->urls());
        return;
    }
    const QString rtf = isOwn ? kOwnType : rtfTypeOf(*source);
    if (!rtf.isEmpty()) {
        const QByteArray bytes = source->data(rtf);
        if (mayInsert(bytes.size())) {
            insertModel(rtf::read(QByteArrayView(bytes)), isOwn || m_pasteKeepsLook);
        }
    } else if (source->hasImage() && source->text().trimmed().isEmpty()) {
        insertPicture(source->imageData().value<QImage>());
    } else if (source->hasHtml()) {
        insertForeignHtml(source->html());
    } else if (source->hasText()) {
        insertText(source->text());
    }
    ensureCursorVisible();
}

/// Tells the user, and gives false, where more was copied than a note can hold.
bool RichTextBox::mayInsert(qint64 bytes) {
    if (bytes <= m_largestFile) {
        return true;
    }
    tellNotInserted(QStringLiteral("What was copied has %1; at most %2 can be pasted.")
                        .arg(richtext::sizeText(bytes), richtext::sizeText(m_largestFile)));
    return false;
}

void RichTextBox::tellNotInserted(const QString& reason) {
    if (m_prompt != nullptr) {
        m_prompt->message(reason, QStringLiteral("Paste"), PromptIcon::Exclamation);
    }
    Q_EMIT insertionFailed(reason);
}

void RichTextBox::insertForeignHtml(const QString& html) {
    if (!mayInsert(html.size())) {
        return;
    }
    constexpr qsizetype kMostText = 4000000; // the toolkit's reader cannot be stopped
    const QString text = rtf::textOfHtml(html);
    if (text.size() > kMostText) {
        insertText(text);
        return;
    }
    PastedHtml pasted;
    pasted.setHtml(rtf::shallowHtml(html));
    const std::vector<rtf::Inline> none;
    rtf::Document header;
    header.colours.push_back(rtf::kAutomatic);
    richtext::DocumentScanner scanner(header, none, QTextCursor(), 96);
    insertModel(scanner.scan(pasted), m_pasteKeepsLook);
}

/// Text in the formats of the insertion point.
void RichTextBox::insertText(const QString& text) {
    constexpr qsizetype kLargeText = 20000;
    if (text.size() <= kLargeText) {
        insertPlainText(text);
    } else if (mayInsert(text.size())) {
        rtf::Document model = rtf::fromPlainText(text);
        const QTextCharFormat here = textCursor().charFormat();
        model.fonts.front().name = SelFontName().value_or(m_default.name);
        for (rtf::CharFormat& format : model.charFormats) {
            const int font = format.font;
            format = richtext::fromScreen(here);
            format.font = font;
        }
        insertModel(std::move(model), true);
    }
}

void RichTextBox::setSelRTF(const QString& rtf) {
    insertModel(rtf::isRtf(rtf) ? rtf::read(QStringView(rtf)) : rtf::fromPlainText(rtf), true);
}

void RichTextBox::insertModel(rtf::Document model, bool keepLook) {
    if (!keepLook) {
        takeLook(model, richtext::fromScreen(textCursor().charFormat()),
                 SelFontName().value_or(m_default.name));
    }
    richtext::flattenTables(model, tablesAround(textCursor()));
    const double height = heightKept(textCursor(), viewport()->width());
    if (!isLarge(model)) {
        QTextCursor cursor = textCursor();
        const Insertion done = insertAt(cursor, model, height, {});
        setTextCursor(cursor);
        tellWhatIsMissing(done);
        return;
    }
    Insertion done = Insertion::Whole;
    {
        richtext::DetachedDocument detached(*this, m_renderer.get());
        m_marks.clear();
        m_readable.clear();
        done = insertAt(detached.cursor(), model, height,
                        m_watchPaste && !m_isDropping ? m_watchPaste() : LoadStep());
    }
    if (done == Insertion::Whole) {
        Q_EMIT contentChanged();
        Q_EMIT selectionStateChanged();
    }
    tellWhatIsMissing(done);
}

void RichTextBox::tellWhatIsMissing(Insertion done) {
    if (done == Insertion::TooLarge) {
        tellNotInserted(
            QStringLiteral("The note would have more parts, or be higher, than can be shown; "
                           "nothing of what was copied was pasted."));
    }
}

RichTextBox::Insertion RichTextBox::insertAt(QTextCursor& cursor, const rtf::Document& model,
                                             double heightBefore, const LoadStep& goesOn) {
    QTextDocument& text = *cursor.document();
    const int steps = text.availableUndoSteps();
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    richtext::DocumentLoader loader(model, m_inlines, logicalDpiX(), goesOn);
    loader.setMostMemory(memoryFor(model));
    loader.setHeightBefore(heightBefore);
    const bool whole = loader.insert(cursor);
    cursor.endEditBlock();
    if (!whole && text.availableUndoSteps() > steps) {
        text.undo();
    }
    return whole ? Insertion::Whole : loader.isFull() ? Insertion::TooLarge : Insertion::Stopped;
}

/// The program that the drop comes from waits until it is over: no events are handled meanwhile.
void RichTextBox::dropEvent(QDropEvent* event) {
    const QScopedValueRollback<bool> dropping(m_isDropping, true);
    QTextEdit::dropEvent(event);
}

void RichTextBox::setPasteWatch(std::function<LoadStep()> watch) {
    m_watchPaste = std::move(watch);
}

void RichTextBox::insertFiles(const QList<QUrl>& urls) {
    // Whoever drags waits until the drop is done: nothing may be asked before.
    for (const QUrl& url : urls) {
        QMetaObject::invokeMethod(
            this, [this, path = url.toLocalFile()] { insertDroppedFile(path); },
            Qt::QueuedConnection);
    }
}

void RichTextBox::insertDroppedFile(const QString& path) {
    QImage picture;
    try {
        picture = richtext::decodeImage(richtext::contentOfFile(path, m_largestFile),
                                        richtext::kMostStoredDots);
    } catch (const AutomationError&) {
        picture = {}; // the handler says why it cannot be taken
    }
    if (picture.isNull()) {
        m_takeFile(path);
    } else {
        insertPicture(picture);
    }
}

void RichTextBox::pastePlain() {
    const QString text = QApplication::clipboard()->text();
    if (!text.isEmpty() && !isReadOnly()) {
        insertText(text);
    }
}

} // namespace yrw
