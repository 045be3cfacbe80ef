#pragma once

#include "store/ImportChoices.h"
#include "store/ImportTable.h"

#include <memory>

namespace yrw {

/// Takes what is read of an old database and brings it into a notes database: maps keys, users and
/// owners, and keeps reminders with their notes.
/// Lifetime: one import, within one transaction of the target. Thread: the user-interface thread.
class ImportRows final : public jet::JetSink {
public:
    /// Rows are written to `target`; a dry run writes nothing. All that is given outlives this.
    ImportRows(dao::Database& target, const ImportChoices& choices, bool keepsKeys,
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
    void takeNote();

    dao::Database& m_target;
    const ImportChoices& m_choices;
    bool m_keepsKeys;
    ImportReport& m_report;
    std::unique_ptr<ImportTable> m_table;
};

} // namespace yrw
