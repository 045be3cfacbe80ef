#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace yrw {

/// What is to be said of rows of one table.
struct ImportRemark {
    QString text;
    bool isLoss = false;  ///< something of them did not arrive
    QList<qint64> keys{}; ///< of the rows in the old file
    qint64 others = 0;    ///< rows whose keys are unknown, or that are too many to name
};

/// What became of one table of an old database.
struct ImportedTable {
    QString name;
    qint64 told = 0;    ///< rows that the file says there are
    qint64 read = 0;    ///< rows that could be read
    qint64 written = 0; ///< rows that are in the notes database now, or would be
    qint64 present = 0; ///< rows that were there already
    std::vector<ImportRemark> remarks;

    /// Adds a row to the remark of that text; `key` is 0 where the row has none, and nothing where
    /// the remark is of the table.
    void remark(const QString& text, bool isLoss, std::optional<qint64> key);

private:
    QHash<QString, size_t> m_places; ///< of remarks, by text
};

/// What an import did, and what of the old database did not arrive.
struct ImportReport {
    std::vector<ImportedTable> tables; ///< those that the notes database has
    QStringList others;                ///< what else is to be said, a line each

    /// For the user, a line each: the tables with their rows, and below each what is to be said.
    [[nodiscard]] QStringList lines() const;
    /// The lines that tell of what did not arrive.
    [[nodiscard]] QStringList losses() const;
    /// False when something of notes, reminders, settings or linked columns did not arrive.
    [[nodiscard]] bool isComplete() const { return losses().isEmpty(); }
    [[nodiscard]] qint64 rowsRead() const;
};

} // namespace yrw
