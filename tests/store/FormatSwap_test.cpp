// The swap of a notes database of the older format for a new one: what lies in the folder after it,
// and after it was ended at any of its steps.
#include "platform/component/AutomationError.h"
#include "platform/disk/WholeFile.h"
#include "store/FormatSwap.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>

#include <csignal>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// How many calls that change the folder or reach the disk are left to this process; negative: any.
int callsLeft = -1;

template <class... Args>
int passOn(const char* name, Args... args) {
    if (callsLeft == 0) {
        ::raise(SIGKILL);
    }
    callsLeft -= callsLeft > 0 ? 1 : 0;
    return reinterpret_cast<int (*)(Args...)>(::dlsym(RTLD_NEXT, name))(args...);
}

} // namespace

// What the libraries call comes by here.
extern "C" int renameat2(int from, const char* old, int to, const char* name,
                         unsigned flags) noexcept {
    return passOn("renameat2", from, old, to, name, flags);
}
extern "C" int fsync(int file) {
    return passOn("fsync", file);
}
extern "C" int unlink(const char* name) noexcept {
    return passOn("unlink", name);
}

namespace yrw::test {
namespace {

using Files = QMap<QString, QByteArray>; // by name

const QByteArray kOld = QByteArray("\0\1\0\0Standard Jet DB\0", 20) + QByteArray(5000, 'o');
const QByteArray kNew("SQLite format 3, whole");
const QByteArray kOther("somebody else's");
const QString kName = QStringLiteral("Notes.mdb");
const QString kOldName = QStringLiteral("Notes (old format).mdb");
const QString kReport = QStringLiteral("Notes (old format).txt");
const QString kWorking = QStringLiteral("Notes.mdb.converted");
const QString kWorkingReport = QStringLiteral("Notes.mdb.converted.txt");
const QString kLock = QStringLiteral("Notes.mdb.converting");

class FormatSwapTest : public testing::Test {
protected:
    void put(const Files& wanted) {
        for (const QString& name : QDir(folder.path()).entryList(QDir::Files | QDir::Hidden)) {
            QFile::remove(folder.filePath(name));
        }
        for (auto file = wanted.begin(); file != wanted.end(); ++file) {
            QFile to(folder.filePath(file.key()));
            ASSERT_TRUE(to.open(QIODevice::WriteOnly));
            to.write(file.value());
        }
    }
    /// What is there; reports without their words.
    [[nodiscard]] Files files() const {
        Files found;
        for (const QString& name : QDir(folder.path()).entryList(QDir::Files | QDir::Hidden)) {
            QFile from(folder.filePath(name));
            EXPECT_TRUE(from.open(QIODevice::ReadOnly));
            found[name] = name.endsWith(QLatin1String(".txt")) ? QByteArray() : from.readAll();
        }
        return found;
    }
    [[nodiscard]] std::string names() const {
        return QStringList(files().keys()).join(u'|').toStdString();
    }
    FormatSwap::End convert(const MakeNotesFile& make) {
        return FormatSwap(system, folder.path())
            .convert(
                make, [] { return false; }, converted);
    }
    std::optional<ConvertedNotes> finish() {
        return FormatSwap(system, folder.path()).finish([] { return false; });
    }

    /// Makes the new file, with everything arrived or not.
    static MakeNotesFile making(const QStringList& lost = {}) {
        return [lost](const QString&, const QString& path) {
            EXPECT_EQ(writeWholeFile(path, kNew), std::nullopt);
            return std::optional(lost);
        };
    }

    QTemporaryDir folder;
    FileSystem system;
    ConvertedNotes converted;
};

TEST_F(FormatSwapTest, GivesBothFilesTheirNamesAndReplacesNone) {
    const QString second = QStringLiteral("Notes (old format 2).mdb");
    const struct {
        const char* what;
        Files before;
        QStringList lost;
        Files after;
    } rows[] = {
        {"alone", {{kName, kOld}}, {}, {{kName, kNew}, {kOldName, kOld}}},
        {"spelt otherwise", {{"NOTES.MDB", kOld}}, {}, {{kName, kNew}, {kOldName, kOld}}},
        {"with a report",
         {{kName, kOld}},
         {"a note"},
         {{kName, kNew}, {kOldName, kOld}, {kReport, {}}}},
        {"an earlier old file",
         {{kName, kOld}, {kOldName, kOther}},
         {},
         {{kName, kNew}, {kOldName, kOther}, {second, kOld}}},
        {"an earlier report",
         {{kName, kOld}, {kReport, {}}},
         {"a note"},
         {{kName, kNew}, {kReport, {}}, {second, kOld}, {"Notes (old format 2).txt", {}}}},
        {"side files of an earlier database",
         {{kName, kOld}, {"Notes.mdb-wal", kOther}},
         {},
         {{kName, kNew}, {kOldName, kOld}, {"Notes.mdb-wal.old", kOther}}},
        {"what a killed program left",
         {{kName, kOld},
          {kWorking, kOther},
          {"Notes.mdb.converted.unfinished-1a-wal", {}},
          {kLock, {}}},
         {},
         {{kName, kNew}, {kOldName, kOld}}},
    };
    for (const auto& [what, before, lost, after] : rows) {
        put(before);
        EXPECT_EQ(convert(making(lost)), FormatSwap::End::Converted) << what;
        EXPECT_EQ(files(), after) << what << ": " << names();
        EXPECT_EQ(!converted.report.isEmpty(), !lost.isEmpty()) << what;
        EXPECT_TRUE(QFile::exists(converted.oldFile)) << what;
    }
    // A second name, where a file system gives one before it takes the first away.
    put({{kName, kOld}});
    ASSERT_EQ(::link(qPrintable(folder.filePath(kName)), qPrintable(folder.filePath(kOldName))), 0);
    EXPECT_EQ(convert(making()), FormatSwap::End::Converted);
    EXPECT_EQ(files(), (Files{{kName, kNew}, {kOldName, kOld}})) << names();
}

TEST_F(FormatSwapTest, LeavesTheOldFileAloneWhenItIsNotToBe) {
    const auto nothing = [](const QString&, const QString&) {
        return std::optional<QStringList>();
    };
    const MakeNotesFile failing = [](const QString& old, const QString& path) {
        static_cast<void>(making()(old, path));
        throw AutomationError(kErrorDiskFull, {}, QStringLiteral("full"));
        return std::optional<QStringList>();
    };
    const MakeNotesFile written = [](const QString& old, const QString& path) {
        QFile file(old); // what a colleague's program does
        EXPECT_TRUE(file.open(QIODevice::Append) && file.write("!") == 1);
        return making()(old, path);
    };
    put({{kName, kOld}});
    EXPECT_EQ(convert(nothing), FormatSwap::End::Stopped);
    EXPECT_THROW(static_cast<void>(convert(failing)), AutomationError);
    EXPECT_EQ(files(), (Files{{kName, kOld}})) << names();
    EXPECT_THROW(static_cast<void>(convert(written)), AutomationError);
    EXPECT_EQ(files(), (Files{{kName, kOld + '!'}})) << names();
    const auto computer = [](const char* name) { return QByteArray(name).leftJustified(64, '\0'); };
    EXPECT_EQ(FormatSwap(system, folder.path()).openElsewhere(), std::nullopt);
    put({{"notes.LDB", computer("DESK-1") + computer("\x01 ") + computer("LAPTOP") + "DESK-1"}});
    EXPECT_EQ(FormatSwap(system, folder.path()).openElsewhere(),
              (QStringList{QStringLiteral("DESK-1"), QStringLiteral("LAPTOP")}));
    put({{kName, kNew}});
    EXPECT_EQ(convert(failing), FormatSwap::End::NothingOld);
    EXPECT_EQ(files(), (Files{{kName, kNew}})) << names();
}

TEST_F(FormatSwapTest, TheNewFileIsForWhomTheOldOneIs) {
    for (const mode_t mode : {0640U, 0664U, 0444U}) {
        put({{kName, kOld}});
        ASSERT_EQ(::chmod(qPrintable(folder.filePath(kName)), mode), 0);
        EXPECT_EQ(convert(making()), FormatSwap::End::Converted);
        struct stat status {};
        ASSERT_EQ(::stat(qPrintable(folder.filePath(kName)), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, mode | 0600U);
    }
}

TEST_F(FormatSwapTest, WhatAnEarlierRunLeftIsCompletedOrTakenAway) {
    const struct {
        const char* what;
        Files before;
        Files after;
        bool isFinished;
    } rows[] = {
        {"half done",
         {{kWorking, kNew}, {kOldName, kOld}, {kLock, {}}},
         {{kName, kNew}, {kOldName, kOld}},
         true},
        {"half done, the report waiting",
         {{kWorking, kNew}, {kWorkingReport, {}}, {kOldName, kOld}},
         {{kName, kNew}, {kReport, {}}, {kOldName, kOld}},
         true},
        {"half done, the report named",
         {{kWorking, kNew}, {kReport, {}}, {kOldName, kOld}},
         {{kName, kNew}, {kReport, {}}, {kOldName, kOld}},
         true},
        {"done but for the lock",
         {{kName, kNew}, {kOldName, kOld}, {kLock, {}}},
         {{kName, kNew}, {kOldName, kOld}},
         false},
        {"not begun to be renamed",
         {{kName, kOld},
          {kWorking, kNew},
          {kWorkingReport, {}},
          {"Notes.mdb.converted.unfinished-1a-journal", {}},
          {kLock, {}}},
         {{kName, kOld}},
         false},
        {"another file has the name",
         {{kName, kOther}, {kWorking, kNew}, {kOldName, kOld}},
         {{kName, kOther}, {kWorking, kNew}, {kOldName, kOld}},
         false},
        {"nothing old beside it", {{kWorking, kNew}}, {{kWorking, kNew}}, false},
        {"nothing", {{kName, kOld}}, {{kName, kOld}}, false},
    };
    for (const auto& [what, before, after, isFinished] : rows) {
        put(before);
        const auto finished = finish();
        EXPECT_EQ(files(), after) << what << ": " << names();
        EXPECT_EQ(finished.has_value(), isFinished) << what;
        EXPECT_EQ(finished && !finished->report.isEmpty(), after.contains(kReport)) << what;
    }
}

TEST_F(FormatSwapTest, KilledAtAnyStepTheNextStartHasOldOrNewWhole) {
    const Files old{{kName, kOld}};
    const Files swapped{{kName, kNew}, {kOldName, kOld}, {kReport, {}}};
    int finished = 0;
    bool isKilled = true;
    for (int calls = 0; isKilled; ++calls) {
        put(old);
        const pid_t child = ::fork();
        if (child == 0) {
            callsLeft = calls;
            ::_exit(convert(making({QStringLiteral("a note")})) == FormatSwap::End::Converted);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        isKilled = WIFSIGNALED(status);
        ASSERT_TRUE(isKilled || WEXITSTATUS(status) == 1);
        finished += finish() ? 1 : 0;
        EXPECT_TRUE(files() == old || files() == swapped) << calls << ": " << names();
        if (files() == old) {
            EXPECT_EQ(convert(making({QStringLiteral("a note")})), FormatSwap::End::Converted);
        }
        EXPECT_EQ(files(), swapped) << calls << ": " << names();
    }
    EXPECT_GE(finished, 4) << "ended between the two names";
}

TEST_F(FormatSwapTest, OfSeveralProgramsOneConverts) {
    put({{kName, kOld}});
    int gate[2];
    ASSERT_EQ(::pipe(gate), 0);
    std::vector<pid_t> children;
    for (int i = 0; i < 6; ++i) {
        children.push_back(::fork());
        if (children.back() == 0) {
            ::close(gate[1]);
            char byte = 0;
            if (::read(gate[0], &byte, 1) < 0) { // until all are there
                ::_exit(9);
            }
            const FormatSwap swap(system, folder.path());
            ::_exit(int(swap.convert(
                making(), [] { return true; }, converted)));
        }
    }
    ::close(gate[0]);
    ::close(gate[1]);
    std::map<int, int> ends;
    for (const pid_t child : children) {
        int status = 0;
        ::waitpid(child, &status, 0);
        ++ends[WIFEXITED(status) ? WEXITSTATUS(status) : -1];
    }
    EXPECT_EQ(ends, (std::map<int, int>{{int(FormatSwap::End::Converted), 1},
                                        {int(FormatSwap::End::NothingOld), 5}}));
    EXPECT_EQ(files(), (Files{{kName, kNew}, {kOldName, kOld}})) << names();
}

} // namespace
} // namespace yrw::test
