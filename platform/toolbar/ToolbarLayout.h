#pragma once

#include "platform/toolbar/BandTool.h"

#include <QByteArray>
#include <QList>

namespace yrw {

/// A band as a layout file describes it.
struct BandLayout {
    QString key;
    QString caption;
    int row = 0; ///< docked row, 0 at the top
    bool popup = false;
    bool visible = true;
    QList<ToolData> tools;
};

/// Reads the text of a toolbar layout; docs/toolbar-layout.md describes the format.
/// Raises `kErrorLayout` naming the file and the place of the first fault.
[[nodiscard]] QList<BandLayout> parseToolbarLayout(const QByteArray& json,
                                                   const QString& nameForErrors);

} // namespace yrw
