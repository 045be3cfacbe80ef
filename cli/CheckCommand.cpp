// check: finds what is wrong in the database and repairs it.
#include "cli/CommandContext.h"
#include "cli/Rows.h"
#include "platform/rtf/Reader.h"
#include "platform/rtf/Writer.h"

#include <QFileInfo>
#include <QSet>

namespace yrw {

namespace {

const QString kRecordID = QStringLiteral("RecordID");

/// One thing that is wrong with one row, and what puts it right.
struct Finding {
    QString table;
    qint64 recordID = 0;
    QString problem;
    dao::ValueList repair = {}; ///< fields to write; none: the row is deleted
};

/// A field that holds one of a few codes.
struct CodeField {
    const char16_t* name;
    int lowest;
    int highest;
    bool mayBeNull;
    int repair; ///< written in place of an unknown code
};

constexpr CodeField kNoteCodes[] = {{u"Status", 1, 2, false, int(NoteStatus::Active)},
                                    {u"NoteType", 1, 2, true, int(NoteType::Public)},
                                    {u"ReminderType", 0, 4, true, int(ReminderKind::None)}};
constexpr CodeField kReminderCodes[] = {{u"Status", 1, 4, true, int(ReminderStatus::Open)}};

template <class Codes>
void checkCodes(const dao::Recordset& row, const QString& table, const Codes& codes,
                std::vector<Finding>& findings) {
    for (const CodeField& code : codes) {
        const QString name = QString::fromUtf16(code.name);
        const QVariant value = row.value(name);
        const bool isKnown = value.isNull() ? code.mayBeNull
                                            : value.toLongLong() >= code.lowest &&
                                                  value.toLongLong() <= code.highest;
        if (!isKnown) {
            const QString shown = value.isNull() ? QStringLiteral("Null") : value.toString();
            findings.push_back({table,
                                row.value(kRecordID).toLongLong(),
                                QStringLiteral("unknown code %1 in %2").arg(shown, name),
                                {{name, code.repair}}});
        }
    }
}

void checkBody(const dao::Recordset& note, std::vector<Finding>& findings) {
    const QString field = QStringLiteral("RTFNote");
    const QString text = note.value(field).toString();
    if (text.isEmpty()) {
        return;
    }
    const rtf::Document document = rtf::read(QStringView(text));
    if (rtf::isRtf(text) && !document.incomplete) {
        return;
    }
    findings.push_back({schema::kTblNotes,
                        note.value(kRecordID).toLongLong(),
                        rtf::isRtf(text) ? QStringLiteral("rich text is cut off or damaged")
                                         : QStringLiteral("rich text is no rich text"),
                        {{field, QString::fromLatin1(rtf::write(document))}}});
}

Ref<dao::Recordset> openTable(const CommandContext& context, const QString& table) {
    return context.store->database()->OpenRecordset(
        QStringLiteral("SELECT %1.* FROM %1 ORDER BY [RecordID]").arg(table),
        dao::RecordsetType::ForwardOnly, dao::kReadOnlyOption);
}

std::vector<Finding> findProblems(const CommandContext& context) {
    std::vector<Finding> findings;
    ProgressLine progress = context.progress(QStringLiteral("rows checked"));
    QSet<qint64> noteIDs;
    const Ref<dao::Recordset> notes = openTable(context, schema::kTblNotes);
    for (; !notes->AtEof(); notes->MoveNext()) {
        progress.step();
        noteIDs.insert(notes->value(kRecordID).toLongLong());
        checkCodes(*notes, schema::kTblNotes, kNoteCodes, findings);
        checkBody(*notes, findings);
    }
    const Ref<dao::Recordset> reminders = openTable(context, schema::kTblReminders);
    for (; !reminders->AtEof(); reminders->MoveNext()) {
        progress.step();
        if (noteIDs.contains(reminders->value(QStringLiteral("NoteID")).toLongLong())) {
            checkCodes(*reminders, schema::kTblReminders, kReminderCodes, findings);
        } else {
            findings.push_back({schema::kTblReminders, reminders->value(kRecordID).toLongLong(),
                                QStringLiteral("reminder of a note that is not there")});
        }
    }
    return findings;
}

void repair(dao::Database& database, const std::vector<Finding>& findings) {
    dao::Transaction transaction(database);
    for (const Finding& finding : findings) {
        const Ref<dao::Recordset> row =
            database.OpenRecordset(finding.table, dao::RecordsetType::Table);
        row->Seek(u"=", {QVariant(finding.recordID)});
        if (row->NoMatch()) {
            continue; // gone meanwhile
        }
        if (finding.repair.isEmpty()) {
            row->Delete();
            continue;
        }
        row->Edit();
        for (const dao::ValueList::Entry& entry : finding.repair) {
            row->setValue(entry.name, entry.value);
        }
        row->Update();
    }
    transaction.commit();
}

/// Copies the database beside itself; the name of the copy.
QString copyBeside(dao::Database& database) {
    const QString path = database.Name() + QStringLiteral(".before-fix");
    QString free = path;
    for (int number = 2; QFileInfo::exists(free); ++number) {
        free = path + u'-' + QString::number(number);
    }
    database.CopyTo(free);
    return free;
}

void printFindings(const CommandContext& context, const std::vector<Finding>& findings,
                   bool repaired) {
    QJsonArray array;
    for (const Finding& finding : findings) {
        if (context.line.isSet(QStringLiteral("json"))) {
            array.append(QJsonObject{{QStringLiteral("Table"), finding.table},
                                     {QStringLiteral("RecordID"), finding.recordID},
                                     {QStringLiteral("Problem"), finding.problem},
                                     {QStringLiteral("Repaired"), repaired}});
        } else {
            context.print(
                QStringLiteral("%1 %2: %3%4\n")
                    .arg(finding.table)
                    .arg(finding.recordID)
                    .arg(finding.problem, repaired ? QStringLiteral(", repaired") : QString()));
        }
    }
    if (context.line.isSet(QStringLiteral("json"))) {
        context.print(jsonText(array));
    } else if (findings.empty()) {
        context.print(QStringLiteral("No problems were found.\n"));
    }
}

} // namespace

ExitStatus checkDatabase(const CommandContext& context) {
    dao::Database& database = *context.store->database();
    const QStringList damage = database.CheckIntegrity();
    if (!damage.isEmpty()) {
        context.complain(QStringLiteral("%1 is damaged: %2")
                             .arg(context.store->notesPath(), damage.first().simplified()));
        return kExitFailed;
    }
    const std::vector<Finding> findings = findProblems(context);
    const bool fix = context.line.isSet(QStringLiteral("fix")) && !findings.empty();
    if (fix) {
        if (database.isReadOnly()) {
            throw AutomationError(
                kErrorReadOnly, QStringLiteral("yrwnotes"),
                QStringLiteral("%1 is read-only.").arg(context.store->notesPath()));
        }
        const QString copy = copyBeside(database);
        repair(database, findings);
        context.complain(QStringLiteral("The database as it was is in %1.").arg(copy));
    }
    printFindings(context, findings, fix);
    if (findings.empty() || fix) {
        return kExitDone;
    }
    context.complain(
        QStringLiteral("%1 problem(s) were found; --fix repairs them.").arg(findings.size()));
    return kExitFailed;
}

} // namespace yrw
