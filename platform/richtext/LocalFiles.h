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

/// Makes a folder that only the user may enter and that is removed when the program ends. Empty
/// when it cannot be made.
/// Thread: the user-interface thread.
[[nodiscard]] QString makePrivateFolder();

/// Writes a read-only file of that name into such a folder of its own. Empty when it cannot be
/// written.
/// Thread: the user-interface thread.
[[nodiscard]] QString writePrivateCopy(const QString& name, const QByteArray& data);

/// Removes the folders of this user's programs that ended without doing so.
void removeLeftCopies();

} // namespace yrw::richtext
