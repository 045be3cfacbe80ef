#include "platform/files/FileSystem.h"
#include "platform/files/StagedCopy.h"
#include "tests/support/FullDisk.h"
#include "tests/support/Raised.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace yrw;

namespace {

class FileSystemTest : public testing::Test {
protected:
    QString path(const QString& name) const { return root.path() + u'/' + name; }
    void write(const QString& name, const QByteArray& text) {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path(name)).path()));
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(text), text.size());
    }
    QByteArray read(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not there)");
    }
    /// The words of the error that an action raises; empty when it raises none.
    static QString failure(const std::function<void()>& action) {
        const AutomationError error = test::raisedBy(action);
        EXPECT_TRUE(error.number() == 0 || error.number() == kErrorFileCopy);
        return error.description();
    }

    QTemporaryDir root;
    FileSystem files;
};

TEST_F(FileSystemTest, FindsNamesInAnyCaseAndWithEitherSeparator) {
    write(u"DB/YRWNOTES/support/Notes/Menus.tb"_s, "menus");
    write(u"both/case"_s, "small");
    write(u"both/Case"_s, "large");
    const struct {
        QString asked;
        QString found;
    } cases[] = {
        {u"DB/YRWNOTES/support/Notes/Menus.tb"_s, u"DB/YRWNOTES/support/Notes/Menus.tb"_s},
        {u"db\\yrwnotes\\SUPPORT\\notes\\menus.TB"_s, u"DB/YRWNOTES/support/Notes/Menus.tb"_s},
        {u"Db//Yrwnotes/./support/"_s, u"DB/YRWNOTES/./support"_s},
        {u"db/New Folder/File.x"_s, u"DB/New Folder/File.x"_s},
        {u"both/Case"_s, u"both/Case"_s},
        {u"both/case"_s, u"both/case"_s},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(files.resolve(path(c.asked)), path(c.found)) << qPrintable(c.asked);
    }
    EXPECT_TRUE(files.fileExists(path(u"db\\YrwNotes\\support\\notes\\MENUS.tb"_s)));
    EXPECT_FALSE(files.fileExists(path(u"DB/YRWNOTES"_s))); // a folder is no file
}

TEST_F(FileSystemTest, TakesPathsApartAndTogether) {
    EXPECT_EQ(FileSystem::folderOf(u"D:\\Data\\Desk.mdb"_s), u"D:/Data");
    EXPECT_EQ(FileSystem::folderOf(u"/Desk.mdb"_s), u"/");
    EXPECT_EQ(FileSystem::folderOf(u"Desk.mdb"_s), u"");
    EXPECT_EQ(FileSystem::join(u"/data/"_s, u"\\Notes.mdb"_s), u"/data/Notes.mdb");
    EXPECT_EQ(FileSystem::join(u"/"_s, u"Notes.mdb"_s), u"/Notes.mdb");
    EXPECT_EQ(FileSystem::join(QString(), u"Notes.mdb"_s), u"Notes.mdb");
}

TEST_F(FileSystemTest, ACopyOverwritesAndIsWritableWhenItsSourceIsNot) {
    write(u"template/Notes.mdb"_s, QByteArray(3 << 20, 'n'));
    ASSERT_TRUE(QFile::setPermissions(path(u"template/Notes.mdb"_s), QFile::ReadOwner));
    write(u"data/notes.MDB"_s, "old");
    files.copyFile(path(u"template\\notes.mdb"_s), path(u"data\\Notes.mdb"_s));
    EXPECT_EQ(read(u"data/notes.MDB"_s), QByteArray(3 << 20, 'n'));
    EXPECT_TRUE(QFile::permissions(path(u"data/notes.MDB"_s)) & QFile::WriteOwner);
    EXPECT_EQ(QDir(path(u"data"_s)).entryList(QDir::Files).size(), 1);
}

TEST_F(FileSystemTest, AStagedCopyTakesANameThatNobodyHas) {
    write(u"template/Notes.mdb"_s, QByteArray(3 << 20, 'n'));
    for (const unsigned way : {StagedCopy::Link, StagedCopy::Rename, StagedCopy::Claim}) {
        write(u"data/there"_s, "mine");
        QFile::remove(path(u"data/new"_s));
        {
            StagedCopy copy(path(u"template/Notes.mdb"_s), path(u"data/there"_s));
            EXPECT_FALSE(copy.place(way)) << way;
            StagedCopy other(path(u"template/Notes.mdb"_s), path(u"data/new"_s));
            EXPECT_FALSE(QFile::exists(path(u"data/new"_s))) << way;
            EXPECT_TRUE(other.place(way)) << way;
        }
        EXPECT_EQ(read(u"data/there"_s), "mine") << way;
        EXPECT_EQ(read(u"data/new"_s).size(), 3 << 20) << way;
        EXPECT_EQ(QDir(path(u"data"_s)).entryList(QDir::Files | QDir::Hidden),
                  (QStringList{u"new"_s, u"there"_s}))
            << way;
    }
    EXPECT_TRUE(
        failure([&] { StagedCopy(path(u"gone"_s), path(u"data/x"_s)); }).contains(path(u"gone"_s)));
    EXPECT_TRUE(failure([&] {
                    StagedCopy(path(u"template/Notes.mdb"_s), path(u"nowhere/x"_s));
                }).contains(path(u"nowhere/x"_s)));
}

TEST_F(FileSystemTest, ACopiedFolderIsWholeAndJoinsOneOfAnotherSpelling) {
    write(u"from/support/Notes/Menus.tb"_s, "new");
    write(u"from/support/Notes/deep/.hidden"_s, "hidden");
    write(u"to/support/notes/menus.tb"_s, "old");
    write(u"to/support/notes/own"_s, "own");
    files.copyFolder(path(u"from/support/Notes"_s), path(u"to/Support/Notes"_s));
    EXPECT_EQ(read(u"to/support/notes/menus.tb"_s), "new");
    EXPECT_EQ(read(u"to/support/notes/deep/.hidden"_s), "hidden");
    EXPECT_EQ(read(u"to/support/notes/own"_s), "own");
    files.copyFolder(path(u"from/support/Notes"_s), path(u"other/Support/Notes"_s));
    EXPECT_EQ(read(u"other/Support/Notes/Menus.tb"_s), "new"); // new folders as they are spelt
    const QString inside = path(u"other/Support/inside"_s);
    EXPECT_NE(failure([&] { files.copyFolder(path(u"other"_s), inside); }), QString());
    EXPECT_FALSE(QFileInfo::exists(inside));
    write(u"large"_s, QByteArray(3 << 20, 'x'));
    files.copyFile(path(u"large"_s), path(u"copy"_s));
    EXPECT_EQ(QFileInfo(path(u"copy"_s)).size(), 3 << 20);
}

TEST_F(FileSystemTest, AFailedCopyNamesTheFileAndLeavesTheOldOne) {
    write(u"full"_s, "text");
    write(u"folder/file"_s, "text");
    const struct {
        QString source;
        QString target;
        QString named;
    } cases[] = {
        {path(u"gone"_s), path(u"full"_s), path(u"gone"_s)},
        {path(u"folder"_s), path(u"full"_s), path(u"folder"_s)},
        {path(u"full"_s), path(u"folder"_s), path(u"folder"_s)},
        {path(u"full"_s), path(u"gone/copy"_s), path(u"gone/copy"_s)},
    };
    for (const auto& c : cases) {
        const QString words = failure([&] { files.copyFile(c.source, c.target); });
        EXPECT_TRUE(words.contains(c.named)) << qPrintable(c.target + u": " + words);
    }
    EXPECT_EQ(read(u"full"_s), "text");
    for (const QString& target : {path(u"full"_s), path(u"folder/inside"_s)}) {
        const QString words = failure([&] { files.copyFolder(path(u"folder"_s), target); });
        EXPECT_TRUE(words.contains(target)) << qPrintable(words);
    }
    EXPECT_TRUE(failure([&] {
                    files.copyFolder(path(u"gone"_s), path(u"x"_s));
                }).contains(path(u"gone"_s)));
}

TEST_F(FileSystemTest, ACopyThatTheDiskCannotHoldLeavesTheOldFileWhole) {
    write(u"large"_s, QByteArray(3 << 20, 'n'));
    write(u"data/old"_s, "old");
    {
        const test::FullDisk full(1 << 20);
        const QString target = path(u"data/old"_s);
        const QString words = failure([&] { files.copyFile(path(u"large"_s), target); });
        EXPECT_TRUE(words.contains(target)) << qPrintable(words);
    }
    EXPECT_EQ(read(u"data/old"_s), "old");
    EXPECT_EQ(QDir(path(u"data"_s)).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST_F(FileSystemTest, MovesAFileAsideToANameThatIsFree) {
    for (const char* text : {"one", "two"}) {
        write(u"Notes.mdb-wal"_s, text);
        EXPECT_FALSE(files.moveAside(path(u"notes.MDB-wal"_s)).isEmpty());
    }
    EXPECT_EQ(read(u"Notes.mdb-wal.old"_s), "one");
    EXPECT_EQ(read(u"Notes.mdb-wal.old2"_s), "two");
    EXPECT_EQ(files.moveAside(path(u"Notes.mdb-wal"_s)), QString());
}

} // namespace
