#include "store/DatabaseCheck.h"

#include "platform/dao/Schema.h"
#include "store/CheckParts.h"
#include "store/NotesTextIndex.h"

#include <QFileInfo>

namespace yrw {

namespace {

constexpr int kIndexSliceMs = 1000;

void rebuildTextIndex(const Ref<dao::Database>& database) {
    const auto index = notesTextIndex(database);
    index->create();
    while (index->catchUp(kIndexSliceMs)) {
    }
}

void mendRow(dao::Database& database, const Finding& finding) {
    const Ref<dao::Recordset> row =
        database.OpenRecordset(finding.table, dao::RecordsetType::Table);
    row->Seek(u"=", {QVariant(finding.recordID)});
    if (row->NoMatch()) {
        return; // gone meanwhile
    }
    if (finding.remedy == Remedy::Delete) {
        row->Delete();
        return;
    }
    row->Edit();
    for (const dao::ValueList::Entry& entry : finding.values) {
        row->setValue(entry.name, entry.value);
    }
    row->Update();
}

void putQueryBack(dao::Database& database, const Finding& finding) {
    const QString table = QStringLiteral("tblQueries");
    const QString name = QStringLiteral("Name");
    database.DeleteRows(table, name, finding.values.value(name));
    const Ref<dao::Recordset> rows = database.OpenRecordset(table, dao::RecordsetType::Dynaset);
    rows->AddNew();
    for (const dao::ValueList::Entry& entry : finding.values) {
        rows->setValue(entry.name, entry.value);
    }
    rows->Update();
}

void mend(const Ref<dao::Database>& database, const Finding& finding) {
    switch (finding.remedy) {
    case Remedy::Write:
    case Remedy::Delete:
        return mendRow(*database, finding);
    case Remedy::Script:
        return database->RunScript(finding.script);
    case Remedy::Query:
        return putQueryBack(*database, finding);
    case Remedy::Reindex:
        return database->rebuildIndexes();
    case Remedy::TextIndex:
        return rebuildTextIndex(database);
    case Remedy::None:
        break;
    }
}

/// Mends one finding; false, with nothing of it done, when it cannot be mended.
bool tryMend(const Ref<dao::Database>& database, const Finding& finding) {
    if (finding.remedy == Remedy::None) {
        return false;
    }
    try {
        dao::Transaction transaction(*database);
        mend(database, finding);
        transaction.commit();
        return true;
    } catch (const AutomationError& error) {
        const bool isOfTheFile = error.number() == kErrorDatabaseEngine ||
                                 error.number() == kErrorNotInCollection ||
                                 error.number() == kErrorNotADatabase;
        if (!isOfTheFile) {
            throw;
        }
        return false;
    }
}

} // namespace

CheckResult findProblems(const Ref<dao::Workspace>& workspace, const Ref<dao::Database>& database,
                         const CheckRules& rules) {
    CheckResult result;
    const QString file = QFileInfo(database->Name()).fileName();
    const dao::Damage damage = database->CheckIntegrity();
    result.isDamaged = !damage.pages.isEmpty();
    for (const QString& problem : damage.pages) {
        result.findings.push_back({file, 0, QStringLiteral("is damaged: %1").arg(problem)});
    }
    for (const QString& problem : damage.indexes) {
        result.findings.push_back({file, 0, problem, Remedy::Reindex});
    }
    if (result.isDamaged) {
        return result;
    }
    for (const auto& more :
         {findObjectProblems(workspace, database), findRowProblems(*database, rules)}) {
        result.findings.insert(result.findings.end(), more.begin(), more.end());
    }
    return result;
}

void mendProblems(const Ref<dao::Database>& database, std::vector<Finding>& findings) {
    if (database->isReadOnly()) {
        throw AutomationError(kErrorReadOnly, QStringLiteral("YRWNOTES.NotesDatabase"),
                              QStringLiteral("%1 is read-only.").arg(database->Name()));
    }
    dao::Transaction transaction(*database);
    bool indexesAreNew = false;
    for (Finding& finding : findings) {
        const bool isIndex = finding.remedy == Remedy::Reindex;
        finding.isMended = (isIndex && indexesAreNew) || tryMend(database, finding);
        indexesAreNew = indexesAreNew || (isIndex && finding.isMended);
    }
    transaction.commit();
}

} // namespace yrw
