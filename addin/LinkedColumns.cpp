#include "addin/LinkedColumns.h"

#include "framework/ErrorGuards.h"
#include "store/MarkSettings.h"

namespace yrw {

int findFlagColumn(const HostDataHelper& helper, const IRecordGrid& grid,
                   const QString& layoutName) {
    for (int column = 0; column < grid.columnCount(); ++column) {
        bool linked = false;
        if (grid.isColumnVisible(column)) {
            // A definition that cannot be read defines nothing.
            ignoreErrors(
                [&] { linked = isLinkedColumn(helper, grid.columnField(column), layoutName); });
        }
        if (linked) {
            return column;
        }
    }
    const int recordId = grid.columnOf(QStringLiteral("RecordID"));
    return recordId >= 0 && grid.isColumnVisible(recordId) ? recordId : -1;
}

int columnBeside(const IRecordGrid& grid, int flagColumn) {
    if (grid.currentColumn() != flagColumn) {
        return grid.currentColumn();
    }
    for (int column = 0; column < grid.columnCount(); ++column) {
        if (column != flagColumn && grid.isColumnVisible(column)) {
            return column;
        }
    }
    return -1;
}

} // namespace yrw
