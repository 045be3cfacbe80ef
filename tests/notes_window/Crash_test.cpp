// A program that is killed while the user works: a child of this one, on the same database.
#include "tests/notes_window/Crash.h"
#include "tests/notes_window/WindowFixture.h"

#include <QProcess>
#include <QRandomGenerator>

#include <chrono>
#include <csignal>
#include <cstdio>

namespace yrw::test {

namespace {

constexpr const char* kFolder = "YRW_CRASHING_CHILD"; ///< tells a child where the database is
constexpr qint64 kPromisedMs = 2000;

/// The same in every process of the machine.
qint64 nowMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// The letter typed at a place: what is lost or doubled shows.
QChar letterAt(qsizetype place) {
    return QChar(char16_t(u'a' + place % 26));
}

void typeUntilKilled(frmMain& window) {
    auto* const editor = window.findChild<RichTextBox*>(QStringLiteral("rtxMain"));
    editor->setFocus();
    for (qsizetype place = 0;; ++place) {
        QTest::keyClick(editor, letterAt(place).toLatin1());
        std::printf("%lld\n", static_cast<long long>(nowMs()));
        std::fflush(stdout);
        QTest::qWait(15);
    }
}

} // namespace

bool isCrashingChild() {
    return qEnvironmentVariableIsSet(kFolder);
}

int crash() {
    PromptScript script;
    TestStore store(qEnvironmentVariable(kFolder));
    const Ref<FakeAddIn> addIn = make<FakeAddIn>(store, script);
    frmMain window(store);
    window.Initialise(addIn, store.hostRecord(QStringLiteral("cu"), 1), 0);
    window.show();
    typeUntilKilled(window);
    return 1;
}

class Crash : public WindowFixture {
protected:
    /// Lets a child type for so long and kills it; when each letter was typed, in order.
    std::vector<qint64> typeAndKill(int milliseconds, qint64& killedAt) {
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QLatin1String(kFolder), store.folder());
        child.setProcessEnvironment(environment);
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(), QStringList());
        EXPECT_TRUE(child.waitForReadyRead(30000));
        QTest::qWait(milliseconds);
        ::kill(static_cast<pid_t>(child.processId()), SIGKILL);
        killedAt = nowMs();
        EXPECT_TRUE(child.waitForFinished(30000));
        std::vector<qint64> times;
        for (const QByteArray& line : child.readAllStandardOutput().split('\n')) {
            if (!line.isEmpty()) {
                times.push_back(line.toLongLong());
            }
        }
        return times;
    }
};

// YRW_KILLS raises the number of kills.
TEST_F(Crash, AKilledProgramLosesAtMostTwoSecondsOfTyping) {
    bool isNumber = false;
    const int wanted = qEnvironmentVariable("YRW_KILLS").toInt(&isNumber);
    const int kills = isNumber ? wanted : 2;
    qint64 worst = 0;
    for (int kill = 0; kill < kills; ++kill) {
        SCOPED_TRACE(kill);
        const Ref<Note> note = store.addNote("typed into", customer);
        qint64 killedAt = 0;
        const int typing = 2500 + int(QRandomGenerator::global()->bounded(2500));
        const std::vector<qint64> times = typeAndKill(typing, killedAt);
        script.answer(PromptAnswer::Yes);
        open(customer);
        EXPECT_TRUE(script.asked.last().contains("was found"));
        const QString kept = editor().Text();
        for (qsizetype place = 0; place < kept.size(); ++place) {
            ASSERT_EQ(kept[place], letterAt(place));
        }
        ASSERT_FALSE(kept.isEmpty());
        if (size_t(kept.size()) < times.size()) {
            worst = std::max(worst, killedAt - times[size_t(kept.size())]);
        }
        close(); // saves what was taken over
        EXPECT_EQ(stored(idOf(note), "PlainNote").toString(), kept);
        deleteNote(store.application(), idOf(note));
    }
    RecordProperty("WorstLossMs", int(worst));
    std::printf("%d kills, at most %lld ms of typing lost\n", kills, static_cast<long long>(worst));
    EXPECT_LE(worst, kPromisedMs);
}

} // namespace yrw::test
