#pragma once

#include "platform/rtf/EmbeddedObject.h"
#include "platform/rtf/Model.h"
#include "platform/rtf/Picture.h"

#include <QImage>
#include <QSize>
#include <QString>

#include <optional>
#include <vector>

namespace yrw::richtext {

/// A picture as a note stores it.
struct StoredPicture {
    rtf::PictureKind kind = rtf::PictureKind::None;
    QByteArray data;
    bool isObject = false; ///< the data of an object are this picture
};

/// The picture that shows a group: the one in it, then those that the data of an object hold, the
/// best first. None for a group that keeps something else.
[[nodiscard]] std::vector<StoredPicture> picturesIn(const rtf::Inline& group);

/// The dots of a picture by its header, without decoding it; empty when that cannot be read. What a
/// header claims may be anything.
[[nodiscard]] QSize sizeOf(const StoredPicture& picture);
/// Decodes a picture, of a metafile the bitmap that it paints. One that has more than `mostDots` is
/// made smaller while it is read. Null when it cannot be decoded or is too large for that too.
[[nodiscard]] QImage decode(const StoredPicture& picture, qint64 mostDots);
/// The same for a picture file of any format that the toolkit reads.
[[nodiscard]] QImage decodeImage(const QByteArray& data, qint64 mostDots);
/// The suffix of a file with that picture's data as they are: "png", "jpg", "emf" or "wmf"; empty
/// where they are no file.
[[nodiscard]] QString suffixOf(const StoredPicture& picture);

/// The most dots of a picture that a note stores: what is inserted and has more is made smaller.
inline constexpr qint64 kMostStoredDots = 16LL * 1024 * 1024;

/// The group of an image, stored as PNG with `kMostStoredDots` at the most and shown at 96 dots per
/// inch or smaller, so that it fits the width of a page's text.
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
