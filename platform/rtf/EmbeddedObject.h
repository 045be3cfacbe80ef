#pragma once

#include "platform/rtf/Picture.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

namespace yrw::rtf {

/// Names how an object's data is stored.
inline constexpr char kPackageClass[] = "Package";

/// The data stream of an embedded or linked object.
struct EmbeddedObject {
    bool linked = false;
    QByteArray className = {}; ///< e.g. "Package", "PBrush"
    QByteArray topic = {};     ///< of a link: the file's path
    QByteArray item = {};
    QByteArray native = {};    ///< the object's own data; empty for a link
    Picture presentation = {}; ///< how it looks, stored beside the data; kind None without one
};

/// A file inside a "Package" object.
struct PackagedFile {
    QString label;        ///< name to show and to save under; never a path
    QString originalPath; ///< where the file came from
    QByteArray data;
};

/// An object group taken apart. Sizes are twips, 0 when the group names none.
struct ObjectGroup {
    QByteArray className = {};
    int width = 0;
    int height = 0;
    QByteArray data = {};   ///< content of \objdata
    QByteArray result = {}; ///< the group that shows the object
};

/// Reads an object's data stream; nothing when a length in it does not fit.
[[nodiscard]] std::optional<EmbeddedObject> readObject(QByteArrayView stream);
/// The stream of an embedded object, without a picture beside the data.
[[nodiscard]] QByteArray writeObject(const EmbeddedObject& object);

/// Reads the native data of a "Package" object; nothing when it is damaged.
[[nodiscard]] std::optional<PackagedFile> readPackage(QByteArrayView native);
/// The path of the file that an object is a link to; empty for one that holds its data.
[[nodiscard]] QString linkOf(const EmbeddedObject& object);
[[nodiscard]] QByteArray writePackage(const PackagedFile& file);

[[nodiscard]] ObjectGroup objectOf(QByteArrayView group);
/// The group of an object; `result` is a picture group.
[[nodiscard]] QByteArray objectGroup(const ObjectGroup& object);

} // namespace yrw::rtf
