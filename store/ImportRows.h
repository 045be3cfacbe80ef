#pragma once

#include "store/ImportChoices.h"
#include "store/ImportTable.h"
#include "store/ImportUsers.h"
#include "store/ImportedRows.h"

#include <QSet>

#include <memory>

namespace yrw {

/// Takes what is read of an old database and brings it into a notes database: maps keys, users and
/// owners, keeps reminders with their notes, and passes over what came before.
/// Lifetime: one import, within one transaction of the target. Thread: the user-interface thread.
class ImportRows final : public jet::JetSink {
public:
    /// Rows are written to `target`; a dry run writes nothing. With `isFresh` the target holds
    /// nothing but what ships, and keys are kept. All that is given outlives this.
    ImportRows(dao::Database& target, const ImportChoices& choices, bool isFresh,
               ImportReport& report);

    /// The tables whose rows are wanted, in the order in which they are needed.
    [[nodiscard]] static QStringList tables();
    /// Does what can be done when all rows are there. Call once, at the end.
    void finish();
    /// How far the import is.
    [[nodiscard]] int percent() const;

    void beginTable(const jet::JetTable& table) override;
    void row(const jet::JetRow& row) override;
    void badRow() override;
    void endTable(bool isWhole) override;

private:
    /// What its reminders need to know of a note.
    struct NoteFacts {
        qint64 key = 0; ///< in the target
        QString origin;
        bool remindsNobody = false; ///< as far as the note itself says
        bool isGone = false;        ///< came before, and was deleted since
    };
    void takeNote(const jet::JetRow& row);
    void takeReminder(const jet::JetRow& row);
    void takeSystemRow();
    void takeSettings();
    void takeLinkedColumn();
    void takeUserName();
    qint64 writeJudged(RowPrint& print, bool hasKey);
    void map(const QHash<QString, QString>& map, QStringView field);
    void remarkOnNote() const;
    void fillGaps(dao::Recordset& stored);
    void passOverKeys();

    dao::Database& m_target;
    const ImportChoices& m_choices;
    bool m_isFresh;
    ImportReport& m_report;
    ImportUsers m_users;
    ImportedRows m_imported;
    QHash<QString, QString> m_programs;  ///< by name in lower case
    QHash<QString, QString> m_ownerKeys; ///< by key in lower case

    std::unique_ptr<ImportTable> m_table; ///< that is being read; nothing for one that is passed
    std::unique_ptr<RowPrinter> m_printer;
    Ref<dao::Recordset> m_stored;     ///< rows of that table in the target, for looking up
    QHash<qint64, NoteFacts> m_notes; ///< by key in the old file
    QSet<qint64> m_reminders;         ///< keys that are taken
    QSet<QString> m_linkedColumns;    ///< that the target has
    qint64 m_badRows = 0;             ///< of that table
    qint64 m_highestNote = 0;
    qint64 m_highestMissing = 0; ///< key of a note that only reminders tell of
};

} // namespace yrw
