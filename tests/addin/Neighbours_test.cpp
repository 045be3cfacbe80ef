// What other users and programs do to the notes database while a host works with it.
#include "tests/addin/AddInFixture.h"

#include <QMetaObject>

#include <unistd.h>

using namespace yrw;
using namespace yrw::test;

namespace {

class Neighbours : public AddInFixture {
protected:
    void minuteTick() {
        QMetaObject::invokeMethod(&addIn->UpperTimerForm()->ReminderTimer(), "timeout");
    }
    static qint64 notes() {
        return Module1::instance()
            .database()
            ->OpenRecordset(QStringLiteral("SELECT Count(*) FROM tblNotes"))
            ->value(0)
            .toLongLong();
    }
    static bool isMarked(const FakeController& controller, qint64 recordID) {
        RowStyle style;
        controller.grid->FetchRowStyle.raise(0, controller.placeOf(recordID), style);
        return style.hasBackColor();
    }
    Ref<dao::Workspace> others = dao::createWorkspace({clock, files});
};

TEST_F(Neighbours, AReplacedDatabaseIsOfferedAtTheMinuteAndAgainWithTheNotes) {
    activate();
    addNote(QStringLiteral("cu"), 1);
    const QString copy = world.notesPath() + QStringLiteral(".copy");
    Module1::instance().database()->CopyTo(copy);
    addNote(QStringLiteral("cu"), 2);
    minuteTick();
    EXPECT_TRUE(prompt.asked.isEmpty());
    ASSERT_EQ(::rename(qPrintable(copy), qPrintable(world.notesPath())), 0);
    prompt.answer(PromptAnswer::No);
    minuteTick();
    minuteTick();
    EXPECT_EQ(prompt.asked.size(), 1) << "who has said no is not asked each minute";
    EXPECT_TRUE(prompt.asked.value(0).contains(world.notesPath()));
    EXPECT_THROW(addNote(QStringLiteral("cu"), 3), AutomationError);
    EXPECT_EQ(notes(), 2);
    prompt.answer(PromptAnswer::Yes);
    whenShown(QStringLiteral("frmMain"), [](Form& form) { form.unload(); });
    addIn->ShowNotes(nullptr, 0);
    EXPECT_EQ(notes(), 1);
    EXPECT_TRUE(isMarked(*window().upper, 1));
    EXPECT_FALSE(isMarked(*window().upper, 2));
    addNote(QStringLiteral("cu"), 3);
    EXPECT_EQ(notes(), 2);
}

TEST_F(Neighbours, ALockedDatabaseFreezesNothingAndWhatWasMissedComesLater) {
    makeNotesDatabase();
    {
        // As one is that somebody opened over a network: readers and writers exclude each other.
        const Ref<dao::Database> shared = others->OpenDatabase(world.notesPath());
        shared->RunScript(QStringLiteral("PRAGMA application_id = 1498568526"));
        shared->Close();
    }
    create();
    ASSERT_TRUE(addIn->Activate());
    window().showRecords();
    const qint64 id = addNote(QStringLiteral("cu"), 1);
    const Ref<IRecord> note = Module1::instance().application()->Notes()->Item(QVariant(id));
    ASSERT_TRUE(addIn->NotesApplication()->DB()->UpdateRecord(
        *note, {{QStringLiteral("AutomaticallyShow"), true}}));
    FakeController& upper = *window().upper;
    dao::OpenOptions alone;
    alone.exclusive = true;
    const Ref<dao::Database> holder = others->OpenDatabase(world.notesPath(), alone);
    QElapsedTimer timer;
    timer.start();
    for (int row = 0; row < 40; ++row) {
        EXPECT_FALSE(isMarked(upper, 1));
    }
    upper.StayOnRow.raise();
    EXPECT_FALSE(addIn->CheckForReminders()) << "and nothing is reported";
    EXPECT_LT(timer.elapsed(), 1500);
    EXPECT_EQ(addIn->GetPopupFormCount(), 0);
    holder->Close();
    EXPECT_TRUE(isMarked(upper, 1));
    EXPECT_TRUE(QTest::qWaitFor([this] { return addIn->GetPopupFormCount() == 1; }));
    EXPECT_TRUE(addIn->CheckForReminders());
}

} // namespace
