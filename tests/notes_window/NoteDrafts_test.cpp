// Drafts on the user's disk.
#include "notes_window/NoteDrafts.h"
#include "tests/support/FullDisk.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace yrw {

class NoteDraftsTest : public testing::Test {
protected:
    [[nodiscard]] QString folder() const { return m_folder.filePath("state/drafts"); }
    [[nodiscard]] QString onlyFile() const {
        const QDir top(folder());
        const QDir inner(top.filePath(top.entryList(QDir::Dirs | QDir::NoDotAndDotDot).value(0)));
        return inner.filePath(inner.entryList(QDir::Files).value(0));
    }
    NoteDraft draft{17, QDateTime(QDate(2026, 3, 10), QTime(14, 32)), "{\\rtf1 \"typed\"\r\n}", {}};

private:
    QTemporaryDir m_folder;
};

TEST_F(NoteDraftsTest, AreFoundUntilRemovedAndOnlyForTheirDatabase) {
    NoteDrafts drafts(folder(), "/a/Notes.mdb");
    EXPECT_FALSE(drafts.find(17));
    ASSERT_TRUE(drafts.write(draft));
    draft.rtf = "later";
    ASSERT_TRUE(drafts.write(draft));
    const std::optional<NoteDraft> found = drafts.find(17);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->rtf, "later");
    EXPECT_EQ(found->written, draft.written);
    EXPECT_EQ(drafts.noteIDs(), QList<qint64>{17});
    EXPECT_FALSE(NoteDrafts(folder(), "/b/Notes.mdb").find(17));
    for (const char* each : {"second", "third", "fourth"}) { // none replaces one put aside
        drafts.putAside(*drafts.find(17));
        draft.rtf = each;
        draft.written = draft.written.addSecs(60);
        ASSERT_TRUE(drafts.write(draft));
        EXPECT_EQ(drafts.find(17)->rtf, each);
    }
    for (const char* each : {"fourth", "third", "second", "later"}) {
        ASSERT_TRUE(drafts.find(17));
        EXPECT_EQ(drafts.find(17)->rtf, each);
        NoteDrafts::remove(*drafts.find(17));
    }
    EXPECT_FALSE(drafts.find(17));
    EXPECT_TRUE(drafts.noteIDs().isEmpty());
}

TEST_F(NoteDraftsTest, OnADiskThatFillsTheEarlierOneStays) {
    NoteDrafts drafts(folder(), "/a/Notes.mdb");
    ASSERT_TRUE(drafts.write(draft));
    const NoteDraft later{17, draft.written.addSecs(60), draft.rtf + "typed on", {}};
    bool written = false;
    for (rlim_t room = 0; !written; ++room) {
        {
            const test::FullDisk full(room);
            written = drafts.write(later);
        }
        ASSERT_EQ(drafts.find(17).value_or(NoteDraft()).rtf, written ? later.rtf : draft.rtf)
            << room;
        ASSERT_EQ(drafts.problem().isEmpty(), written);
    }
}

TEST_F(NoteDraftsTest, OnlyTheUserCanReadThem) {
    NoteDrafts drafts(folder(), "/a/Notes.mdb");
    ASSERT_TRUE(drafts.write(draft));
    const QFileDevice::Permissions others =
        QFileDevice::ReadGroup | QFileDevice::ReadOther | QFileDevice::WriteOther;
    EXPECT_FALSE(QFile::permissions(onlyFile()) & others);
}

TEST_F(NoteDraftsTest, OfAWindowOpenInAnotherProcessAreLeftAlone) {
    NoteDrafts drafts(folder(), "/a/Notes.mdb");
    ASSERT_TRUE(drafts.write(draft));
    QProcess other;
    other.start("sleep", {"30"});
    ASSERT_TRUE(other.waitForStarted());
    const auto writtenBy = [&](const QString& started) {
        QFile file(onlyFile());
        EXPECT_TRUE(file.open(QIODevice::ReadWrite));
        QJsonObject content = QJsonDocument::fromJson(file.readAll()).object();
        content["process"] = other.processId();
        content["started"] = started;
        file.resize(0);
        file.write(QJsonDocument(content).toJson());
    };
    writtenBy("1");
    EXPECT_TRUE(drafts.find(17)); // its writer has died, and its number was given again
    QFile stat(QStringLiteral("/proc/%1/stat").arg(other.processId()));
    ASSERT_TRUE(stat.open(QIODevice::ReadOnly));
    writtenBy(QString::fromUtf8(stat.readAll().split(' ').value(21)));
    EXPECT_FALSE(drafts.find(17));
    drafts.remove(17); // an offer that was answered here while the other went on typing
    other.kill();
    other.waitForFinished();
    EXPECT_TRUE(drafts.find(17)); // its writer has died
}

TEST_F(NoteDraftsTest, DamagedOnesAreIgnored) {
    NoteDrafts drafts(folder(), "/a/Notes.mdb");
    ASSERT_TRUE(drafts.write(draft));
    QFile file(onlyFile());
    ASSERT_TRUE(file.rename(QFileInfo(file).path() + "/18.draft"));
    EXPECT_FALSE(drafts.find(18)); // is another note's
    ASSERT_TRUE(file.rename(QFileInfo(file).path() + "/17.draft"));
    ASSERT_TRUE(file.resize(file.size() / 2));
    EXPECT_FALSE(drafts.find(17));
}

} // namespace yrw
