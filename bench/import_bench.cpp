// How fast an old database of 100,000 notes becomes a new one, whole and on the disk, beside plain
// inserts of the same rows into the same table in one transaction.
#include "platform/clock/Clock.h"
#include "platform/files/FileSystem.h"
#include "store/NotesImport.h"
#include "tests/support/OldDatabase.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>

#include <sqlite3.h>
#include <sys/resource.h>

using namespace yrw;

namespace {

constexpr int kNotes = 100'000;
constexpr int kFirstKey = 1000;
constexpr int kTextBytes = 400;
constexpr int kRounds = 3;

/// What some work took, in seconds: on the clock, and of the processors, with the processes that it
/// waited for. On a machine that does other work the latter is what can be compared.
struct Taken {
    double clock = 1e9;
    double processor = 1e9;
    void keepLeast(const Taken& other) {
        clock = std::min(clock, other.clock);
        processor = std::min(processor, other.processor);
    }
};

double processorSeconds() {
    double sum = 0;
    for (const auto who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        getrusage(who, &usage);
        for (const timeval& part : {usage.ru_utime, usage.ru_stime}) {
            sum += double(part.tv_sec) + double(part.tv_usec) / 1e6;
        }
    }
    return sum;
}

Taken taken(const std::function<void()>& work) {
    QElapsedTimer timer;
    const double before = processorSeconds();
    timer.start();
    work();
    return {double(timer.nsecsElapsed()) / 1e9, processorSeconds() - before};
}

void require(bool holds, const char* what) {
    if (!holds) {
        qFatal("%s failed", what);
    }
}

/// Copies the rows of `tblNotes` from a file into another one that has none, one insert each.
void insertPlainly(const QString& from, const QString& to) {
    sqlite3* source = nullptr;
    sqlite3* target = nullptr;
    require(sqlite3_open(from.toUtf8().constData(), &source) == SQLITE_OK, "open");
    require(sqlite3_open(to.toUtf8().constData(), &target) == SQLITE_OK, "open");
    sqlite3_stmt* rows = nullptr;
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(source, "SELECT * FROM tblNotes", -1, &rows, nullptr);
    const int columns = sqlite3_column_count(rows);
    QByteArray sql = "INSERT INTO tblNotes VALUES (?";
    sql += QByteArray(",?").repeated(columns - 1) + ')';
    require(sqlite3_prepare_v2(target, sql.constData(), -1, &insert, nullptr) == SQLITE_OK, "sql");
    sqlite3_exec(target, "PRAGMA synchronous = FULL; BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    while (sqlite3_step(rows) == SQLITE_ROW) {
        for (int i = 0; i < columns; ++i) {
            sqlite3_bind_value(insert, i + 1, sqlite3_column_value(rows, i));
        }
        require(sqlite3_step(insert) == SQLITE_DONE, "insert");
        sqlite3_reset(insert);
    }
    require(sqlite3_exec(target, "COMMIT", nullptr, nullptr, nullptr) == SQLITE_OK, "commit");
    sqlite3_finalize(rows);
    sqlite3_finalize(insert);
    sqlite3_close(source);
    sqlite3_close(target);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    FileSystem files;
    const QTemporaryDir folder;
    const QString shipped = QCoreApplication::applicationDirPath() + QStringLiteral("/DB/YRWNOTES");
    test::OldDatabase old;
    old.addNotes(kFirstKey, kNotes, QByteArray("p\0", 2).repeated(kTextBytes / 2));
    const QString oldFile = old.write(folder.filePath(QStringLiteral("old.mdb")));
    Taken imported;
    Taken inserted;
    for (int i = 0; i < kRounds; ++i) {
        const QString made = folder.filePath(QStringLiteral("made%1.mdb").arg(i));
        ImportReport report;
        imported.keepLeast(taken([&] {
            require(importIntoNewFile(oldFile, made, {Clock::instance(), files}, {}, {}, report) ==
                        ImportEnd::Imported,
                    "import");
        }));
        require(report.rowsRead() > kNotes, "reading every row");
        const QString plain = folder.filePath(QString::number(i));
        QDir().mkpath(plain);
        createNotesDatabase(files, shipped, plain);
        inserted.keepLeast(
            taken([&] { insertPlainly(made, plain + QStringLiteral("/Notes.mdb")); }));
    }
    std::printf("%d notes of %d bytes imported  %6.2f s (processor %5.2f s)  plain inserts %6.2f s "
                "(%5.2f s)  rate %.2f of theirs (processor %.2f; >= 0.3)\n",
                kNotes, kTextBytes, imported.clock, imported.processor, inserted.clock,
                inserted.processor, inserted.clock / imported.clock,
                inserted.processor / imported.processor);
    return 0;
}
