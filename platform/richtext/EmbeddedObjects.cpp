#include "platform/richtext/EmbeddedObjects.h"

#include "platform/richtext/Formats.h"
#include "platform/richtext/LocalFiles.h"
#include "platform/richtext/Pictures.h"
#include "platform/rtf/FileName.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QFileInfo>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>

#include <algorithm>

namespace yrw::richtext {

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

std::vector<EmbeddedObjects::Place> EmbeddedObjects::places() const {
    std::vector<Place> places;
    for (QTextBlock block = m_editor.document()->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const QTextCharFormat format = fragment.charFormat();
            const auto id = static_cast<std::size_t>(format.intProperty(kInlineId));
            if (format.objectType() != kInlineObject || id >= m_inlines.size() ||
                m_inlines[id].kind != rtf::InlineKind::Object) {
                continue;
            }
            const QString text = fragment.text();
            for (qsizetype i = text.indexOf(QChar(rtf::kInlineMark)); i >= 0;
                 i = text.indexOf(QChar(rtf::kInlineMark), i + 1)) {
                places.push_back({fragment.position() + static_cast<int>(i), id});
            }
        }
    }
    return places;
}

int EmbeddedObjects::indexAt(int position) const {
    const std::vector<Place> all = places();
    const auto found = std::find_if(all.begin(), all.end(), [position](const Place& place) {
        return place.position == position;
    });
    return found == all.end() ? -1 : static_cast<int>(found - all.begin());
}

const rtf::Inline* EmbeddedObjects::group(int index) const {
    const std::vector<Place> all = places();
    return index < 0 || index >= static_cast<int>(all.size())
               ? nullptr
               : &m_inlines[rtf::at(all, index).group];
}

std::optional<rtf::EmbeddedObject> EmbeddedObjects::object(int index) const {
    const rtf::Inline* const stored = group(index);
    return stored == nullptr ? std::nullopt : rtf::readObject(rtf::objectOf(stored->raw).data);
}

QString EmbeddedObjects::name(int index) const {
    const rtf::Inline* const stored = group(index);
    if (stored == nullptr) {
        return {};
    }
    const rtf::ObjectGroup parts = rtf::objectOf(stored->raw);
    return objectCaption(parts, rtf::readObject(parts.data));
}

std::optional<rtf::PackagedFile> EmbeddedObjects::file(int index) const {
    const auto stored = object(index);
    if (!stored || stored->linked) {
        return std::nullopt;
    }
    if (stored->className == rtf::kPackageClass) {
        return rtf::readPackage(stored->native);
    }
    return rtf::PackagedFile{nameOfClass(stored->className, stored->native), {}, stored->native};
}

QString EmbeddedObjects::link(int index) const {
    const auto stored = object(index);
    return stored ? rtf::linkOf(*stored) : QString();
}

std::optional<rtf::PackagedFile> EmbeddedObjects::picture(int index) const {
    const rtf::Inline* const stored = group(index);
    if (stored == nullptr) {
        return std::nullopt;
    }
    const QString base = QFileInfo(name(index)).completeBaseName();
    const auto named = [&base](const QString& suffix) {
        return rtf::baseName(base + u'.' + suffix);
    };
    for (const StoredPicture& picture : picturesIn(*stored)) {
        if (picture.isObject) {
            continue; // it is the object's file
        }
        // Of a drawing, the bitmap that it paints is more use than what only few programs show.
        const QImage image = decode(picture, kMostStoredDots);
        const QString suffix = suffixOf(picture);
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

QString EmbeddedObjects::copy(int index) const {
    const auto content = file(index);
    return content ? writePrivateCopy(rtf::baseName(content->label), content->data) : QString();
}

int EmbeddedObjects::at(const QPoint& point) const {
    const QTextDocument& text = *m_editor.document();
    const QPointF scrolled(m_editor.horizontalScrollBar()->value(),
                           m_editor.verticalScrollBar()->value());
    const int hit = text.documentLayout()->hitTest(point + scrolled, Qt::ExactHit);
    if (hit < 0) {
        return -1;
    }
    QTextCursor cursor = m_editor.textCursor();
    cursor.setPosition(hit);
    const int position = m_editor.cursorRect(cursor).left() <= point.x() ? hit : hit - 1;
    return text.characterAt(position) == QChar(rtf::kInlineMark) ? indexAt(position) : -1;
}

int EmbeddedObjects::current() const {
    const QTextCursor cursor = m_editor.textCursor();
    return cursor.selectionEnd() - cursor.selectionStart() > 1 ? -1
                                                               : indexAt(cursor.selectionStart());
}

void EmbeddedObjects::select(int index) {
    QTextCursor cursor = m_editor.textCursor();
    const std::vector<Place> all = places();
    cursor.setPosition(rtf::at(all, index).position);
    cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
    m_editor.setTextCursor(cursor);
}

void EmbeddedObjects::insertFile(const QString& path, ObjectDisplay display) {
    const QByteArray content = contentOfFile(path, m_largestFile);
    const QFileInfo info(path);
    QImage preview;
    if (display == ObjectDisplay::Content) {
        preview = contentPreview(path, content);
    }
    if (preview.isNull()) {
        preview = iconPreview(path);
    }
    const QByteArray result = pictureGroup(preview);
    const rtf::Picture size = rtf::pictureOf(result);
    const QByteArray native =
        rtf::writePackage({rtf::baseName(info.fileName()), info.absoluteFilePath(), content});
    insert(rtf::InlineKind::Object,
           rtf::objectGroup(
               {.className = rtf::kPackageClass,
                .width = size.width,
                .height = size.height,
                .data = rtf::writeObject({.className = rtf::kPackageClass, .native = native}),
                .result = result}));
}

void EmbeddedObjects::insertPicture(const QImage& picture) {
    if (!picture.isNull()) {
        insert(rtf::InlineKind::Picture, pictureGroup(picture));
    }
}

void EmbeddedObjects::insert(rtf::InlineKind kind, const QByteArray& raw) {
    QTextCursor cursor = m_editor.textCursor();
    const QTextCharFormat around = cursor.charFormat();
    QTextCharFormat format = around;
    m_inlines.push_back(rtf::Inline{kind, raw});
    format.setObjectType(kInlineObject);
    format.setProperty(kInlineId, static_cast<int>(m_inlines.size()) - 1);
    cursor.beginEditBlock();
    cursor.insertText(QString(QChar(rtf::kInlineMark)), format);
    cursor.endEditBlock();
    m_editor.setTextCursor(cursor);
    m_editor.setCurrentCharFormat(around);
}

} // namespace yrw::richtext
