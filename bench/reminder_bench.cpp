// Times reminders: what a popup costs when few or many are due, and what the minute's check costs
// among many reminders. Each line prints a ratio whose two sides were measured in this run.
//
// bench_reminder [--quick]: with --quick without the largest tables. "tools/with-display.sh
// bench_reminder" measures on a display with a window manager.

#include "addin/AddIn.h"
#include "dialogs/frmReminder.h"
#include "platform/forms/WidgetPrompt.h"
#include "store/NotesDatabase.h"
#include "tests/support/FakeWindow.h"

#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <map>
#include <memory>
#include <set>

namespace {

using namespace yrw;

double milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

double best(int repetitions, const std::function<void()>& work) {
    double least = milliseconds(work);
    for (int i = 1; i < repetitions; ++i) {
        least = std::min(least, milliseconds(work));
    }
    return least;
}

/// Writes down when each popup is painted for the first time.
class FirstPaints : public QObject {
public:
    FirstPaints() { qApp->installEventFilter(this); }
    [[nodiscard]] std::size_t count() const { return m_at.size(); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            if (auto* popup = dynamic_cast<frmReminder*>(watched)) {
                m_at.insert(popup);
            }
        }
        return false;
    }

private:
    std::set<QObject*> m_at;
};

/// A host with the add-in in a folder of its own; the template is made from the source tree.
class Desk {
public:
    Desk()
        : host(make<test::FakeHostApplication>(dao::EngineServices{Clock::instance(), m_files},
                                               m_folder.path())),
          window(std::make_unique<test::FakeWindow>(host)) {
        const Ref<dao::Workspace> workspace = dao::createWorkspace({Clock::instance(), m_files});
        const auto fresh = workspace->CreateDatabase(m_folder.filePath(kNotesDatabaseName));
        QFile script(QStringLiteral(YRW_SOURCE_DIR "/template/DB/YRWNOTES/Notes.sql"));
        if (!script.open(QIODevice::ReadOnly)) {
            qFatal("the creation script is not there");
        }
        fresh->RunScript(QString::fromUtf8(script.readAll()));
        workspace->Close();
        window->resize(1000, 700);
        window->show();
        addIn = make<AddIn>();
        addIn->setComponent(window->component);
        if (!addIn->Activate()) {
            qFatal("the add-in does not start");
        }
    }
    /// One note of each of so many customers, with a reminder each, due at a time.
    void fill(qint64 count, const QString& due) {
        run(QStringLiteral(
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
                "INSERT INTO tblNotes (RecordID, Subject, PlainNote, Status, ReminderType, "
                "OwnerComponentProgID, OwnerObjectKey, OwnerRecordID) SELECT i, 'Subject ' || i, "
                "'Ring back', 1, 2, 'Test.Application', 'cu', 1 + i %% 3 FROM n WHERE %1 > 0;"
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
                "INSERT INTO tblReminders (NoteID, UserID, NextDate, Status) SELECT i, 1, "
                "datetime('%2', i || ' seconds'), 1 FROM n WHERE %1 > 0;")
                .arg(count)
                .arg(due)
                .replace(QStringLiteral("%%"), QStringLiteral("%")));
    }
    void run(const QString& script) { Module1::instance().database()->RunScript(script); }

private:
    QTemporaryDir m_folder;
    FileSystem m_files;

public:
    Ref<test::FakeHostApplication> host;
    std::unique_ptr<test::FakeWindow> window;
    Ref<AddIn> addIn;
};

/// Milliseconds of the processor that this process has had.
double processorMs() {
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return double(used.tv_sec) * 1e3 + double(used.tv_nsec) / 1e6;
}

/// What a start with so many due reminders costs, until each is painted.
struct Start {
    double allMs = 0;
    double processorMs = 0;
    double longestTurnMs = 0;
};

Start startWith(int count) {
    Desk desk;
    desk.fill(count, QStringLiteral("2020-01-01 08:00:00"));
    const FirstPaints paints;
    Start cost;
    const double before = processorMs();
    cost.allMs = milliseconds([&] {
        cost.longestTurnMs = milliseconds([&] { desk.addIn->CheckForReminders(); });
        while (paints.count() < std::size_t(count)) {
            cost.longestTurnMs =
                std::max(cost.longestTurnMs, milliseconds([] {
                             QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
                         }));
        }
    });
    cost.processorMs = processorMs() - before;
    desk.run(QStringLiteral("DELETE FROM tblReminders;"));
    desk.addIn->CheckForReminders(); // closes them all
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return cost;
}

/// A start in a process of its own, as each start is: memory that an earlier one has left behind
/// costs less. Before it comes one of two popups, for what only the first ever made pays.
Start startInOwnProcess(int count) {
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--start"), QString::number(count)});
    child.waitForFinished(-1);
    const QByteArrayList figures = child.readAllStandardOutput().simplified().split(' ');
    if (figures.size() != 3) {
        qFatal("the start with %d popups failed", count);
    }
    return {figures[0].toDouble(), figures[1].toDouble(), figures[2].toDouble()};
}

/// Few and many by turns and in both orders, so that what else the machine does falls on neither
/// side; the processor's time is compared for the same reason, and the least of several.
void benchPopups() {
    std::printf("popups that are due at the start, until each is painted\n");
    std::map<int, double> least;
    for (const int count : {0, 1, 2, 40, 1000, 1000, 40, 40, 1000, 1000, 40}) {
        const Start cost = startInOwnProcess(count);
        const double each = cost.processorMs / std::max(1, count);
        least[count] = least.contains(count) ? std::min(least[count], each) : each;
        std::printf("%6d due: %9.1f ms in all, each %6.2f ms of the processor, longest turn "
                    "%6.1f ms\n",
                    count, cost.allMs, each, cost.longestTurnMs);
        std::fflush(stdout);
    }
    std::printf("each of 1000 to each of 40: ratio %.2f (constant: about 1)\n",
                least[1000] / least[40]);
}

/// Milliseconds of one minute's check with nothing due.
double idleCheck(Desk& desk, int repetitions) {
    return best(repetitions, [&] {
        QEventLoop loop;
        QMetaObject::invokeMethod(
            &loop,
            [&] {
                desk.addIn->CheckForReminders();
                loop.quit();
            },
            Qt::QueuedConnection);
        loop.exec();
    });
}

void benchIdle(bool quick) {
    std::printf("the minute's check, nothing due\n");
    std::map<qint64, double> costs;
    for (const qint64 count : {qint64(100'000), qint64(1'000'000)}) {
        if (quick && count > 100'000) {
            break;
        }
        Desk desk;
        desk.fill(count, QStringLiteral("2099-01-01 08:00:00"));
        costs[count] = idleCheck(desk, 50);
        std::printf("%9lld reminders: %9.4f ms\n", static_cast<long long>(count), costs[count]);
        desk.run(QStringLiteral("DROP INDEX OpenRemindersByUser;"));
        const double without = idleCheck(desk, 5);
        std::printf("%9lld without the index: %9.4f ms, ratio %.0f (at 1,000,000: >= 1000 for the "
                    "query)\n",
                    static_cast<long long>(count), without, without / costs[count]);
    }
    if (costs.size() == 2) {
        std::printf("1,000,000 to 100,000: ratio %.2f (<= 1.2)\n",
                    costs[1'000'000] / costs[100'000]);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        // Of the platforms without a display, the one that activates no window that is only shown.
        qputenv("QT_QPA_PLATFORM", "minimal");
    }
    QTemporaryDir home;
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
        qputenv(variable, QFile::encodeName(home.path()));
    }
    const QApplication application(argc, argv);
    WidgetPrompt prompt(Clock::instance());
    Prompt::setInstance(&prompt);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--start") {
        startWith(2);
        const Start cost = startWith(arguments.value(2).toInt());
        std::printf("%f %f %f\n", cost.allMs, cost.processorMs, cost.longestTurnMs);
        return 0;
    }
    benchPopups();
    benchIdle(arguments.contains(QStringLiteral("--quick")));
    return 0;
}
