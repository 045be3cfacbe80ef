#include "platform/richtext/DocumentLoader.h"
#include "platform/richtext/DocumentScanner.h"
#include "platform/richtext/Formats.h"
#include "platform/richtext/Pictures.h"
#include "platform/richtext/RichTextBox.h"

#include "platform/rtf/Reader.h"
#include "platform/rtf/Writer.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QMimeData>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextTable>

#include <algorithm>

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

QByteArray rtfOf(const QMimeData& source) {
    for (const QString& type : kRtfTypes) {
        if (source.hasFormat(type)) {
            return source.data(type);
        }
    }
    return {};
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

int tablesDeep(const rtf::Document& model) {
    int deepest = 0;
    for (const rtf::Paragraph& paragraph : model.paragraphs) {
        deepest = std::max(deepest, model.depthOf(paragraph.row));
    }
    return deepest;
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
           !rtfOf(*source).isEmpty();
}

void RichTextBox::insertFromMimeData(const QMimeData* source) {
    if (isReadOnly()) {
        return;
    }
    if (source->hasFormat(kOwnType)) {
        insertModel(rtf::read(QByteArrayView(source->data(kOwnType))), true);
        return;
    }
    if (areLocalFiles(source->urls())) {
        insertFiles(source->urls());
        return;
    }
    const QByteArray rtf = rtfOf(*source);
    if (!rtf.isEmpty()) {
        insertModel(rtf::read(QByteArrayView(rtf)), m_pasteKeepsLook);
    } else if (source->hasImage() && source->text().trimmed().isEmpty()) {
        insertPicture(source->imageData().value<QImage>());
    } else if (source->hasHtml()) {
        insertForeignHtml(source->html());
    } else if (source->hasText()) {
        insertPlainText(source->text());
    }
    ensureCursorVisible();
}

void RichTextBox::insertForeignHtml(const QString& html) {
    PastedHtml pasted;
    pasted.setHtml(html);
    const std::vector<rtf::Inline> none;
    rtf::Document header;
    header.colours.push_back(rtf::kAutomatic);
    richtext::DocumentScanner scanner(header, none, QTextCursor(), 96);
    insertModel(scanner.scan(pasted), m_pasteKeepsLook);
}

void RichTextBox::setSelRTF(const QString& rtf) {
    insertModel(rtf::isRtf(rtf) ? rtf::read(QStringView(rtf)) : rtf::fromPlainText(rtf), true);
}

void RichTextBox::insertModel(rtf::Document model, bool keepLook) {
    QTextCursor cursor = textCursor();
    if (!keepLook) {
        takeLook(model, richtext::fromScreen(cursor.charFormat()),
                 SelFontName().value_or(m_default.name));
    }
    if (tablesAround(cursor) + tablesDeep(model) > rtf::kMostNested) {
        // Tables that would lie too deep are shown as their text.
        for (rtf::Paragraph& paragraph : model.paragraphs) {
            paragraph.row = -1;
        }
    }
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    richtext::DocumentLoader(model, m_inlines, logicalDpiX()).insert(cursor);
    cursor.endEditBlock();
    setTextCursor(cursor);
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
    QFile file(path);
    const bool small = file.size() <= m_largestFile && file.open(QIODevice::ReadOnly);
    const QImage picture = small ? richtext::decodeImage(file.readAll()) : QImage();
    if (picture.isNull()) {
        m_takeFile(path);
    } else {
        insertPicture(picture);
    }
}

void RichTextBox::pastePlain() {
    const QString text = QApplication::clipboard()->text();
    if (!text.isEmpty() && !isReadOnly()) {
        insertPlainText(text);
    }
}

} // namespace yrw
