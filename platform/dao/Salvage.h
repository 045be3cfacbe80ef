#pragma once

#include <QStringList>

#include <utility>
#include <vector>

namespace yrw::dao {

/// What was had of one table.
struct SalvagedTable {
    QString table;
    qint64 rows = 0;                               ///< that were copied
    std::vector<std::pair<qint64, qint64>> lost;   ///< keys from … to that could not be read
    std::vector<std::pair<qint64, QString>> holes; ///< fields of copied rows that are Null now
    bool isOpenEnded = false; ///< nothing tells which rows followed the last that were found
};

/// A damaged database file, read row by row, never written.
///
/// Lifetime: keeps the file open. Thread: the user-interface thread.
class DamagedFile {
public:
    virtual ~DamagedFile() = default;
    [[nodiscard]] virtual QString path() const = 0;
    /// Names of the tables that the file still tells of, without those of the engine and of search
    /// indexes.
    [[nodiscard]] virtual QStringList tableNames() const = 0;
    /// The statement that made a table.
    [[nodiscard]] virtual QString tableSql(const QString& table) const = 0;
    /// Columns of a table with their declared types.
    [[nodiscard]] virtual std::vector<std::pair<QString, QString>>
    columnsOf(const QString& table) const = 0;
};

} // namespace yrw::dao
