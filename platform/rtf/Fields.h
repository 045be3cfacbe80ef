#pragma once

#include "platform/rtf/Model.h"

namespace yrw::rtf {

/// The field of an instruction group; its link is filled when it is a hyperlink.
[[nodiscard]] Field fieldOf(const QByteArray& group);

/// The field of a link to an address.
[[nodiscard]] Field hyperlink(const QString& target);

} // namespace yrw::rtf
