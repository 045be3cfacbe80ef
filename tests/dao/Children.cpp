#include "tests/dao/Children.h"

#include "platform/dao/Database.h"
#include "platform/dao/OnlineBackup.h"
#include "tests/dao/DaoFixture.h"

#include <QRandomGenerator>

#include <cstdio>

#include <unistd.h>

namespace yrw::dao {

namespace {

Ref<Database> open(const QString& file) {
    static FileSystem files;
    return createWorkspace({Clock::instance(), files})->OpenDatabase(file);
}

/// Writes until it is killed; acknowledges each note on a line once it is committed.
int writeForEver(const QString& file) {
    const auto database = open(file);
    for (;;) {
        std::printf("%lld\n", addNoteWithReminder(*database));
        std::fflush(stdout);
    }
}

void changeOne(Database& database, QRandomGenerator& random, int number) {
    const auto rows =
        database.OpenRecordset(u"SELECT * FROM qryNotes WHERE [OwnerRecordID]=%1"_qs.arg(number));
    if (rows->AtEof()) {
        return;
    }
    rows->setAbsolutePosition(random.bounded(int(rows->RecordCount())));
    rows->Edit();
    rows->setValue(u"Status", rows->value(u"Status").toInt() + 1);
    rows->Update();
}

/// Adds, changes, deletes, lists and seeks; adds to a counter that all children share.
int mixOperations(const QString& file, int number, int operations) {
    const auto database = open(file);
    QRandomGenerator random{quint32(number)};
    for (int i = 0; i < operations; ++i) {
        switch (random.bounded(5)) {
        case 0:
            add(*database, u"tblNotes"_qs, {{u"OwnerRecordID"_qs, number}});
            break;
        case 1:
            changeOne(*database, random, number);
            break;
        case 2: {
            const qint64 note = addNoteWithReminder(*database);
            database->ExecuteQuery(u"delRemindersByNoteID"_qs, {{u"NoteID"_qs, note}});
            database->ExecuteQuery(u"delNoteByID"_qs, {{u"RecordID"_qs, note}});
            break;
        }
        case 3: {
            const auto rows = database->OpenRecordset(u"qryNotes"_qs, RecordsetType::ForwardOnly);
            for (; !rows->AtEof(); rows->MoveNext()) {
                static_cast<void>(rows->value(u"Subject"));
            }
            break;
        }
        default: {
            Transaction transaction(*database);
            const auto rows = database->OpenRecordset(u"SELECT * FROM tblSettings"_qs);
            rows->Edit();
            rows->setValue(u"HighlightRowColour",
                           rows->value(u"HighlightRowColour").toLongLong() + 1);
            rows->Update();
            transaction.commit();
            std::printf("+\n");
        }
        }
    }
    return 0;
}

int notesIn(Database& database) {
    return database.OpenRecordset(u"SELECT Count(*) FROM tblNotes"_qs)->value(0).toInt();
}

/// Reads as a user who may not write: the number of notes, for each line that comes in; -1 when a
/// backup has another number.
int readWhenAsked(const QString& file) {
    constexpr uid_t kNobody = 65534;
    if (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0) {
        return 1;
    }
    const auto database = open(file);
    for (char line[16]; std::fgets(line, sizeof line, stdin) != nullptr;) {
        const QTemporaryDir own;
        const QString copy = own.filePath(u"copy.mdb"_qs);
        database->beginBackup(copy, ExistingCopy::Keep)->finish();
        const int notes = notesIn(*database);
        std::printf("%d\n", database->isReadOnly() && notesIn(*open(copy)) == notes ? notes : -1);
        std::fflush(stdout);
    }
    return 0;
}

} // namespace

int runChild(const QStringList& arguments) {
    try {
        if (arguments.size() == 3 && arguments[1] == u"--writer") {
            return writeForEver(arguments[2]);
        }
        if (arguments.size() == 3 && arguments[1] == u"--reader") {
            return readWhenAsked(arguments[2]);
        }
        if (arguments.size() == 5 && arguments[1] == u"--mixed") {
            return mixOperations(arguments[2], arguments[3].toInt(), arguments[4].toInt());
        }
    } catch (const AutomationError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 3;
    }
    return -1;
}

} // namespace yrw::dao
