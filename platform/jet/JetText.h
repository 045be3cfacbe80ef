#pragma once

#include "platform/jet/JetProtocol.h"

#include <QByteArrayView>
#include <QVariant>

#include <optional>

namespace yrw::jet {

// Values as old databases store them. All take any bytes.

/// A text of version 4: UTF-16, or, behind the bytes FF FE, single bytes, among which a 0 switches
/// to UTF-16 and back. Everything else is kept: characters beyond the basic plane, and U+0000.
[[nodiscard]] QString decodeText(QByteArrayView bytes);

/// A date: days since 30 December 1899 as a double, whose fraction is the time of that day, also
/// before it. Rounded to seconds. Nothing for years outside 100 to 9999.
[[nodiscard]] std::optional<QDateTime> decodeDate(double days);

/// The value of a column; nothing for bytes that are no value of its type. `codePage` is that of
/// texts of version 3; 0 says that texts are those of version 4.
[[nodiscard]] std::optional<QVariant> decodeValue(ColumnType type, QByteArrayView bytes,
                                                  int codePage);

} // namespace yrw::jet
