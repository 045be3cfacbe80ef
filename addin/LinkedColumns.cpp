#include "addin/LinkedColumns.h"

#include "framework/ErrorGuards.h"

namespace yrw {

namespace {

bool isLinked(const HostDataHelper& helper, const QString& field, const QString& layoutName) {
    QString sql = QStringLiteral("SELECT tblLinkedColumnDefs.* ") +
                  QStringLiteral("From tblLinkedColumnDefs ");
    sql = HostDataHelper::AddCondition(
        sql, HostDataHelper::EqualCondition(QStringLiteral("GridField"), field));
    sql = HostDataHelper::AddCondition(
        sql, HostDataHelper::EqualCondition(QStringLiteral("GridLayoutName"), layoutName));
    const Ref<dao::Recordset> definitions = helper.OpenRecordset(sql);
    const bool found = !definitions->AtEof();
    definitions->Close();
    return found;
}

} // namespace

int findFlagColumn(const HostDataHelper& helper, const IRecordGrid& grid,
                   const QString& layoutName) {
    for (int column = 0; column < grid.columnCount(); ++column) {
        bool linked = false;
        if (grid.isColumnVisible(column)) {
            // A definition that cannot be read defines nothing.
            ignoreErrors([&] { linked = isLinked(helper, grid.columnField(column), layoutName); });
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
