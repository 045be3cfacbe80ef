#include "tests/dao/DaoFixture.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRandomGenerator>
#include <QThread>

#include <memory>
#include <vector>

namespace yrw::dao {

namespace {

/// A count from the environment, for longer runs by hand.
int countOr(const char* variable, int standard) {
    bool given = false;
    const int count = qEnvironmentVariableIntValue(variable, &given);
    return given ? count : standard;
}

class ProcessesTest : public DaoTest {
protected:
    ProcessesTest() { database->Close(); }

    static std::unique_ptr<QProcess> start(const QStringList& arguments) {
        auto child = std::make_unique<QProcess>();
        child->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child->start(QCoreApplication::applicationFilePath(), arguments);
        EXPECT_TRUE(child->waitForStarted());
        return child;
    }
    static qint64 count(Database& in, const QString& rest) {
        return in.OpenRecordset(u"SELECT Count(*) FROM "_qs + rest)->value(0).toLongLong();
    }
};

TEST_F(ProcessesTest, NothingAcknowledgedIsLostWhenAWriterIsKilled) {
    const int kills = countOr("YRW_TEST_KILLS", 50);
    QRandomGenerator random(1);
    qint64 acknowledged = 0;
    for (int i = 0; i < kills; ++i) {
        const auto child = start({u"--writer"_qs, path()});
        EXPECT_TRUE(child->waitForReadyRead());
        QThread::msleep(random.bounded(25U));
        child->kill();
        child->waitForFinished();
        const QList<QByteArray> lines = child->readAllStandardOutput().split('\n');
        const qint64 last = lines.size() < 2 ? 0 : lines[lines.size() - 2].toLongLong();
        acknowledged = std::max(acknowledged, last);
        const auto after = workspace->OpenDatabase(path());
        ASSERT_TRUE(after->CheckIntegrity().isEmpty());
        const qint64 notes = count(*after, u"tblNotes"_qs);
        ASSERT_GE(notes, acknowledged);
        ASSERT_EQ(count(*after, u"tblReminders"_qs), notes) << "no half note";
        ASSERT_EQ(count(*after, u"qryReminders WHERE [PlainNote] Is Null"_qs), 0);
    }
    EXPECT_GT(acknowledged, kills);
}

TEST_F(ProcessesTest, EightProcessesShareOneFile) {
    const int operations = countOr("YRW_TEST_OPERATIONS", 150);
    std::vector<std::unique_ptr<QProcess>> children;
    for (int number = 1; number <= 8; ++number) {
        children.push_back(
            start({u"--mixed"_qs, path(), QString::number(number), QString::number(operations)}));
    }
    qint64 counted = 0;
    for (const auto& child : children) {
        ASSERT_TRUE(child->waitForFinished(280'000));
        EXPECT_EQ(child->exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(child->exitCode(), 0);
        counted += child->readAllStandardOutput().count('+');
    }
    const auto after = workspace->OpenDatabase(path());
    EXPECT_TRUE(after->CheckIntegrity().isEmpty());
    EXPECT_EQ(count(*after, u"tblReminders"_qs), 0);
    EXPECT_EQ(after->OpenRecordset(u"tblSettings"_qs)->value(u"HighlightRowColour").toLongLong(),
              counted)
        << "no lost edit";
}

} // namespace

} // namespace yrw::dao
