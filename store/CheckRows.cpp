// What is wrong with single rows.
#include "store/CheckParts.h"

#include "platform/dao/FieldValue.h"
#include "platform/rtf/Reader.h"
#include "platform/rtf/Writer.h"

#include <QHash>

namespace yrw {

namespace {

const QString kRecordID = QStringLiteral("RecordID");
const QString kRTFNote = QStringLiteral("RTFNote");
const QString kReminderType = QStringLiteral("ReminderType");

/// A field that holds one of a few codes.
struct CodeField {
    QString name;
    int lowest;
    int highest;
    bool mayBeNull;
    int standard; ///< in place of an unknown code
};

const std::vector<CodeField>& codesOf(const QString& table) {
    static const std::vector<CodeField> notes{
        {QStringLiteral("Status"), 1, 2, false, int(NoteStatus::Active)},
        // Old databases have 0 and 3, which read as public.
        {QStringLiteral("NoteType"), 0, 3, true, int(NoteType::Public)},
        {kReminderType, 0, 4, true, int(ReminderKind::None)}};
    // A new reminder has no status of its own; the answers write 2, 3 and 4.
    static const std::vector<CodeField> reminders{
        {QStringLiteral("Status"), 1, 4, true, int(ReminderStatus::Open)}};
    static const std::vector<CodeField> none;
    return table == schema::kTblNotes ? notes : table == schema::kTblReminders ? reminders : none;
}

QString shown(const QVariant& value) {
    constexpr qsizetype longest = 40;
    if (value.isNull()) {
        return QStringLiteral("Null");
    }
    const QString text = value.toString();
    return u'\'' + (text.size() > longest ? text.left(longest) + u'\u2026' : text) + u'\'';
}

class RowCheck {
public:
    RowCheck(dao::Database& database, const CheckRules& rules)
        : m_database(database), m_rules(rules) {}

    std::vector<Finding> run() {
        forEachRow(schema::kTblNotes, [this](const dao::Recordset& row) {
            checkFields(row, schema::kTblNotes);
            checkBody(row);
            rememberNote(row);
        });
        forEachRow(schema::kTblReminders,
                   [this](const dao::Recordset& row) { checkReminder(row); });
        for (const QString& table : {schema::kTblSystem, schema::kTblLinkedColumnDefs}) {
            forEachRow(table, [&](const dao::Recordset& row) { checkFields(row, table); });
        }
        return std::move(m_findings);
    }

private:
    template <class Check>
    void forEachRow(const QString& table, const Check& check) {
        if (!m_database.hasTable(table) || !m_database.hasField(table, kRecordID)) {
            return; // said already
        }
        const Ref<dao::Recordset> rows = m_database.OpenRecordset(
            QStringLiteral("SELECT %1.* FROM %1 ORDER BY [RecordID]").arg(table),
            dao::RecordsetType::ForwardOnly, dao::kReadOnlyOption);
        for (; !rows->AtEof(); rows->MoveNext()) {
            m_rules.step();
            check(*rows);
        }
    }

    void checkFields(const dao::Recordset& row, const QString& table) {
        const std::vector<CodeField>& codes = codesOf(table);
        for (int column = 0; column < row.FieldCount(); ++column) {
            const QString name = row.FieldName(column);
            const QVariant value = row.value(column);
            const dao::StoredValue judged =
                dao::judgeStoredValue(value, {row.TypeOf(column), row.textSizeOf(column)});
            const auto code = std::find_if(codes.begin(), codes.end(),
                                           [&](const CodeField& c) { return c.name == name; });
            if (code != codes.end()) {
                checkCode(row, table, *code, judged.isImpossible ? judged.reading : value);
            } else if (judged.isImpossible) {
                const QString problem =
                    QStringLiteral("%1 in %2 is no value of that field").arg(shown(value), name);
                if (judged.reading) {
                    add(row, table, problem, Remedy::Write, {{name, *judged.reading}});
                } else {
                    add(row, table, problem, Remedy::None);
                }
            }
        }
    }

    /// `value` is nothing where what is stored cannot be read as a number.
    void checkCode(const dao::Recordset& row, const QString& table, const CodeField& code,
                   const std::optional<QVariant>& value) {
        const QVariant stored = row.value(code.name);
        const bool isKnown = value && (value->isNull() ? code.mayBeNull
                                                       : value->toLongLong() >= code.lowest &&
                                                             value->toLongLong() <= code.highest);
        if (!isKnown) {
            if (code.name == kReminderType) {
                m_unknownKinds.insert(row.value(kRecordID).toLongLong(), m_findings.size());
            }
            add(row, table, QStringLiteral("unknown code %1 in %2").arg(shown(stored), code.name),
                Remedy::Write, {{code.name, code.standard}});
        } else if (stored != *value) {
            add(row, table,
                QStringLiteral("%1 in %2 is no value of that field").arg(shown(stored), code.name),
                Remedy::Write, {{code.name, *value}});
        }
    }

    void checkBody(const dao::Recordset& note) {
        const QString text = note.value(kRTFNote).toString();
        if (text.isEmpty()) {
            return;
        }
        const rtf::Document document = rtf::read(QStringView(text));
        if (rtf::isRtf(text) && !document.incomplete) {
            return;
        }
        add(note, schema::kTblNotes,
            rtf::isRtf(text) ? QStringLiteral("rich text is cut off or damaged")
                             : QStringLiteral("rich text is no rich text"),
            Remedy::Write, {{kRTFNote, QString::fromLatin1(rtf::write(document))}});
    }

    void rememberNote(const dao::Recordset& note) {
        NoteFacts facts;
        // A note of an old database that says nothing of them may have some.
        const QVariant kind = note.value(kReminderType);
        facts.hasReminders = kind.isNull() || kind.toInt() != int(ReminderKind::None);
        const QString host = note.value(QStringLiteral("OwnerComponentProgID")).toString();
        facts.isOfHost =
            host.isEmpty() || host.compare(m_rules.hostProgID, Qt::CaseInsensitive) == 0;
        m_notes.insert(note.value(kRecordID).toLongLong(), facts);
    }

    void checkReminder(const dao::Recordset& reminder) {
        const qint64 noteID = reminder.value(QStringLiteral("NoteID")).toLongLong();
        const auto note = m_notes.constFind(noteID);
        const auto unknown = m_unknownKinds.constFind(noteID);
        if (unknown != m_unknownKinds.constEnd()) {
            // Whom it reminds, its reminders tell.
            m_findings[*unknown].values.set(kReminderType, int(ReminderKind::SelectedUsers));
        }
        const qint64 userID = reminder.value(QStringLiteral("UserID")).toLongLong();
        const bool isDismissed = reminder.value(QStringLiteral("Status")).toInt() ==
                                 static_cast<int>(ReminderStatus::Dismissed);
        QString problem;
        if (note == m_notes.constEnd()) {
            problem = QStringLiteral("reminder of a note that is not there");
        } else if (!note->hasReminders && unknown == m_unknownKinds.constEnd()) {
            problem = QStringLiteral("reminder of a note that reminds nobody");
        } else if (m_rules.userIDs && note->isOfHost && !isDismissed &&
                   !m_rules.userIDs->contains(userID)) {
            problem = QStringLiteral("reminder of user %1, who is none of the host's").arg(userID);
        }
        if (problem.isEmpty()) {
            checkFields(reminder, schema::kTblReminders);
        } else {
            add(reminder, schema::kTblReminders, problem, Remedy::Delete);
        }
    }

    void add(const dao::Recordset& row, const QString& table, const QString& problem, Remedy remedy,
             const dao::ValueList& values = {}) {
        m_findings.push_back({table, row.value(kRecordID).toLongLong(), problem, remedy, values});
    }

    struct NoteFacts {
        bool hasReminders = false;
        bool isOfHost = false;
    };
    dao::Database& m_database;
    const CheckRules& m_rules;
    QHash<qint64, NoteFacts> m_notes;
    QHash<qint64, size_t> m_unknownKinds; ///< by note, the finding that tells of its code
    std::vector<Finding> m_findings;
};

} // namespace

std::vector<Finding> findRowProblems(dao::Database& database, const CheckRules& rules) {
    return RowCheck(database, rules).run();
}

} // namespace yrw
