#pragma once

#include "platform/clock/Clock.h"
#include "platform/dao/Database.h"
#include "platform/dao/Schema.h"
#include "tests/support/Raised.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace yrw::dao {

/// Adds a row and returns its key.
inline qint64 add(Database& to, const QString& table, const ValueList& values) {
    const auto rows = to.OpenRecordset(table, RecordsetType::Table);
    rows->AddNew();
    for (const auto& [name, value] : values) {
        rows->setValue(name, value);
    }
    rows->Update();
    rows->setBookmark(rows->LastModified());
    return rows->value(u"RecordID").toLongLong();
}

/// Adds a long note and its reminder, in one transaction; the note's key.
inline qint64 addNoteWithReminder(Database& to) {
    Transaction transaction(to);
    const qint64 note =
        add(to, QStringLiteral("tblNotes"), {{QStringLiteral("PlainNote"), QString(9000, u'n')}});
    add(to, QStringLiteral("tblReminders"),
        {{QStringLiteral("NoteID"), note}, {QStringLiteral("UserID"), 1}});
    transaction.commit();
    return note;
}

/// A folder of its own with a fresh notes database, a clock that stands at noon of 1 June 2026, and
/// a workspace.
class DaoTest : public testing::Test {
protected:
    DaoTest() { makeDatabase(); }

    /// Makes the file, which must not be there, and opens it.
    void makeDatabase() {
        const Ref<Database> fresh = workspace->CreateDatabase(path());
        QFile script(QStringLiteral(YRW_SOURCE_DIR "/template/DB/YRWNOTES/Notes.sql"));
        EXPECT_TRUE(script.open(QIODevice::ReadOnly));
        fresh->RunScript(QString::fromUtf8(script.readAll()));
        fresh->Close();
        database = workspace->OpenDatabase(path());
    }

    [[nodiscard]] QString path(const QString& name = QStringLiteral("Notes.mdb")) const {
        return folder.filePath(name);
    }
    /// A second connection to the same file, as another program has.
    [[nodiscard]] Ref<Database> another() { return workspace->OpenDatabase(path()); }

    qint64 addNote(const ValueList& values) {
        return add(*database, QStringLiteral("tblNotes"), values);
    }
    qint64 addNote(const QString& subject) {
        return addNote({{QStringLiteral("Subject"), subject}});
    }

    /// The values of one column, front to back.
    static QStringList column(Recordset& rows, QStringView name) {
        QStringList values;
        for (; !rows.AtEof(); rows.MoveNext()) {
            const QVariant value = rows.value(name);
            values += value.isNull() ? QStringLiteral("Null") : value.toString();
        }
        return values;
    }

    QTemporaryDir folder;
    ManualClock clock{QDateTime(QDate(2026, 6, 1), QTime(12, 0))};
    FileSystem files;
    Ref<Workspace> workspace = createWorkspace({clock, files});
    Ref<Database> database;
};

/// Says of every file the same: on a network, or not.
class FixedMount final : public MountTest {
public:
    explicit FixedMount(bool network) : m_network(network) {}
    [[nodiscard]] bool isNetwork(const QString&) const override { return m_network; }

private:
    bool m_network;
};

/// What the names of tests call a type of recordset.
inline void PrintTo(RecordsetType type, std::ostream* stream) {
    *stream << (type == RecordsetType::Table      ? "table"
                : type == RecordsetType::Dynaset  ? "dynaset"
                : type == RecordsetType::Snapshot ? "snapshot"
                                                  : "forward only");
}

/// Number of the automation error that a call raises; 0 when it raises none.
inline int errorOf(const std::function<void()>& call) {
    return test::raisedBy(call).number();
}

} // namespace yrw::dao
