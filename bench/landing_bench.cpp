// Landing on a record and marking rows, against what lies below, in one run: the row test and bare
// prepared seeks, a scrolled page with marks and without, system calls, and the time from staying
// on a row to the painted popup.
//
// bench_landing [--benchmark_…]; on a real display: tools/with-display.sh …/bench_landing
#include "addin/AddIn.h"
#include "addin/AutoNotes.h"
#include "framework/Services.h"
#include "framework/Settings.h"
#include "platform/clock/Clock.h"
#include "platform/forms/WidgetPrompt.h"
#include "store/NotesDatabase.h"
#include "tests/support/FakeWindow.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QScrollBar>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <ctime>
#include <map>
#include <random>

#include <sqlite3.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace yrw;
using namespace yrw::test;

namespace {

constexpr int kPage = 40;
constexpr int kPages = 500;
constexpr int kPopupNotes = 20;
constexpr double kFrameMs = 1000.0 / 60;

std::map<std::string, double> results; ///< by name, for the ratios at the end

double processorSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

/// Keeps the least: what else the machine does only adds.
void keepLeast(const std::string& name, double value) {
    const auto [at, added] = results.try_emplace(name, value);
    if (!added) {
        at->second = std::min(at->second, value);
    }
}

/// Runs work as the handlers of a window run: inside the event loop.
template <class Work>
void inEventLoop(Work work) {
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&] {
        work();
        loop.quit();
    });
    loop.exec();
}

/// A host with many customers, the add-in at work, and notes spread evenly over the customers.
class World {
public:
    World(qint64 customers, qint64 notes) : m_customers(customers) {
        m_host->DAODatabase()->RunScript(
            QStringLiteral("DELETE FROM tblCustomers; INSERT INTO tblCustomers (RecordID, "
                           "CustomerName) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 "
                           "FROM n WHERE i < %1) SELECT i, 'Customer ' || i FROM n;")
                .arg(customers));
        makeNotes(notes);
        m_addIn->setComponent(window.component);
        if (!m_addIn->Activate()) {
            qFatal("the add-in does not open its database");
        }
        window.showRecords();
        window.lower->grid->hide();
        window.upper->grid->setMinimumHeight(1000); // a page of some 40 rows
        window.show();
        QApplication::processEvents();
        body = window.upper->grid->findChild<QWidget*>(QStringLiteral("gridBody(0)"));
        scroll = window.upper->grid->findChild<QScrollBar*>(QStringLiteral("gridScroll"));
        sqlite3_open(notesPath().toUtf8().constData(), &rawNotes);
        sqlite3_open((m_folder.path() + u"/Host.mdb").toUtf8().constData(), &rawHost);
    }
    ~World() {
        sqlite3_close(rawNotes);
        sqlite3_close(rawHost);
        m_addIn->DeActivate();
    }
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    [[nodiscard]] QString notesPath() const { return m_folder.filePath(kNotesDatabaseName); }
    [[nodiscard]] AddIn& addIn() const { return *m_addIn; }
    [[nodiscard]] qint64 customers() const { return m_customers; }
    void setMarks(bool on) {
        NotesSettings options(Module1::instance().services().settings);
        options.set(setting::kHighlightNotesRow, on);
        options.set(setting::kFlagNotesRow, on);
        window.upper->grid->setFetchRowStyle(0, on);
        window.upper->grid->setFetchCellStyle(0, on);
    }

private:
    void makeNotes(qint64 notes) {
        QFile script(QStringLiteral(YRW_SOURCE_DIR "/template/DB/YRWNOTES/Notes.sql"));
        if (!script.open(QIODevice::ReadOnly)) {
            qFatal("the creation script is not there");
        }
        const Ref<dao::Workspace> workspace = dao::createWorkspace(m_engine);
        const Ref<dao::Database> database = workspace->CreateDatabase(notesPath());
        database->RunScript(QString::fromUtf8(script.readAll()));
        const auto insert = [&](qint64 count, const QString& record) {
            database->RunScript(
                QStringLiteral("INSERT INTO tblNotes (Subject, OwnerComponentProgID, "
                               "OwnerObjectKey, OwnerRecordID, RecordUserID, AutomaticallyShow, "
                               "PlainNote) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 "
                               "FROM n WHERE i < %1) SELECT 'Subject ' || i, '%2', 'cu', %3, 1, 1, "
                               "printf('%.*c', 200, 'p') FROM n;")
                    .arg(QString::number(count), kFakeHostProgID, record));
        };
        insert(notes, QStringLiteral("1 + (i * %1) / %2").arg(m_customers).arg(notes));
        insert(kPopupNotes, QStringLiteral("1"));
        workspace->Close();
    }

    qint64 m_customers;
    QTemporaryDir m_folder;
    FileSystem m_files;
    dao::EngineServices m_engine{Clock::instance(), m_files};
    Ref<FakeHostApplication> m_host = make<FakeHostApplication>(m_engine, m_folder.path());

public:
    FakeWindow window{m_host};
    QWidget* body = nullptr;
    QScrollBar* scroll = nullptr;
    sqlite3* rawNotes = nullptr;
    sqlite3* rawHost = nullptr;

private:
    Ref<AddIn> m_addIn = make<AddIn>();
};

/// First rows of the pages that both sides visit.
std::vector<qint64> pagesOf(qint64 rows) {
    std::mt19937_64 random(7);
    std::vector<qint64> starts;
    for (int page = 0; page < kPages; ++page) {
        starts.push_back(qint64(random() % quint64(rows - kPage)));
    }
    return starts;
}

sqlite3_stmt* prepared(sqlite3* database, const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, sql, -1, &statement, nullptr) != SQLITE_OK) {
        qFatal("%s", sqlite3_errmsg(database));
    }
    return statement;
}

/// The same by hand: the seek alone, or (`withRow`) behind reading the host's row by its key.
double bareNanoseconds(World& world, const std::vector<qint64>& starts, bool withRow) {
    sqlite3_stmt* row =
        prepared(world.rawHost, "SELECT RecordID, CustomerName FROM tblCustomers WHERE rowid = ?");
    sqlite3_stmt* seek =
        prepared(world.rawNotes, "SELECT rowid FROM tblNotes WHERE OwnerComponentProgID = ? AND "
                                 "OwnerObjectKey = ? AND OwnerRecordID = ? AND Status = ?");
    const double start = processorSeconds();
    for (const qint64 page : starts) {
        sqlite3_exec(world.rawHost, "BEGIN", nullptr, nullptr, nullptr);
        sqlite3_exec(world.rawNotes, "BEGIN", nullptr, nullptr, nullptr);
        for (int i = 1; i <= kPage; ++i) {
            if (withRow) {
                sqlite3_bind_int64(row, 1, page + i);
                sqlite3_step(row);
                benchmark::DoNotOptimize(sqlite3_column_int64(row, 0));
                sqlite3_reset(row);
            }
            sqlite3_bind_text(seek, 1, "Test.Application", -1, SQLITE_STATIC);
            sqlite3_bind_text(seek, 2, "cu", -1, SQLITE_STATIC);
            sqlite3_bind_int64(seek, 3, page + i);
            sqlite3_bind_int64(seek, 4, 1);
            sqlite3_step(seek);
            sqlite3_reset(seek);
        }
        sqlite3_exec(world.rawHost, "COMMIT", nullptr, nullptr, nullptr);
        sqlite3_exec(world.rawNotes, "COMMIT", nullptr, nullptr, nullptr);
    }
    const double seconds = processorSeconds() - start;
    sqlite3_finalize(row);
    sqlite3_finalize(seek);
    return seconds * 1e9 / (kPages * kPage);
}

/// The row test as a paint asks for it, a page to a turn of the event loop.
double rowTestNanoseconds(World& world, const std::vector<qint64>& starts, qint64& marked) {
    RecordGrid& grid = *world.window.upper->grid;
    const Ref<dao::Recordset> rows = grid.recordset()->Clone();
    double seconds = 0;
    for (const qint64 page : starts) {
        std::vector<dao::Bookmark> places;
        rows->setAbsolutePosition(page);
        for (int i = 0; i < kPage; ++i, rows->MoveNext()) {
            places.push_back(rows->Bookmark());
        }
        inEventLoop([&] {
            const double start = processorSeconds();
            for (const dao::Bookmark place : places) {
                RowStyle style;
                grid.FetchRowStyle.raise(0, place, style);
                marked += style.hasBackColor() ? 1 : 0;
            }
            seconds += processorSeconds() - start;
        });
    }
    return seconds * 1e9 / (kPages * kPage);
}

void rowTest(benchmark::State& state) {
    const qint64 notes = state.range(0);
    World world(notes, notes);
    const std::vector<qint64> starts = pagesOf(notes);
    const std::string size = std::to_string(notes);
    qint64 marked = 0;
    for (auto _ : state) {
        keepLeast("seek " + size, bareNanoseconds(world, starts, false));
        keepLeast("row and seek " + size, bareNanoseconds(world, starts, true));
        const double ours = rowTestNanoseconds(world, starts, marked);
        keepLeast("row test " + size, ours);
        state.SetIterationTime(ours * 1e-9 * kPages * kPage);
    }
    if (marked == 0) {
        qFatal("no row was marked");
    }
    state.counters["ns/row"] = results["row test " + size];
}

/// Paints one page after the other, each in a turn of one event loop, as a user's scrolling does.
void scrollPages(World& world, int count) {
    QEventLoop loop;
    QTimer turn;
    QObject::connect(&turn, &QTimer::timeout, &loop, [&] {
        world.scroll->setValue((world.scroll->value() + 997) % (world.scroll->maximum() - 1));
        world.body->repaint();
        if (--count == 0) {
            loop.quit();
        }
    });
    turn.start(0);
    loop.exec();
}

void scrolling(benchmark::State& state) {
    World world(1'000'000, 100'000);
    scrollPages(world, 20);
    for (auto _ : state) {
        double seconds = 0;
        for (const bool marks : {false, true}) {
            world.setMarks(marks);
            scrollPages(world, 3);
            const double start = processorSeconds();
            scrollPages(world, 60);
            seconds = processorSeconds() - start;
            keepLeast(marks ? "page marked" : "page plain", seconds * 1000 / 60);
        }
        state.SetIterationTime(seconds);
    }
}

/// Notices when a widget has been painted.
class PaintWatch final : public QObject {
public:
    bool painted = false;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            auto* widget = qobject_cast<QTableWidget*>(watched->parent());
            painted = painted || (widget != nullptr && widget->objectName() == u"flxThis");
        }
        return false;
    }
};

void popup(benchmark::State& state) {
    World world(1000, 1000);
    PaintWatch watch;
    qApp->installEventFilter(&watch);
    for (auto _ : state) {
        world.window.upper->grid->setCurrentRow(1);
        world.window.upper->grid->setCurrentRow(0);
        QApplication::processEvents();
        watch.painted = false;
        QElapsedTimer timer;
        timer.start();
        world.window.upper->StayOnRow.raise();
        while (!watch.painted && timer.elapsed() < 1000) {
            QApplication::processEvents();
        }
        const double ms = double(timer.nsecsElapsed()) * 1e-6;
        if (!watch.painted) {
            state.SkipWithError("no popup was painted");
            break;
        }
        keepLeast("popup", ms);
        state.SetIterationTime(ms / 1000);
    }
    qApp->removeEventFilter(&watch);
}

/// The process that is watched: paints pages between two marks in its list of system calls.
int paintForTheCount(bool marks) {
    World world(10'000, 10'000);
    world.setMarks(marks);
    scrollPages(world, 20);
    int rows = 0;
    const Connection counting = world.window.upper->grid->FetchRowStyle.connect(
        [&](int, dao::Bookmark, RowStyle&) { ++rows; });
    world.window.upper->grid->setFetchRowStyle(0, true);
    ::syscall(SYS_getppid);
    scrollPages(world, 100);
    ::syscall(SYS_getppid);
    std::printf("%d\n", rows);
    return 0;
}

/// System calls per painted row of a process of its own, without those by which the threads that
/// the toolkit paints with wake each other.
double systemCallsPerRow(bool marks) {
    const QTemporaryDir folder;
    const QString list = folder.filePath(QStringLiteral("calls"));
    QProcess process;
    process.start(QStringLiteral("strace"),
                  {QStringLiteral("-qq"), QStringLiteral("-e"), QStringLiteral("trace=!futex"),
                   QStringLiteral("-o"), list, QCoreApplication::applicationFilePath(),
                   marks ? QStringLiteral("--paint-marked") : QStringLiteral("--paint-plain")});
    if (!process.waitForFinished(-1) || process.exitCode() != 0) {
        return -1;
    }
    const double rows = process.readAllStandardOutput().trimmed().toDouble();
    QFile calls(list);
    if (!calls.open(QIODevice::ReadOnly) || rows == 0) {
        return -1;
    }
    int marksSeen = 0;
    int between = 0;
    while (!calls.atEnd()) {
        const QByteArray call = calls.readLine();
        if (call.startsWith("getppid")) {
            ++marksSeen;
        } else if (marksSeen == 1) {
            ++between;
        }
    }
    return marksSeen == 2 ? between / rows : -1;
}

void printRatio(const char* what, double ours, double baseline, const char* unit,
                const char* target) {
    std::printf("%-58s %9.2f / %9.2f %s = %5.2f  (%s)\n", what, ours, baseline, unit,
                ours / baseline, target);
}

void printRatios() {
    for (const std::string size : {"1000", "1000000"}) {
        if (!results.contains("row test " + size)) {
            continue;
        }
        const double ours = results["row test " + size];
        printRatio(("row test / bare row and seek, " + size + " notes").c_str(), ours,
                   results["row and seek " + size], "ns", "<= 1.3");
        printRatio(("row test / bare seek alone, " + size + " notes").c_str(), ours,
                   results["seek " + size], "ns", "told for comparison");
    }
    if (results.contains("row test 1000000") && results.contains("row test 1000")) {
        printRatio("row test, 1,000,000 notes / 1,000", results["row test 1000000"],
                   results["row test 1000"], "ns", "<= 1.5");
    }
    if (results.contains("page marked")) {
        printRatio("scrolled page, 1,000,000 rows: marks / none", results["page marked"],
                   results["page plain"], "ms", "<= 1.1");
    }
    if (results.contains("popup")) {
        printRatio("staying on a row to painted popup / frame", results["popup"], kFrameMs, "ms",
                   "<= 2");
    }
    const double marked = systemCallsPerRow(true);
    const double plain = systemCallsPerRow(false);
    std::printf(
        "system calls per painted row: %.3f with marks, %.3f without, so %.3f of the marks  "
        "(<= 0.1)\n",
        marked, plain, marked - plain);
}

} // namespace

BENCHMARK(rowTest)->Arg(1000)->Arg(1'000'000)->Iterations(5)->UseManualTime();
BENCHMARK(scrolling)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(popup)->Iterations(50)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path()));
    const QApplication application(argc, argv);
    WidgetPrompt prompt(Clock::instance());
    Prompt::setInstance(&prompt);
    if (argc == 2 && QByteArray(argv[1]).startsWith("--paint-")) {
        return paintForTheCount(QByteArray(argv[1]) == "--paint-marked");
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    printRatios();
    return 0;
}
