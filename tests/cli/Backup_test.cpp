#include "tests/cli/CommandFixture.h"

#include <sys/stat.h>

namespace yrw::test {
namespace {

class BackupTest : public CommandFixture {
protected:
    Outcome backUp(const QString& path) { return run({"backup", path}); }
    QTemporaryDir elsewhere;
};

TEST_F(BackupTest, ComesBackAsItWas) {
    run("add --subject kept --text words");
    ASSERT_EQ(::chmod(qPrintable(notesPath()), 0640), 0);
    const QString copy = elsewhere.filePath("copy.mdb");
    {
        const Ref<dao::Workspace> other = dao::createWorkspace({clock, files});
        const Ref<dao::Database> held = other->OpenDatabase(notesPath());
        const dao::Transaction writing(*held);
        EXPECT_EQ(backUp(copy).status, kExitDone) << "while another program writes";
    }
    run("delete 1");
    EXPECT_EQ(backUp(elsewhere.filePath("later.mdb")).status, kExitDone);
    QFile::remove(notesPath());
    ASSERT_TRUE(QFile::copy(copy, notesPath()));
    EXPECT_EQ(run("show 1 --text").out, "words\n");
    EXPECT_EQ(run("check").status, kExitDone) << qPrintable(run("check").out);
    EXPECT_EQ(run("add --subject more").out, "2\n");
    struct stat made {};
    ASSERT_EQ(::stat(qPrintable(copy), &made), 0);
    EXPECT_EQ(made.st_mode & 0777U, 0640U);
    EXPECT_EQ(QDir(elsewhere.path()).entryList(QDir::Files | QDir::Hidden).size(), 2)
        << "nothing else is left";
}

TEST_F(BackupTest, ReplacesFilesAndLinks) {
    run("add --subject a");
    const QString copy = elsewhere.filePath("copy.mdb");
    EXPECT_EQ(backUp(copy).status, kExitDone);
    EXPECT_EQ(backUp(copy).status, kExitDone) << "over the copy of yesterday";
    const QString precious = elsewhere.filePath("precious");
    write(precious, "mine");
    const QString link = elsewhere.filePath("link");
    ASSERT_TRUE(QFile::link(precious, link));
    EXPECT_EQ(backUp(link).status, kExitDone);
    EXPECT_FALSE(QFileInfo(link).isSymLink());
    EXPECT_EQ(QFileInfo(precious).size(), 4);
}

} // namespace
} // namespace yrw::test
