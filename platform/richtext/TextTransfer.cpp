#include "platform/richtext/TextTransfer.h"

#include "platform/component/AutomationError.h"
#include "platform/richtext/DetachedDocument.h"
#include "platform/richtext/DocumentLoader.h"
#include "platform/richtext/DocumentScanner.h"
#include "platform/richtext/EmbeddedObjects.h"
#include "platform/richtext/Formats.h"
#include "platform/richtext/LocalFiles.h"
#include "platform/richtext/Pictures.h"
#include "platform/richtext/SelectionFormat.h"
#include "platform/richtext/TableLimits.h"
#include "platform/richtext/TextMarks.h"
#include "platform/rtf/Reader.h"
#include "platform/rtf/ShallowHtml.h"
#include "platform/rtf/Writer.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextEdit>
#include <QTextTable>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace yrw::richtext {

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
           std::max(1.0, width / kShownWidth);
}

} // namespace

TextTransfer::TextTransfer(QTextEdit& editor, TextParts& parts, EmbeddedObjects& objects,
                           const SelectionFormat& selection, TextMarks& marks)
    : m_editor(editor), m_parts(parts), m_objects(objects), m_selection(selection), m_marks(marks) {
    m_takeFile = [this](const QString& path) {
        try {
            m_objects.insertFile(path, ObjectDisplay::Icon);
        } catch (const AutomationError& error) {
            refuse(error.description());
        }
    };
}

QMimeData* TextTransfer::copied() const {
    const QTextCursor cursor = m_editor.textCursor();
    const rtf::Document model =
        DocumentScanner(m_parts.header, m_parts.inlines, QTextCursor(), m_editor.logicalDpiX())
            .scan(*m_editor.document(), cursor.selectionStart(), cursor.selectionEnd());
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

bool TextTransfer::accepts(const QMimeData* content) {
    return content != nullptr && (content->hasText() || content->hasHtml() || content->hasImage() ||
                                  content->hasUrls() || !rtfTypeOf(*content).isEmpty());
}

void TextTransfer::paste(const QMimeData& source) {
    if (m_editor.isReadOnly()) {
        return;
    }
    const bool isOwn = source.hasFormat(kOwnType);
    if (!isOwn && areLocalFiles(source.urls())) {
        insertFiles(source.urls());
        return;
    }
    const QString rtf = isOwn ? kOwnType : rtfTypeOf(source);
    if (!rtf.isEmpty()) {
        const QByteArray bytes = source.data(rtf);
        if (mayInsert(bytes.size())) {
            insert(rtf::read(QByteArrayView(bytes)), isOwn || m_keepsLook);
        }
    } else if (source.hasImage() && source.text().trimmed().isEmpty()) {
        m_objects.insertPicture(source.imageData().value<QImage>());
    } else if (source.hasHtml()) {
        insertHtml(source.html());
    } else if (source.hasText()) {
        insertText(source.text());
    }
    m_editor.ensureCursorVisible();
}

QString TextTransfer::fontName() const {
    return m_selection.fontName().value_or(m_parts.font.name);
}

/// Tells the user, and gives false, where more was copied than a note can hold.
bool TextTransfer::mayInsert(qint64 bytes) {
    if (bytes <= m_objects.largestFile()) {
        return true;
    }
    refuse(QStringLiteral("What was copied has %1; at most %2 can be pasted.")
               .arg(sizeText(bytes), sizeText(m_objects.largestFile())));
    return false;
}

void TextTransfer::refuse(const QString& reason) {
    if (m_prompt != nullptr) {
        m_prompt->message(reason, QStringLiteral("Paste"), PromptIcon::Exclamation);
    }
}

void TextTransfer::insertHtml(const QString& html) {
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
    DocumentScanner scanner(header, none, QTextCursor(), 96);
    insert(scanner.scan(pasted), m_keepsLook);
}

/// Text in the formats of the insertion point.
void TextTransfer::insertText(const QString& text) {
    constexpr qsizetype kLargeText = 20000;
    if (text.size() <= kLargeText) {
        m_editor.insertPlainText(text);
    } else if (mayInsert(text.size())) {
        rtf::Document model = rtf::fromPlainText(text);
        const QTextCharFormat here = m_editor.textCursor().charFormat();
        model.fonts.front().name = fontName();
        for (rtf::CharFormat& format : model.charFormats) {
            const int font = format.font;
            format = fromScreen(here);
            format.font = font;
        }
        insert(std::move(model), true);
    }
}

void TextTransfer::insertRtf(const QString& rtf) {
    insert(rtf::isRtf(rtf) ? rtf::read(QStringView(rtf)) : rtf::fromPlainText(rtf), true);
}

void TextTransfer::insert(rtf::Document model, bool keepLook) {
    if (!keepLook) {
        takeLook(model, fromScreen(m_editor.textCursor().charFormat()), fontName());
    }
    flattenTables(model, tablesAround(m_editor.textCursor()));
    const double height = heightKept(m_editor.textCursor(), m_editor.viewport()->width());
    Insertion done = Insertion::Whole;
    if (!isLarge(model)) {
        QTextCursor cursor = m_editor.textCursor();
        done = insertAt(cursor, model, height, {});
        m_editor.setTextCursor(cursor);
    } else {
        {
            DetachedDocument detached(m_editor, &m_parts.renderer);
            m_marks.clear();
            done = insertAt(detached.cursor(), model, height,
                            m_watch && !m_isDropping ? m_watch() : WorkStep());
        }
        if (done == Insertion::Whole) {
            Q_EMIT inserted();
        }
    }
    if (done == Insertion::TooLarge) {
        refuse(QStringLiteral("The note would have more parts, or be higher, than can be shown; "
                              "nothing of what was copied was pasted."));
    }
}

TextTransfer::Insertion TextTransfer::insertAt(QTextCursor& cursor, const rtf::Document& model,
                                               double heightBefore, const WorkStep& goesOn) {
    QTextDocument& text = *cursor.document();
    const int steps = text.availableUndoSteps();
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    DocumentLoader loader(model, m_parts.inlines, m_editor.logicalDpiX(), goesOn);
    loader.setHeightBefore(heightBefore);
    const bool whole = loader.insert(cursor);
    cursor.endEditBlock();
    if (!whole && text.availableUndoSteps() > steps) {
        text.undo();
    }
    return whole ? Insertion::Whole : loader.isFull() ? Insertion::TooLarge : Insertion::Stopped;
}

void TextTransfer::insertFiles(const QList<QUrl>& urls) {
    // Whoever drags waits until the drop is done: nothing may be asked before.
    for (const QUrl& url : urls) {
        QMetaObject::invokeMethod(
            this, [this, path = url.toLocalFile()] { insertFile(path); }, Qt::QueuedConnection);
    }
}

void TextTransfer::insertFile(const QString& path) {
    QImage picture;
    try {
        picture = decodeImage(contentOfFile(path, m_objects.largestFile()), kMostStoredDots);
    } catch (const AutomationError&) {
        picture = {}; // the handler says why it cannot be taken
    }
    if (picture.isNull()) {
        m_takeFile(path);
    } else {
        m_objects.insertPicture(picture);
    }
}

void TextTransfer::pastePlain() {
    const QString text = QApplication::clipboard()->text();
    if (!text.isEmpty() && !m_editor.isReadOnly()) {
        insertText(text);
    }
}

} // namespace yrw::richtext
