#pragma once

#include <QByteArray>
#include <QString>

namespace yrw::richtext {

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
