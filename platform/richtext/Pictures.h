#pragma once

#include "platform/rtf/EmbeddedObject.h"
#include "platform/rtf/Picture.h"

#include <QImage>
#include <QString>

#include <optional>

namespace yrw::richtext {

/// Decodes a picture file; a null image when it cannot be decoded or is too large to be shown.
[[nodiscard]] QImage decodeImage(const QByteArray& data, const char* format = nullptr);
/// Decodes the data of a picture group; of a metafile, the bitmap it paints.
[[nodiscard]] QImage decodePicture(rtf::PictureKind kind, const QByteArray& data);

/// How an object looks whose group shows nothing: the picture that it is, else the one stored
/// beside its data; null without one that can be decoded.
[[nodiscard]] QImage objectImage(const rtf::EmbeddedObject& object);

/// The group of an image, stored as PNG and shown at 96 dots per inch or smaller, so that it fits
/// the width of a page's text.
[[nodiscard]] QByteArray pictureGroup(const QImage& image);

/// The name under which an object shows.
[[nodiscard]] QString objectCaption(const rtf::ObjectGroup& group,
                                    const std::optional<rtf::EmbeddedObject>& object);

/// What an embedded file shows: a picture, the beginning of a text, the first page of a document
/// where the system can show one; null for other files.
[[nodiscard]] QImage contentPreview(const QString& path, const QByteArray& data);
/// The desktop's icon for a file, with the file's name below.
[[nodiscard]] QImage iconPreview(const QString& path);

} // namespace yrw::richtext
