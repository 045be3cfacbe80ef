#pragma once

#include <QByteArray>
#include <QString>

namespace yrw::richtext {

/// Writes a read-only file of that name into a folder of its own that only the user may enter.
/// Every such folder is removed when the program ends. Empty when it cannot be written.
/// Thread: the user-interface thread.
[[nodiscard]] QString writePrivateCopy(const QString& name, const QByteArray& data);

} // namespace yrw::richtext
