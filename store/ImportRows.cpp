#include "store/ImportRows.h"

#include "platform/rtf/Reader.h"
#include "store/Schema.h"

#include <algorithm>

namespace yrw {

namespace {

const QString kRecordID = QStringLiteral("RecordID");
const QString kNoteID = QStringLiteral("NoteID");
const QString kUserID = QStringLiteral("UserID");
const QString kReminderType = QStringLiteral("ReminderType");

QHash<QString, QString> byLowerCase(const QHash<QString, QString>& map) {
    QHash<QString, QString> lower;
    for (auto entry = map.constBegin(); entry != map.constEnd(); ++entry) {
        lower.insert(entry.key().toLower(), entry.value());
    }
    return lower;
}

QString shown(const QVariant& value) {
    return value.isNull() ? QStringLiteral("Null") : value.toString();
}

/// Fields of a row that are never changed, the surest last.
QStringList lastingFields(const QString& table) {
    return table == schema::kTblNotes
               ? QStringList{kRecordID, QStringLiteral("RecordUserID"), QStringLiteral("Date")}
               : QStringList{kRecordID, kNoteID, kUserID, QStringLiteral("OriginalDate")};
}

/// A linked column by what it links.
QString linkOf(const QVariant& layout, const QVariant& field) {
    return layout.toString().toLower() + u'\n' + field.toString().toLower();
}

} // namespace

ImportRows::ImportRows(dao::Database& target, const ImportChoices& choices, bool isFresh,
                       ImportReport& report)
    : m_target(target), m_choices(choices), m_isFresh(isFresh), m_report(report), m_users(choices),
      m_imported(target, choices.isDryRun), m_programs(byLowerCase(choices.programs)),
      m_ownerKeys(byLowerCase(choices.ownerKeys)) {
    m_report.tables.reserve(size_t(tables().size())); // rows refer to them
    for (const QString& code : m_users.unknown()) {
        m_report.others += QStringLiteral("Nobody knows the number of user %1; what was mapped to "
                                          "that code keeps its own.")
                               .arg(code);
    }
}

QStringList ImportRows::tables() {
    return {schema::kTblNotes,    schema::kTblReminders,        schema::kTblSystem,
            schema::kTblSettings, schema::kTblLinkedColumnDefs, schema::kTblUserNames};
}

// What is read.

void ImportRows::beginTable(const jet::JetTable& table) {
    const QStringList known = tables();
    const auto name = std::find_if(known.begin(), known.end(), [&](const QString& one) {
        return one.compare(table.name, Qt::CaseInsensitive) == 0;
    });
    if (name == known.end()) {
        m_report.others +=
            QStringLiteral("%1: left out, the notes database has no such table").arg(table.name);
        return;
    }
    ImportedTable report;
    report.name = *name;
    report.told = table.rows;
    m_report.tables.push_back(std::move(report));
    m_table =
        std::make_unique<ImportTable>(m_target, table, m_report.tables.back(), m_choices.isDryRun);
    m_printer = std::make_unique<RowPrinter>(table, lastingFields(*name));
    m_stored = m_target.OpenRecordset(*name, dao::RecordsetType::Table);
}

void ImportRows::row(const jet::JetRow& row) {
    if (!m_table) {
        return;
    }
    ++m_table->report().read;
    m_table->take(row);
    const QString& name = m_table->report().name;
    if (name == schema::kTblNotes) {
        takeNote(row);
    } else if (name == schema::kTblReminders) {
        takeReminder(row);
    } else if (name == schema::kTblSystem) {
        takeSystemRow();
    } else if (name == schema::kTblSettings) {
        takeSettings();
    } else if (name == schema::kTblLinkedColumnDefs) {
        takeLinkedColumn();
    } else {
        takeUserName();
    }
}

void ImportRows::badRow() {
    if (m_table) {
        ++m_badRows;
        m_table->report().remark(QStringLiteral("could not be read"), true, 0);
    }
}

void ImportRows::endTable(bool isWhole) {
    if (m_table && !isWhole) {
        m_table->report().remark(QStringLiteral("the table is damaged; rows may be missing"), true,
                                 std::nullopt);
    }
    if (m_table && m_table->report().read + m_badRows < m_table->report().told) {
        m_table->report().remark(QStringLiteral("the file tells of %1 row(s); the others were not "
                                                "found")
                                     .arg(m_table->report().told),
                                 true, std::nullopt);
    }
    m_badRows = 0;
    m_table.reset();
    m_stored.reset();
}

// Notes and reminders.

void ImportRows::takeNote(const jet::JetRow& row) {
    RowPrint print = m_printer->of(row, {});
    const std::optional<qint64> oldKey = m_table->oldKey();
    remarkOnNote();
    QVariant authorID = m_table->value(u"RecordUserID");
    QVariant authorCode = m_table->value(u"RecordUserCode");
    m_users.mapAuthor(authorID, authorCode);
    m_table->setValue(u"RecordUserID", authorID);
    m_table->setValue(u"RecordUserCode", authorCode);
    map(m_programs, u"OwnerComponentProgID");
    map(m_programs, u"OwnerProgID");
    map(m_ownerKeys, u"OwnerObjectKey");
    const bool remindsNobody = m_table->value(kReminderType).toInt() == int(ReminderKind::None);
    const bool isTaken = oldKey && m_notes.contains(*oldKey);
    const qint64 before = m_table->report().written;
    const qint64 key = writeJudged(print, oldKey && !isTaken);
    bool isGone = false;
    if (m_table->report().written == before) {
        m_stored->Seek(u"=", {QVariant(key)});
        isGone = m_stored->NoMatch();
    }
    if (oldKey && !isTaken) {
        m_notes.insert(*oldKey, {key, print.origin, remindsNobody, isGone});
    }
    m_highestNote = std::max(m_highestNote, key);
}

/// Says what there is to say of a note that is taken over as it is.
void ImportRows::remarkOnNote() const {
    const QVariant status = m_table->value(u"Status");
    if (status != int(NoteStatus::Active) && status != int(NoteStatus::Done)) {
        m_table->remark(
            QStringLiteral("Status %1 is neither active nor done; kept, and in no list that shows "
                           "one of these")
                .arg(shown(status)),
            false);
    }
    const int kind = m_table->value(kReminderType).toInt();
    if (kind < int(ReminderKind::None) || kind > int(ReminderKind::MyGroup)) {
        m_table->remark(QStringLiteral("ReminderType %1 is no known kind; kept").arg(kind), false);
    }
    const QString rich = m_table->value(u"RTFNote").toString();
    if (rich.isEmpty()) {
        return;
    }
    if (!rtf::isRtf(rich)) {
        m_table->remark(
            QStringLiteral("the rich text cannot be read; it is kept, and the plain text is shown"),
            false);
    } else if (auto last = std::find_if(rich.crbegin(), rich.crend(),
                                        [](QChar c) { return !c.isNull() && !c.isSpace(); });
               last == rich.crend() || *last != u'}') {
        m_table->remark(QStringLiteral("the rich text has no end; it is kept"), false);
    }
}

void ImportRows::takeReminder(const jet::JetRow& row) {
    const QVariant noteID = m_table->value(kNoteID);
    const auto note = noteID.isNull() ? m_notes.constEnd() : m_notes.constFind(noteID.toLongLong());
    const bool hasNote = note != m_notes.constEnd();
    RowPrint print = m_printer->of(row, hasNote ? note->origin : QString());
    const std::optional<qint64> oldKey = m_table->oldKey();
    if (!hasNote) {
        if (!m_isFresh && m_imported.judge(print).kind == ImportedRows::Kind::Present) {
            ++m_table->report().present;
            return;
        }
        if (!m_isFresh) {
            m_table->remark(
                QStringLiteral("left out: its note %1 is not in the file").arg(shown(noteID)),
                true);
            return;
        }
        m_table->remark(QStringLiteral("kept, though its note %1 is not there").arg(shown(noteID)),
                        false);
        m_highestMissing = std::max(m_highestMissing, noteID.toLongLong());
    } else if (note->isGone) {
        m_table->remark(QStringLiteral("left out: its note came before and was deleted since"),
                        false);
        return;
    } else {
        m_table->setValue(kNoteID, note->key);
    }
    m_table->setValue(kUserID, m_users.mapNumber(m_table->value(kUserID)));
    const bool isFree = oldKey && !m_reminders.contains(*oldKey);
    const qint64 before = m_table->report().written;
    writeJudged(print, isFree);
    if (oldKey) {
        m_reminders.insert(*oldKey);
    }
    if (hasNote && note->remindsNobody && m_table->report().written > before) {
        m_table->remark(QStringLiteral("kept; its note does not say that it has reminders, and "
                                       "loses them when its properties are changed"),
                        false);
    }
}

/// Writes the row that was taken, unless it came before. Its key in the target.
qint64 ImportRows::writeJudged(RowPrint& print, bool hasKey) {
    using Kind = ImportedRows::Kind;
    const ImportedRows::Judged judged = m_imported.judge(print);
    switch (judged.kind) {
    case Kind::Present:
        ++m_table->report().present;
        return judged.key;
    case Kind::Changed:
        m_table->remark(QStringLiteral("left out: it came before, and was changed in the old file "
                                       "since"),
                        true);
        return judged.key;
    case Kind::PresentTwice:
        m_table->remark(QStringLiteral("is in the file twice; it came once"), false);
        return judged.key;
    case Kind::Clash:
    case Kind::New:
        break;
    }
    const std::optional<qint64> oldKey = m_table->oldKey();
    if (!m_isFresh || !hasKey) {
        m_table->forgetKey();
    }
    if (m_isFresh && !hasKey) {
        m_table->remark(QStringLiteral("has a new key: another row has the same, or it had none"),
                        false);
    }
    const qint64 key = m_table->write();
    m_imported.add(m_table->report().name, oldKey, key, print);
    return key;
}

void ImportRows::map(const QHash<QString, QString>& map, QStringView field) {
    const QVariant value = m_table->value(field);
    if (map.isEmpty() || value.isNull()) {
        return;
    }
    if (const auto found = map.constFind(value.toString().toLower()); found != map.constEnd()) {
        m_table->setValue(field, *found);
    }
}

// Settings.

/// Gives a stored row what it has no value for.
void ImportRows::fillGaps(dao::Recordset& stored) {
    bool isFilled = false;
    bool isOther = false;
    stored.Edit();
    for (int column = 0; column < stored.FieldCount(); ++column) {
        const QString name = stored.FieldName(column);
        const QVariant value = m_table->value(name);
        const QVariant here = stored.value(column);
        if (value.isNull() || name == kRecordID) {
            continue;
        }
        if (here.isNull()) {
            stored.setValue(column, value);
            isFilled = true;
        } else if (here.toString() != value.toString()) {
            isOther = true;
            m_table->remark(
                QStringLiteral("%1 is left out, the notes database has another value").arg(name),
                true);
        }
    }
    if (isFilled && !m_choices.isDryRun) {
        stored.Update();
    } else {
        stored.CancelUpdate();
    }
    if (isFilled) {
        ++m_table->report().written;
    } else if (!isOther) {
        ++m_table->report().present;
    }
}

void ImportRows::takeSystemRow() {
    m_stored->Seek(u"=", {m_table->value(kRecordID)});
    if (m_stored->NoMatch()) {
        m_table->write();
    } else {
        fillGaps(*m_stored);
    }
}

void ImportRows::takeSettings() {
    if (m_table->report().read > 1) {
        m_table->remark(QStringLiteral("left out: there is one row of settings"), true);
        return;
    }
    m_stored->MoveFirst();
    if (m_stored->AtEof()) {
        m_table->write();
    } else {
        fillGaps(*m_stored);
    }
}

void ImportRows::takeLinkedColumn() {
    if (m_table->report().read == 1) {
        if (m_isFresh && !m_choices.isDryRun) {
            m_target.RunScript(
                QStringLiteral("DELETE FROM tblLinkedColumnDefs")); // those that ship
        }
        for (m_stored->MoveFirst(); !m_isFresh && !m_stored->AtEof(); m_stored->MoveNext()) {
            m_linkedColumns.insert(
                linkOf(m_stored->value(u"GridLayoutName"), m_stored->value(u"GridField")));
        }
    }
    if (m_linkedColumns.contains(
            linkOf(m_table->value(u"GridLayoutName"), m_table->value(u"GridField")))) {
        ++m_table->report().present;
        return;
    }
    map(m_ownerKeys, u"ObjectKey");
    if (!m_isFresh) {
        m_table->forgetKey();
    }
    m_table->write();
}

void ImportRows::takeUserName() {
    m_stored->Seek(u"=", {m_users.mapNumber(m_table->value(kUserID))});
    if (!m_stored->NoMatch() || m_table->value(kUserID).isNull()) {
        ++m_table->report().present;
        return;
    }
    m_table->setValue(kUserID, m_users.mapNumber(m_table->value(kUserID)));
    m_table->write();
}

// The end.

void ImportRows::finish() {
    const QStringList wanted = tables();
    for (const QString& name : wanted) {
        const bool hasCome =
            std::any_of(m_report.tables.begin(), m_report.tables.end(),
                        [&](const ImportedTable& table) { return table.name == name; });
        if (hasCome || name == schema::kTblUserNames) { // which old databases have not
            continue;
        }
        m_report.tables.emplace_back().name = name;
        m_report.tables.back().remark(QStringLiteral("the table was not found"), true,
                                      std::nullopt);
    }
    if (m_isFresh && !m_choices.isDryRun) {
        passOverKeys();
    }
}

/// A new note must not get a key that a reminder of a note that is gone still has.
void ImportRows::passOverKeys() {
    if (m_highestMissing <= m_highestNote) {
        return;
    }
    const Ref<dao::Recordset> notes =
        m_target.OpenRecordset(schema::kTblNotes, dao::RecordsetType::Table);
    notes->AddNew();
    notes->setValue(kRecordID, m_highestMissing);
    notes->Update();
    notes->setBookmark(notes->LastModified());
    notes->Delete();
    notes->Close();
}

int ImportRows::percent() const {
    constexpr int kOfOthers = 10; // notes are most of the work
    if (m_report.tables.empty()) {
        return 0;
    }
    const ImportedTable& last = m_report.tables.back();
    const qint64 share = last.told > 0 ? qMin<qint64>(100, 100 * last.read / last.told) : 0;
    return last.name == schema::kTblNotes ? int(share * (100 - kOfOthers) / 100)
                                          : 100 - kOfOthers + int(share * kOfOthers / 101);
}

} // namespace yrw
