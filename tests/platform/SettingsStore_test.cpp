#include "platform/settings/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace yrw;

namespace {

const QString kApp = QStringLiteral("Yarrowen");
const QString kSection = QStringLiteral("YRWNotes Settings");

/// Runs an action in a process of its own as a user who owns nothing; what it answers.
bool asAnotherUser(const std::function<bool()>& action) {
    constexpr uid_t kNobody = 65534;
    const pid_t child = ::fork();
    if (child == 0) {
        const bool is = ::geteuid() != 0 || (::setgid(kNobody) == 0 && ::setuid(kNobody) == 0);
        ::_exit(is && action() ? 0 : 1);
    }
    int status = 1;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

class SettingsStoreTest : public testing::Test {
protected:
    QString get(const QString& key) { return store.get(kApp, kSection, key, u"default"_s); }
    bool save(const QString& key, const QString& text) {
        return store.save(kApp, kSection, key, text);
    }
    QByteArray fileText() {
        QFile file(store.fileOf(kApp));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Writes the file as another program would.
    void writeFile(const QByteArray& text) {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(store.fileOf(kApp)).path()));
        QFile file(store.fileOf(kApp));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(text), text.size());
    }

    QTemporaryDir folder;
    SettingsStore store{folder.filePath(QStringLiteral("not/yet"))};
};

TEST_F(SettingsStoreTest, GivesBackWhatWasSaved) {
    const QString texts[] = {u"True"_s,    u""_s,           u" two  blanks "_s,
                             u"a,b;c=d"_s, u"@Invalid()"_s, u"\"quoted\"\\ \n"_s,
                             u"Grüße ☂"_s};
    for (const QString& text : texts) {
        EXPECT_TRUE(save(u"PopupWindow-H"_s, text));
        const SettingsStore other(folder.filePath(u"not/yet"_s));
        EXPECT_EQ(other.get(kApp, kSection, u"PopupWindow-H"_s, u"default"_s), text)
            << qPrintable(text);
    }
    EXPECT_TRUE(store.remove(kApp, kSection, u"PopupWindow-H"_s));
    EXPECT_TRUE(store.remove(kApp, kSection, u"PopupWindow-H"_s));
    EXPECT_EQ(get(u"PopupWindow-H"_s), u"default");
    EXPECT_TRUE(store.takeProblem().isEmpty());
}

TEST_F(SettingsStoreTest, SeesAndKeepsWhatAnotherProgramWrote) {
    EXPECT_TRUE(save(u"Height"_s, u"4000"_s));
    writeFile(fileText().replace("4000", "5000") +
              "; by hand\n# too\nFont=Comic Sans MS, Arial\n[Other]\nkey=1\n");
    EXPECT_EQ(get(u"Height"_s), u"5000");
    EXPECT_EQ(get(u"Font"_s), u"Comic Sans MS, Arial");
    EXPECT_TRUE(save(u"Width"_s, u"1"_s));
    EXPECT_EQ(store.get(kApp, u"Other"_s, u"key"_s, {}), u"1");
    ASSERT_TRUE(QFile::remove(store.fileOf(kApp)));
    EXPECT_EQ(get(u"Height"_s), u"default");
}

TEST_F(SettingsStoreTest, AFileIsNotWrittenThatCouldNotBeReadAfterwards) {
    const char* text = "[Other]\nkey%2F=1\n";
    SettingsStore fresh(folder.filePath(u"not/yet"_s));
    writeFile(text);
    EXPECT_FALSE(fresh.save(kApp, kSection, u"Width"_s, u"1"_s));
    EXPECT_EQ(fileText(), text);
}

TEST_F(SettingsStoreTest, SavesBesideACommentThatNothingHasReadBefore) {
    ASSERT_TRUE(save(u"Width"_s, u"1"_s));
    writeFile("# by hand\n[YRWNotes%20Settings]\nHeight=5000\n");
    EXPECT_TRUE(save(u"Width"_s, u"2"_s));
    EXPECT_EQ(get(u"Width"_s), u"2");
    EXPECT_EQ(get(u"Height"_s), u"5000");
}

TEST_F(SettingsStoreTest, ABrokenFileGivesDefaultsAndOneWarningAndIsKept) {
    for (const char* broken : {
             "[YRWNotes%20Settings]\n;a line ends here\rHeight 4000\n",
             "[YRWNotes%20Settings]\nHeight 4000 and no sign between\n",
             "[YRWNotes%20Settings]\nHei\"ght=4000\"\nWidth=1\n", // the sign is in quotes
             "[YRWNotes%20Settings]\nHei;ght=4000\nWidth=1\n",    // the sign is in a comment
             "[YRWNotes%20Settings]\nHeight=\"4000\nWidth=1\n",   // a quote is left open
         }) {
        SCOPED_TRACE(broken);
        SettingsStore fresh(folder.filePath(u"not/yet"_s));
        writeFile(broken);
        EXPECT_EQ(fresh.get(kApp, kSection, u"Height"_s, u"default"_s), u"default");
        EXPECT_TRUE(fresh.takeProblem().contains(fresh.fileOf(kApp)));
        EXPECT_FALSE(fresh.save(kApp, kSection, u"Width"_s, u"1"_s));
        EXPECT_TRUE(fresh.takeProblem().isEmpty()); // said once
        EXPECT_EQ(fileText(), broken);
    }
}

TEST_F(SettingsStoreTest, WhoMayOnlyReadIsToldOnceAndStillReads) {
    EXPECT_TRUE(save(u"Font"_s, u"Arial"_s));
    const QString file = store.fileOf(kApp);
    const QString inFolder = QFileInfo(file).path();
    const auto reading = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
    const auto entering = reading | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther;
    const auto all = entering | QFile::WriteOwner | QFile::WriteOther;
    for (const auto& [ofFile, ofFolder] :
         {std::pair(reading, all), std::pair(reading | QFile::WriteOther, entering)}) {
        QFile::setPermissions(folder.path(), all);
        QFile::setPermissions(QFileInfo(inFolder).path(), all);
        QFile::setPermissions(inFolder, ofFolder);
        QFile::setPermissions(file, ofFile);
        EXPECT_TRUE(asAnotherUser([&] {
            int told = 0;
            SettingsStore own(inFolder);
            own.setProblemHandler([&](const QString& problem) { told += problem.contains(file); });
            const bool saved = own.save(kApp, kSection, u"Height"_s, u"1"_s) ||
                               own.save(kApp, kSection, u"Width"_s, u"1"_s) ||
                               own.remove(kApp, kSection, u"Height"_s);
            return !saved && told == 1 && own.get(kApp, kSection, u"Font"_s, {}) == u"Arial";
        })) << ofFolder;
        QFile::setPermissions(inFolder, all);
    }
}

TEST_F(SettingsStoreTest, AFileThatCannotBeWrittenIsNamedOnce) {
    ASSERT_TRUE(QDir().mkpath(store.fileOf(kApp))); // a folder stands in the file's place
    EXPECT_FALSE(save(u"Height"_s, u"1"_s));
    EXPECT_FALSE(store.remove(kApp, kSection, u"Height"_s));
    EXPECT_EQ(get(u"Height"_s), u"default");
    EXPECT_TRUE(store.takeProblem().contains(store.fileOf(kApp)));
    EXPECT_TRUE(store.takeProblem().isEmpty());
}

} // namespace
