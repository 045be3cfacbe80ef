#include "store/ImportRows.h"

#include "store/Schema.h"

namespace yrw {

ImportRows::ImportRows(dao::Database& target, const ImportChoices& choices, bool keepsKeys,
                       ImportReport& report)
    : m_target(target), m_choices(choices), m_keepsKeys(keepsKeys), m_report(report) {
    m_report.tables.reserve(size_t(tables().size())); // rows refer to them
}

QStringList ImportRows::tables() {
    return {schema::kTblNotes,    schema::kTblReminders,        schema::kTblSystem,
            schema::kTblSettings, schema::kTblLinkedColumnDefs, schema::kTblUserNames};
}

void ImportRows::beginTable(const jet::JetTable& table) {
    const QStringList known = tables();
    const qsizetype place = known.indexOf(table.name, 0);
    if (place < 0) {
        m_report.others += table.name;
        return;
    }
    ImportedTable report;
    report.name = known.at(place);
    report.told = table.rows;
    m_report.tables.push_back(report);
    m_table =
        std::make_unique<ImportTable>(m_target, table, m_report.tables.back(), m_choices.isDryRun);
}

void ImportRows::row(const jet::JetRow& row) {
    if (!m_table) {
        return;
    }
    ++m_table->report().read;
    m_table->take(row);
    takeNote();
}

void ImportRows::badRow() {
    if (m_table) {
        m_table->report().remark(QStringLiteral("could not be read"), true, 0);
    }
}

void ImportRows::endTable(bool isWhole) {
    if (m_table && !isWhole) {
        m_table->report().remark(QStringLiteral("the table is damaged; rows may be missing"), true,
                                 std::nullopt);
    }
    m_table.reset();
}

void ImportRows::takeNote() {
    if (!m_keepsKeys) {
        m_table->forgetKey();
    }
    m_table->write();
}

void ImportRows::finish() {}

int ImportRows::percent() const {
    constexpr int kOfTables = 10;
    if (m_report.tables.empty()) {
        return 0;
    }
    const ImportedTable& last = m_report.tables.back();
    const qint64 share = last.told > 0 ? qMin<qint64>(100, 100 * last.read / last.told) : 0;
    // Notes are most of the work.
    return last.name == schema::kTblNotes ? int(share * (100 - kOfTables) / 100)
                                          : 100 - kOfTables + int(share * kOfTables / 101);
}

} // namespace yrw
