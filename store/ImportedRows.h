#pragma once

#include "platform/dao/RowAdder.h"
#include "platform/jet/JetRows.h"

#include <QHash>

namespace yrw {

/// What tells a row of an old database from all others: what never changes of it, and all of it.
struct RowPrint {
    QString origin;
    QString contents;
};

/// What a database remembers of rows that came from old ones: from where, and which row they
/// became.
/// Lifetime: one import, within one transaction of the database, which outlives it. Thread: the
/// user-interface thread.
class ImportedRows {
public:
    ImportedRows(dao::Database& database, bool isDryRun);

    /// What a row is to the database.
    enum class Kind {
        New,
        Present,      ///< came before, as it is
        Changed,      ///< came before, and is another in the old file now
        PresentTwice, ///< was read already, as it is
        Clash,        ///< another row of this reading has all that should never be the same
    };
    struct Judged {
        Kind kind = Kind::New;
        qint64 key = 0; ///< of the row in the database, unless it is new
    };
    /// A clash gets an origin of its own.
    [[nodiscard]] Judged judge(RowPrint& print) const;
    void add(const QString& table, const std::optional<qint64>& oldKey, qint64 key,
             const RowPrint& print);

private:
    struct Known {
        qint64 key = 0;
        QString contents;
        bool isOfNow = false;
    };
    QHash<QString, Known> m_known;         ///< by origin
    std::unique_ptr<dao::RowAdder> m_rows; ///< nothing in a dry run
};

/// A fingerprint of some fields and of the whole row, which does not depend on where it is taken.
class RowPrinter {
public:
    /// The fields that never change, as far as the table has them. A row where the last of them is
    /// Null is told by all that it holds.
    RowPrinter(const jet::JetTable& table, const QStringList& lasting);
    /// `within` is the origin of a row that this one belongs to.
    [[nodiscard]] RowPrint of(const jet::JetRow& row, const QString& within) const;

private:
    QByteArray m_name;
    std::vector<size_t> m_lasting;
    bool m_canTell; ///< the table has them all
};

} // namespace yrw
