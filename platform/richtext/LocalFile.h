#pragma once

#include <QByteArray>
#include <QString>

namespace yrw::richtext {

/// The content of a file on this computer. Raises `kErrorCannotCreateObject`, with the reason in
/// words, when it does not exist, is a folder, a device or a pipe, has more than `largest` bytes or
/// cannot be read whole. It never waits for what another program writes.
[[nodiscard]] QByteArray contentOfFile(const QString& path, qint64 largest);

/// Bytes as words for a user: "12 MB", or "1 KB" below a megabyte.
[[nodiscard]] QString sizeText(qint64 bytes);

} // namespace yrw::richtext
