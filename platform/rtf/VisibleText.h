#pragma once

#include <QByteArrayView>
#include <QString>

namespace yrw::rtf {

/// The text that an object's group shows in the object's place, in a document of that code page;
/// empty for one that shows a picture or nothing. Lines end in CR LF.
[[nodiscard]] QString visibleText(QByteArrayView group, int codePage);

} // namespace yrw::rtf
