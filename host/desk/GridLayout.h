#pragma once

#include "platform/controls/RecordGrid.h"

namespace yrw {

/// A saved layout of a grid: which columns it shows, how wide, and of which records.
struct GridLayout {
    QString name;
    QList<GridColumn> columns;
    QString sortField;        ///< field that the rows are ordered by at first
    bool everyRecord = false; ///< all records, not only those of the row in the other grid
};

/// The layouts of the customers and of the orders, the usual one first. Every layout has a
/// (hidden) column of the key, by which add-ins recognise a row's record.
[[nodiscard]] QList<GridLayout> customerLayouts();
[[nodiscard]] QList<GridLayout> orderLayouts();

} // namespace yrw
