// check: finds what is wrong in the database and repairs it.
#include "cli/CommandContext.h"
#include "cli/Rows.h"
#include "cli/SafeText.h"
#include "store/DatabaseCheck.h"
#include "store/Salvage.h"

#include <QFileInfo>

#include <algorithm>

namespace yrw {

namespace {

/// Prints findings as they come, as lines or as JSON.
class FindingPrinter {
public:
    FindingPrinter(const CommandContext& context, bool isFix)
        : m_context(context), m_isFix(isFix), m_asJson(context.line.isSet(QStringLiteral("json"))) {
    }

    void print(const Finding& finding) {
        ++m_count;
        if (m_asJson) {
            m_context.print(m_array.next({{QStringLiteral("Table"), finding.table},
                                          {QStringLiteral("RecordID"), finding.recordID},
                                          {QStringLiteral("Problem"), finding.problem},
                                          {QStringLiteral("Repaired"), finding.isMended}}));
            return;
        }
        QString line = finding.table;
        if (finding.recordID != 0) {
            line += u' ' + QString::number(finding.recordID);
        }
        line += QStringLiteral(": ") + finding.problem;
        if (m_isFix) {
            line +=
                finding.isMended ? QStringLiteral(", repaired") : QStringLiteral(", not repaired");
        }
        m_context.print(onOneLine(line) + u'\n');
    }
    void finish() {
        if (m_asJson) {
            m_context.print(m_array.end());
        } else if (m_count == 0) {
            m_context.print(QStringLiteral("No problems were found.\n"));
        }
    }

private:
    const CommandContext& m_context;
    bool m_isFix;
    bool m_asJson;
    JsonArray m_array;
    qint64 m_count = 0;
};

/// Copies the database beside itself; the name of the copy.
QString copyBeside(dao::Database& database) {
    const QString path = database.Name() + QStringLiteral(".before-fix");
    QString free = path;
    for (int number = 2; QFileInfo(free).exists() || QFileInfo(free).isSymLink(); ++number) {
        free = path + u'-' + QString::number(number);
    }
    database.CopyTo(free);
    return free;
}

CheckRules rulesFor(const CommandContext& context, ProgressLine& progress) {
    CheckRules rules;
    CommandStore& store = *context.store;
    if (store.hasHostDatabase()) {
        rules.userIDs.emplace();
        for (const UserName& user : store.users()) {
            rules.userIDs->insert(user.UserID);
        }
    }
    rules.hostProgID = store.hostProgID();
    rules.step = [&progress] { progress.step(); };
    return rules;
}

/// Prints what of a table could not be had.
void printLosses(FindingPrinter& printer, const SalvageResult& salvaged) {
    for (const QString& table : salvaged.missing) {
        printer.print({table, 0, QStringLiteral("nothing of the table could be read")});
    }
    for (const dao::SalvagedTable& table : salvaged.tables) {
        for (const auto& [from, to] : table.lost) {
            printer.print(
                {table.table, from == to ? from : 0,
                 from == to
                     ? QStringLiteral("the row could not be read")
                     : QStringLiteral("the rows %1 to %2 could not be read").arg(from).arg(to)});
        }
        if (table.isOpenEnded) {
            printer.print({table.table, 0,
                           QStringLiteral("rows after the %1 that were read may be missing")
                               .arg(table.rows)});
        }
        for (const auto& [key, field] : table.holes) {
            printer.print(
                {table.table, key, QStringLiteral("the field %1 could not be read").arg(field)});
        }
    }
}

ExitStatus salvage(const CommandContext& context, FindingPrinter& printer, const QString& path) {
    const Ref<dao::Workspace> workspace = dao::createWorkspace(context.engine);
    const SalvageResult salvaged = salvageNotes(*workspace, path);
    printLosses(printer, salvaged);
    printer.finish();
    const auto notes = std::find_if(salvaged.tables.begin(), salvaged.tables.end(),
                                    [](const auto& t) { return t.table == schema::kTblNotes; });
    context.complain(
        QStringLiteral("%1 is damaged and stays as it is; what could be read, %2 notes, is in %3, "
                       "which is to be put in its place.")
            .arg(path)
            .arg(notes == salvaged.tables.end() ? 0 : notes->rows)
            .arg(salvaged.path));
    return kExitNothing;
}

} // namespace

ExitStatus checkDamagedFile(const CommandContext& context, const QString& path,
                            const QString& problem) {
    const bool isFix = context.line.isSet(QStringLiteral("fix"));
    FindingPrinter printer(context, isFix);
    printer.print({QFileInfo(path).fileName(), 0, problem});
    if (isFix) {
        return salvage(context, printer, path);
    }
    printer.finish();
    context.complain(
        QStringLiteral("%1 is damaged; --fix copies what can be read into a new file.").arg(path));
    return kExitNothing;
}

ExitStatus checkDatabase(const CommandContext& context) {
    const Ref<dao::Database> database = context.store->database();
    const bool isFix = context.line.isSet(QStringLiteral("fix"));
    CheckResult result;
    {
        ProgressLine progress = context.progress(QStringLiteral("rows checked"));
        result = findProblems(context.store->workspace(), database, rulesFor(context, progress));
    }
    if (result.isDamaged) {
        return checkDamagedFile(context, context.store->notesPath(),
                                result.findings.front().problem);
    }
    if (isFix && !result.findings.empty()) {
        if (database->isReadOnly()) {
            throw AutomationError(
                kErrorReadOnly, QStringLiteral("yrwnotes"),
                QStringLiteral("%1 is read-only.").arg(context.store->notesPath()));
        }
        const QString copy = copyBeside(*database);
        mendProblems(database, result.findings);
        context.complain(QStringLiteral("The database as it was is in %1.").arg(copy));
    }
    FindingPrinter printer(context, isFix);
    for (const Finding& finding : result.findings) {
        printer.print(finding);
    }
    printer.finish();
    const auto left = std::count_if(result.findings.begin(), result.findings.end(),
                                    [](const Finding& finding) { return !finding.isMended; });
    if (left == 0) {
        return kExitDone;
    }
    context.complain(isFix ? QStringLiteral("%1 problem(s) could not be repaired.").arg(left)
                           : QStringLiteral("%1 problem(s) were found; --fix repairs those that "
                                            "have one remedy.")
                                 .arg(left));
    return kExitNothing;
}

} // namespace yrw
