#pragma once

#include <QString>

namespace yrw {

/// A column of the record grid.
struct GridColumn {
    QString field;
    QString header;
    int widthTwips = 1500;
    bool visible = true;
    bool editable = true;
    int decimals = -1; ///< places behind the point of a fractional number; -1: as many as it has
};

} // namespace yrw
