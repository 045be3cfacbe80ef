#pragma once

#include <QImage>
#include <QMimeType>
#include <QString>

namespace yrw::richtext {

/// The first page of a PDF or office file, as a program of the system shows it (`pdftoppm`,
/// `soffice`); null for other files, without the program, or when it fails or takes too long.
[[nodiscard]] QImage firstPage(const QString& path, const QMimeType& type);

} // namespace yrw::richtext
