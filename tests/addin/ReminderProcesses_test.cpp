// Host processes that share one notes database with 1,000 due reminders.
#include "tests/addin/ReminderChildren.h"
#include "tests/addin/RemindersFixture.h"

#include <QProcess>

#include <algorithm>

using namespace yrw;
using namespace yrw::test;

namespace yrw::test {

namespace {

/// Answers every popup as it comes, the one in front first.
int answerAll(AddIn& addIn, ManualClock& clock, const QString& button) {
    int clicks = 0;
    for (int round = 0; round < 20; ++round) {
        if (!addIn.CheckForReminders()) {
            return 2;
        }
        while (frmReminder* const front = Module1::instance().reminders().front()) {
            clock.advance(1);
            QTest::mouseClick(front->findChild<QPushButton*>(button), Qt::LeftButton);
            QCoreApplication::processEvents();
            ++clicks;
        }
    }
    return clicks > 0 ? 0 : 3;
}

} // namespace

int runReminderChild(const QStringList& arguments) {
    if (arguments.value(1) != u"--answer" || arguments.size() != 6) {
        return -1;
    }
    const PrivateHome home;
    ManualClock clock(QDateTime(QDate(arguments.at(4).toInt(), 12, 31), QTime(12, 0)));
    FileSystem files;
    PromptScript prompt;
    Clock::setInstance(&clock);
    Module1::instance().setTemplateFolder(shippedTemplateFolder());
    const auto host = make<FakeHostApplication>(dao::EngineServices{clock, files}, arguments.at(2));
    host->actAs(arguments.at(3).toLongLong());
    FakeWindow window(host);
    Ref<AddIn> addIn = make<AddIn>();
    addIn->setComponent(window.component);
    const int status = addIn->Activate() ? answerAll(*addIn, clock, arguments.at(5)) : 1;
    addIn.reset();
    return status;
}

} // namespace yrw::test

namespace {

class ReminderProcesses : public RemindersFixture {
protected:
    /// A thousand due reminders, each second one for the second user when there are two; every
    /// answer is written down.
    void fill(int users) {
        Module1::instance().database()->RunScript(
            QStringLiteral(
                "CREATE TABLE tblAnswers (ReminderID LONG, UserID LONG, Status INTEGER);"
                "CREATE TRIGGER noteAnswer AFTER UPDATE OF Status ON tblReminders BEGIN INSERT "
                "INTO tblAnswers VALUES (new.RecordID, new.UserID, new.Status); END;"
                "INSERT INTO tblNotes (Subject, Status, OwnerComponentProgID, OwnerObjectKey, "
                "OwnerRecordID) VALUES ('Shared', 1, 'Test.Application', 'cu', 1);"
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000) "
                "INSERT INTO tblReminders (NoteID, UserID, NextDate, Status) SELECT 1, 1 + i % %1, "
                "'2020-01-01 00:00:00', 1 FROM n;")
                .arg(users));
        addIn->DeActivate();
        settle();
    }
    /// Two hosts at once, a year apart, so that the one's answer never equals the other's.
    void answerInTwo(int secondUser, const QString& secondButton) {
        std::vector<std::unique_ptr<QProcess>> children;
        for (const QStringList& who :
             {QStringList{QStringLiteral("1"), QStringLiteral("2030"),
                          QStringLiteral("cmdForm(1)")},
              QStringList{QString::number(secondUser), QStringLiteral("2031"), secondButton}}) {
            children.push_back(std::make_unique<QProcess>());
            children.back()->setProcessChannelMode(QProcess::ForwardedErrorChannel);
            children.back()->start(QCoreApplication::applicationFilePath(),
                                   QStringList{QStringLiteral("--answer"), world.folder()} + who);
        }
        for (const auto& child : children) {
            ASSERT_TRUE(child->waitForFinished(240'000));
            EXPECT_EQ(child->exitStatus(), QProcess::NormalExit);
            EXPECT_EQ(child->exitCode(), 0);
        }
        ASSERT_TRUE(addIn->Activate());
    }
    [[nodiscard]] static qint64 count(const QString& rest) {
        return Module1::instance()
            .database()
            ->OpenRecordset(QStringLiteral("SELECT Count(*) FROM ") + rest)
            ->value(0)
            .toLongLong();
    }
};

TEST_F(ReminderProcesses, OneUserAtTwoDesksAnswersEachOnce) {
    fill(1);
    answerInTwo(1, QStringLiteral("cmdForm(1)"));
    EXPECT_EQ(count(QStringLiteral("tblAnswers")), 1000);
    EXPECT_EQ(count(QStringLiteral("tblReminders WHERE [Status]=4")), 1000);
}

TEST_F(ReminderProcesses, TwoUsersAnswerTheirOwn) {
    fill(2);
    answerInTwo(2, QStringLiteral("cmdForm(0)")); // the second is told later, within the same day
    EXPECT_EQ(count(QStringLiteral("tblAnswers WHERE [UserID]=1 AND [Status]=4")), 500);
    EXPECT_EQ(count(QStringLiteral("tblAnswers WHERE [UserID]=2 AND [Status]=3")), 500);
    EXPECT_EQ(count(QStringLiteral("tblAnswers")), 1000);
}

} // namespace
