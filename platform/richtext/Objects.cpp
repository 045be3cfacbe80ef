#include "platform/richtext/Formats.h"
#include "platform/richtext/LocalFile.h"
#include "platform/richtext/Pictures.h"
#include "platform/richtext/PrivateCopies.h"
#include "platform/richtext/RichTextBox.h"

#include "platform/rtf/EmbeddedObject.h"
#include "platform/rtf/FileName.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QFileInfo>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>

#include <utility>

// Pictures and embedded objects.

namespace yrw {

namespace {

/// The name that data of a known class gets as a file.
QString nameOfClass(const QByteArray& className, const QByteArray& native) {
    if (native.startsWith("BM")) {
        return QStringLiteral("picture.bmp");
    }
    if (className.startsWith("Word")) {
        return QStringLiteral("document.doc");
    }
    if (className.startsWith("Excel")) {
        return QStringLiteral("sheet.xls");
    }
    return QStringLiteral("object.bin");
}

} // namespace

std::vector<int> RichTextBox::objectPositions() const {
    std::vector<int> positions;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const QTextCharFormat format = fragment.charFormat();
            const auto id = static_cast<std::size_t>(format.intProperty(richtext::kInlineId));
            if (format.objectType() != richtext::kInlineObject || id >= m_inlines.size() ||
                m_inlines[id].kind != rtf::InlineKind::Object) {
                continue;
            }
            const QString text = fragment.text();
            for (qsizetype i = text.indexOf(QChar(rtf::kInlineMark)); i >= 0;
                 i = text.indexOf(QChar(rtf::kInlineMark), i + 1)) {
                positions.push_back(fragment.position() + static_cast<int>(i));
            }
        }
    }
    return positions;
}

const rtf::Inline* RichTextBox::objectGroup(int index) const {
    const std::vector<int> positions = objectPositions();
    if (index < 0 || index >= static_cast<int>(positions.size())) {
        return nullptr;
    }
    QTextCursor cursor(document());
    cursor.setPosition(positions[static_cast<std::size_t>(index)] + 1);
    return &m_inlines[static_cast<std::size_t>(
        cursor.charFormat().intProperty(richtext::kInlineId))];
}

int RichTextBox::objectCount() const {
    return static_cast<int>(objectPositions().size());
}

QString RichTextBox::objectName(int index) const {
    const rtf::Inline* const object = objectGroup(index);
    if (object == nullptr) {
        return {};
    }
    const rtf::ObjectGroup group = rtf::objectOf(object->raw);
    return richtext::objectCaption(group, rtf::readObject(group.data));
}

std::optional<rtf::PackagedFile> RichTextBox::objectFile(int index) const {
    const rtf::Inline* const group = objectGroup(index);
    const auto object =
        group == nullptr ? std::nullopt : rtf::readObject(rtf::objectOf(group->raw).data);
    if (!object || object->linked) {
        return std::nullopt;
    }
    if (object->className == rtf::kPackageClass) {
        return rtf::readPackage(object->native);
    }
    return rtf::PackagedFile{nameOfClass(object->className, object->native), {}, object->native};
}

QString RichTextBox::objectLink(int index) const {
    const rtf::Inline* const group = objectGroup(index);
    const auto object =
        group == nullptr ? std::nullopt : rtf::readObject(rtf::objectOf(group->raw).data);
    return object ? rtf::linkOf(*object) : QString();
}

std::optional<rtf::PackagedFile> RichTextBox::objectPicture(int index) const {
    const rtf::Inline* const group = objectGroup(index);
    if (group == nullptr) {
        return std::nullopt;
    }
    const QString name = QFileInfo(objectName(index)).completeBaseName();
    const auto named = [&name](const QString& suffix) {
        return rtf::baseName(name + u'.' + suffix);
    };
    for (const richtext::StoredPicture& picture : richtext::picturesIn(*group)) {
        if (picture.isObject) {
            continue; // it is the object's file
        }
        // Of a drawing, the bitmap that it paints is more use than what only few programs show.
        const QImage image = richtext::decode(picture, richtext::kMostStoredDots);
        const QString suffix = richtext::suffixOf(picture);
        const bool drawing =
            picture.kind == rtf::PictureKind::Emf || picture.kind == rtf::PictureKind::Wmf;
        if (!suffix.isEmpty() && drawing == image.isNull()) {
            return rtf::PackagedFile{named(suffix), {}, picture.data};
        }
        if (!image.isNull()) {
            QBuffer png;
            png.open(QIODevice::WriteOnly);
            image.save(&png, "PNG");
            return rtf::PackagedFile{named(QStringLiteral("png")), {}, png.data()};
        }
    }
    return std::nullopt;
}

QString RichTextBox::objectCopy(int index) const {
    const auto file = objectFile(index);
    return file ? richtext::writePrivateCopy(rtf::baseName(file->label), file->data) : QString();
}

int RichTextBox::currentObject() const {
    const QTextCursor cursor = textCursor();
    if (cursor.selectionEnd() - cursor.selectionStart() > 1) {
        return -1;
    }
    const std::vector<int> positions = objectPositions();
    const auto found = std::find(positions.begin(), positions.end(), cursor.selectionStart());
    return found == positions.end() ? -1 : static_cast<int>(found - positions.begin());
}

void RichTextBox::selectObject(int index) {
    QTextCursor cursor(document());
    cursor.setPosition(objectPositions()[static_cast<std::size_t>(index)]);
    cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

void RichTextBox::setFileHandler(FileHandler handler) {
    m_takeFile = std::move(handler);
}

int RichTextBox::objectAt(const QPoint& point) const {
    const QPointF at(point.x() + horizontalScrollBar()->value(),
                     point.y() + verticalScrollBar()->value());
    const int hit = document()->documentLayout()->hitTest(at, Qt::ExactHit);
    if (hit < 0) {
        return -1;
    }
    QTextCursor cursor(document());
    cursor.setPosition(hit);
    const int position = cursorRect(cursor).left() <= point.x() ? hit : hit - 1;
    if (document()->characterAt(position) != QChar(rtf::kInlineMark)) {
        return -1;
    }
    const std::vector<int> positions = objectPositions();
    const auto found = std::find(positions.begin(), positions.end(), position);
    return found == positions.end() ? -1 : static_cast<int>(found - positions.begin());
}

void RichTextBox::setLargestFile(qint64 bytes) {
    m_largestFile = bytes;
}

qint64 RichTextBox::largestFile() const {
    return m_largestFile;
}

void RichTextBox::insertFile(const QString& path, ObjectDisplay display) {
    const QByteArray content = richtext::contentOfFile(path, m_largestFile);
    const QFileInfo info(path);
    QImage preview;
    if (display == ObjectDisplay::Content) {
        preview = richtext::contentPreview(path, content);
    }
    if (preview.isNull()) {
        preview = richtext::iconPreview(path);
    }
    const QByteArray result = richtext::pictureGroup(preview);
    const rtf::Picture size = rtf::pictureOf(result);
    const QByteArray native =
        rtf::writePackage({rtf::baseName(info.fileName()), info.absoluteFilePath(), content});
    insertInline(rtf::InlineKind::Object,
                 rtf::objectGroup(
                     {.className = rtf::kPackageClass,
                      .width = size.width,
                      .height = size.height,
                      .data = rtf::writeObject({.className = rtf::kPackageClass, .native = native}),
                      .result = result}));
}

void RichTextBox::insertPicture(const QImage& picture) {
    if (!picture.isNull()) {
        insertInline(rtf::InlineKind::Picture, richtext::pictureGroup(picture));
    }
}

void RichTextBox::insertInline(rtf::InlineKind kind, const QByteArray& raw) {
    QTextCursor cursor = textCursor();
    const QTextCharFormat around = cursor.charFormat();
    QTextCharFormat format = around;
    m_inlines.push_back(rtf::Inline{kind, raw});
    format.setObjectType(richtext::kInlineObject);
    format.setProperty(richtext::kInlineId, static_cast<int>(m_inlines.size()) - 1);
    cursor.beginEditBlock();
    cursor.insertText(QString(QChar(rtf::kInlineMark)), format);
    cursor.endEditBlock();
    setTextCursor(cursor);
    setCurrentCharFormat(around);
}

} // namespace yrw
