// Times the data layer against what lies below it: each line prints a ratio whose two sides were
// measured in this run.
//
// bench_dao [--quick] [seek|list|due|commit|writers ...]: with --quick without the largest tables,
// with names those alone.

#include "platform/clock/Clock.h"
#include "platform/dao/Connection.h"
#include "platform/dao/Database.h"
#include "platform/files/FileSystem.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <sqlite3.h>
#include <time.h>
#include <unistd.h>

namespace {

using namespace yrw;
using namespace yrw::dao;

using Timer = std::chrono::steady_clock;
constexpr int kPageRows = 40;

double nanoseconds(const std::function<void()>& work) {
    const auto start = Timer::now();
    work();
    return double(
        std::chrono::duration_cast<std::chrono::nanoseconds>(Timer::now() - start).count());
}

/// Processor time of the process in nanoseconds: what others do on the machine does not count.
double busyNanoseconds(const std::function<void()>& work) {
    const auto now = [] {
        timespec time{};
        ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return double(time.tv_sec) * 1e9 + double(time.tv_nsec);
    };
    const double start = now();
    work();
    return now() - start;
}

/// Least of several measurements, per unit of work.
double best(int repetitions, double units, const std::function<void()>& work,
            double (*measure)(const std::function<void()>&) = &busyNanoseconds) {
    double least = measure(work);
    for (int i = 1; i < repetitions; ++i) {
        least = std::min(least, measure(work));
    }
    return least / units;
}

/// Runs work as the handlers of a window run: inside the event loop.
void inEventLoop(const std::function<void()>& work) {
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&] {
        work();
        loop.quit();
    });
    loop.exec();
}

void print(const char* what, qint64 size, double ours, double baseline, const char* target) {
    std::printf("%-34s %9lld  %12.0f ns  baseline %12.0f ns  ratio %9.4f  (%s)\n", what,
                static_cast<long long>(size), ours, baseline, ours / baseline, target);
    std::fflush(stdout);
}

/// A notes database in a folder of its own, with a connection of the engine beside it.
class Bench {
public:
    explicit Bench(qint64 notes, int bodyBytes) {
        const auto fresh = m_workspace->CreateDatabase(path());
        QFile script(QStringLiteral(YRW_SOURCE_DIR "/template/DB/YRWNOTES/Notes.sql"));
        if (!script.open(QIODevice::ReadOnly)) {
            qFatal("the creation script is not there");
        }
        fresh->RunScript(QString::fromUtf8(script.readAll()));
        fresh->RunScript(
            QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i "
                           "< %1) INSERT INTO tblNotes (Subject, OwnerComponentProgID, "
                           "OwnerObjectKey, OwnerRecordID, RecordUserID, RecordUserCode, Date, "
                           "PlainNote, RTFNote) SELECT 'Subject of note ' || i, "
                           "'YRWDesk.Application', 'cu', i, 1, 'ANNA', '2026-06-01 12:00:00', "
                           "printf('%.*c', %2, 'p'), printf('%.*c', %3, 'r') FROM n WHERE %1 > 0")
                .arg(notes)
                .arg(bodyBytes)
                .arg(bodyBytes * 3));
        fresh->Close();
        database = m_workspace->OpenDatabase(path());
        sqlite3_open(path().toUtf8().constData(), &raw);
    }
    ~Bench() { sqlite3_close(raw); }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("Notes.mdb")); }
    [[nodiscard]] sqlite3_stmt* prepare(const char* sql) const {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(raw, sql, -1, &statement, nullptr) != SQLITE_OK) {
            qFatal("%s", sqlite3_errmsg(raw));
        }
        return statement;
    }
    void execute(const char* sql) const { sqlite3_exec(raw, sql, nullptr, nullptr, nullptr); }

    Ref<Database> database;
    sqlite3* raw = nullptr;

private:
    QTemporaryDir m_folder;
    FileSystem m_files;
    Ref<Workspace> m_workspace = createWorkspace({Clock::instance(), m_files});
};

/// Start rows of the pages that both sides visit.
std::vector<qint64> pages(qint64 notes, int count) {
    QRandomGenerator random(7);
    std::vector<qint64> starts;
    for (int i = 0; i < count; ++i) {
        starts.push_back(qint64(random.bounded(quint64(std::max<qint64>(1, notes - kPageRows)))));
    }
    return starts;
}

void seekBare(const Bench& bench, sqlite3_stmt* statement, const std::vector<qint64>& starts) {
    for (const qint64 start : starts) {
        bench.execute("BEGIN");
        for (int row = 0; row < kPageRows; ++row) {
            sqlite3_bind_text(statement, 1, "YRWDesk.Application", -1, SQLITE_STATIC);
            sqlite3_bind_text(statement, 2, "cu", -1, SQLITE_STATIC);
            sqlite3_bind_int64(statement, 3, start + row);
            sqlite3_bind_int64(statement, 4, 1);
            sqlite3_step(statement);
            sqlite3_reset(statement);
        }
        bench.execute("COMMIT");
    }
}

void seekOurs(Database& database, Recordset& seek, const std::vector<qint64>& starts) {
    const QString index =
        QStringLiteral("OwnerComponentProgID:OwnerObjectKey:OwnerRecordID:Status");
    const QString component = QStringLiteral("YRWDesk.Application");
    const QString key = QStringLiteral("cu");
    qint64 found = 0;
    for (const qint64 start : starts) {
        for (int row = 0; row < kPageRows; ++row) {
            seek.setIndex(index);
            seek.Seek(u"=", {component, key, start + row, 1});
            found += seek.NoMatch() ? 0 : 1;
        }
        database.connection().endRead();
    }
    if (found == 0) {
        qFatal("no seek found a note");
    }
}

void benchSeek(qint64 notes) {
    const Bench bench(notes, 40);
    sqlite3_stmt* statement = bench.prepare(
        "SELECT rowid FROM tblNotes WHERE OwnerComponentProgID = ? AND OwnerObjectKey = ? AND "
        "OwnerRecordID = ? AND Status = ?");
    const auto starts = pages(notes, 1000);
    const double units = double(starts.size()) * kPageRows;
    const auto seek = bench.database->OpenRecordset(QStringLiteral("tblNotes"),
                                                    RecordsetType::Table, kReadOnlyOption);
    double ours = 0;
    double bare = 0;
    inEventLoop([&] {
        seekBare(bench, statement, starts);
        bare = best(5, units, [&] { seekBare(bench, statement, starts); });
        ours = best(5, units, [&] { seekOurs(*bench.database, *seek, starts); });
    });
    sqlite3_finalize(statement);
    print("seek / bare prepared seek", notes, ours, bare, "<= 1.3");
}

double readList(Database& database, int columns) {
    const auto rows = database.OpenRecordset(QStringLiteral("SELECT qryNotes.* FROM qryNotes"),
                                             RecordsetType::ForwardOnly, kReadOnlyOption);
    static const QStringList narrow{
        QStringLiteral("RecordID"),   QStringLiteral("Subject"),  QStringLiteral("Date"),
        QStringLiteral("ChangeDate"), QStringLiteral("UseName"),  QStringLiteral("RecordUserID"),
        QStringLiteral("Status"),     QStringLiteral("NoteType"),
    };
    std::vector<int> wanted;
    for (int i = 0; i < (columns == 8 ? 8 : rows->FieldCount()); ++i) {
        wanted.push_back(columns == 8 ? rows->FieldIndex(narrow[i]) : i);
    }
    double cells = 0;
    for (; !rows->AtEof(); rows->MoveNext()) {
        for (const int column : wanted) {
            cells += rows->value(column).isNull() ? 0 : 1;
        }
    }
    return cells;
}

void benchList(qint64 notes) {
    const Bench bench(notes, 600); // and three times that with its formatting
    double few = 0;
    double all = 0;
    inEventLoop([&] {
        few = best(3, double(notes), [&] { readList(*bench.database, 8); });
        all = best(3, double(notes), [&] { readList(*bench.database, 0); });
    });
    print("list of 8 columns / of all", notes, few, all, "<= 0.7");
}

double dueReminders(Database& database) {
    const Parameters parameters{{QStringLiteral("ProgID"), QStringLiteral("YRWDesk.Application")},
                                {QStringLiteral("NumberOfMinutes"), 1},
                                {QStringLiteral("UserID"), 3}};
    return best(200, 1, [&] {
        const auto rows = database.OpenQuery(QStringLiteral("qryActiveReminders"), parameters);
        if (!rows->AtEof()) {
            qFatal("nothing is due in this data");
        }
    });
}

double dueAt(qint64 reminders, double& withoutIndex) {
    const Bench bench(1000, 40);
    bench.database->RunScript(
        QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < "
                       "%1) INSERT INTO tblReminders (NoteID, UserID, NextDate) SELECT i % 1000 + "
                       "1, i % 5 + 1, '2999-01-01 00:00:00' FROM n")
            .arg(reminders));
    sqlite3_stmt* scan = bench.prepare(
        "SELECT r.RecordID FROM tblReminders AS r NOT INDEXED WHERE r.UserID = 3 AND r.NextDate <= "
        "'2026-06-01 12:00:00' AND (r.Status IS NULL OR r.Status <> 4)");
    withoutIndex = best(5, 1, [&] {
        sqlite3_step(scan);
        sqlite3_reset(scan);
    });
    sqlite3_finalize(scan);
    double due = 0;
    inEventLoop([&] { due = dueReminders(*bench.database); });
    return due;
}

void benchDue(qint64 small, qint64 large) {
    double scan = 0;
    const double few = dueAt(small, scan);
    const double many = dueAt(large, scan);
    print("due reminders / at a tenth", large, many, few, "<= 1.2");
    print("due reminders / without index", large, many, scan, "<= 0.001 at 1,000,000");
}

void addPair(Database& database, Recordset& notes, Recordset& reminders) {
    Transaction transaction(database);
    notes.AddNew();
    notes.setValue(u"Subject", QStringLiteral("a note"));
    notes.setValue(u"PlainNote", QString(300, u'p'));
    notes.Update();
    reminders.AddNew();
    reminders.setValue(u"NoteID", notes.LastModified().place());
    reminders.setValue(u"UserID", 1);
    reminders.Update();
    transaction.commit();
}

void benchCommit() {
    constexpr int kCommits = 1000;
    const Bench bench(0, 1);
    const auto notes = bench.database->OpenRecordset(QStringLiteral("tblNotes"));
    const auto reminders = bench.database->OpenRecordset(QStringLiteral("tblReminders"));
    QFile file(bench.path() + u".plain");
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("no file to write to");
    }
    const QByteArray page(4096, 'x');
    const auto bare = [&] {
        file.seek(0);
        for (int i = 0; i < kCommits; ++i) {
            file.write(page);
            file.flush();
            ::fdatasync(file.handle());
        }
    };
    const auto commits = [&] {
        for (int i = 0; i < kCommits; ++i) {
            addPair(*bench.database, *notes, *reminders);
        }
    };
    double sync = nanoseconds(bare);
    double ours = nanoseconds(commits);
    for (int i = 1; i < 6; ++i) { // by turns, so that both meet the same disk
        sync = std::min(sync, nanoseconds(bare));
        ours = std::min(ours, nanoseconds(commits));
    }
    // Speed, so the baseline stands above.
    print("bare fdatasync / commit of a note", kCommits, sync / kCommits, ours / kCommits,
          ">= 0.5");
}

/// One of the paced writers; prints its longest wait in microseconds.
int paceWrites(const QString& path) {
    FileSystem files;
    const auto workspace = createWorkspace({Clock::instance(), files});
    const auto database = workspace->OpenDatabase(path);
    const auto notes = database->OpenRecordset(QStringLiteral("tblNotes"));
    const auto reminders = database->OpenRecordset(QStringLiteral("tblReminders"));
    double longest = 0;
    for (int i = 0; i < 250; ++i) {
        longest = std::max(longest, nanoseconds([&] { addPair(*database, *notes, *reminders); }));
        QThread::msleep(20);
    }
    std::printf("%.0f\n", longest / 1000);
    return 0;
}

void benchWriters() {
    const Bench bench(1000, 40);
    double alone = 0;
    double longest = 0;
    int failed = 0;
    for (const int writers : {1, 4}) {
        std::vector<std::unique_ptr<QProcess>> children;
        for (int i = 0; i < writers; ++i) {
            children.push_back(std::make_unique<QProcess>());
            children.back()->start(QCoreApplication::applicationFilePath(),
                                   {QStringLiteral("--writer"), bench.path()});
        }
        for (const auto& child : children) {
            child->waitForFinished(-1);
            failed += child->exitCode() == 0 ? 0 : 1;
            const double wait = child->readAllStandardOutput().toDouble() * 1000;
            (writers == 1 ? alone : longest) = std::max(writers == 1 ? alone : longest, wait);
        }
    }
    print("longest wait of 4 writers / of 1", 4, longest, alone, "<= 100 ms, no error");
    std::printf("writers that failed: %d\n", failed);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == u"--writer") {
        return paceWrites(arguments[2]);
    }
    // Without it the C library looks at the time zone's file for every date it converts.
    if (!qEnvironmentVariableIsSet("TZ")) {
        qputenv("TZ", ":/etc/localtime");
    }
    const bool quick = arguments.contains(QStringLiteral("--quick"));
    const auto asked = [&arguments, quick](const char* name) {
        return arguments.size() == (quick ? 2 : 1) || arguments.contains(QLatin1String(name));
    };
    for (const qint64 notes : {1'000, 100'000, 1'000'000}) {
        if (asked("seek") && (!quick || notes < 1'000'000)) {
            benchSeek(notes);
        }
    }
    if (asked("list")) {
        benchList(1'000);
        benchList(100'000);
    }
    if (asked("due")) {
        benchDue(quick ? 10'000 : 100'000, quick ? 100'000 : 1'000'000);
    }
    if (asked("commit")) {
        benchCommit();
    }
    if (asked("writers")) {
        benchWriters();
    }
    return 0;
}
