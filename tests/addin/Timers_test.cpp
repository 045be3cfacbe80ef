// The two timers.
#include "tests/addin/AddInFixture.h"

#include "addin/DailyCopyMaker.h"
#include "framework/Settings.h"

#include <limits>

using namespace yrw;
using namespace yrw::test;

namespace {

/// A way to a private member: naming it in an explicit instantiation is allowed.
template <auto Member>
struct Reach {
    friend void stopReminders(AddIn& addIn) { (addIn.*Member)(); }
};
template struct Reach<&AddIn::stopReminders>;
void stopReminders(AddIn& addIn);

class Timers : public AddInFixture {
protected:
    [[nodiscard]] frmTimer& form() { return *addIn->UpperTimerForm(); }
    static void tick(QTimer& timer) { QMetaObject::invokeMethod(&timer, "timeout"); }
};

TEST_F(Timers, StartAsTheSettingsSayAndTheMinuteAlways) {
    makeNotesDatabase();
    SettingsStore store;
    NotesSettings settings(store);
    for (const bool focus : {true, false}) {
        settings.set(setting::kCheckAutoNotes, focus);
        settings.set(setting::kCheckForReminders, false);
        create();
        ASSERT_TRUE(addIn->Activate());
        EXPECT_EQ(form().AutoNoteTimer().isActive(), focus);
        EXPECT_TRUE(form().ReminderTimer().isActive());
        EXPECT_EQ(form().ReminderTimer().interval(), 60000);
        EXPECT_EQ(form().AutoNoteTimer().interval(), 500);
        EXPECT_FALSE(form().isVisible());
        EXPECT_FALSE(addIn->CheckingForReminders());
        EXPECT_EQ(addIn->LowerTimerForm(), nullptr);
        addIn.reset();
    }
}

TEST_F(Timers, StoppingRemindersStopsTheMinuteAndSwitchesTheToolOff) {
    activate();
    ASSERT_TRUE(form().ReminderTimer().isActive());
    stopReminders(*addIn);
    EXPECT_FALSE(form().ReminderTimer().isActive());
    EXPECT_FALSE(showNotesTool()->isEnabled());
    addIn->DeActivate();
    stopReminders(*addIn);
}

TEST_F(Timers, MinutesAreCountedWhileCheckingIsOff) {
    activate();
    options().set(setting::kCheckForReminders, false);
    EXPECT_FALSE(form().ReminderTimer().isActive());
    tick(form().ReminderTimer());
    tick(form().ReminderTimer());
    EXPECT_EQ(form().minuteCounter(), 2);
    window().upper->isBusy = true; // no check: the counter stays
    options().set(setting::kCheckForReminders, true);
    EXPECT_TRUE(form().ReminderTimer().isActive());
    tick(form().ReminderTimer());
    EXPECT_EQ(form().minuteCounter(), 2);
    window().upper->isBusy = false;
    tick(form().ReminderTimer());
    EXPECT_EQ(form().minuteCounter(), 0);
    EXPECT_THROW((void)frmTimer::nextMinute(std::numeric_limits<int>::max()), AutomationError);
}

TEST_F(Timers, TheFocusTickEndsThePopupOrItself) {
    activate();
    QTimer& focus = form().AutoNoteTimer();
    tick(focus); // no popup
    EXPECT_FALSE(focus.isActive());

    Form popup(AutoNotes::kFormName);
    popup.load();
    options().set(setting::kCheckAutoNotes, true);
    tick(focus); // the user is in the host's window
    EXPECT_TRUE(focus.isActive());
    EXPECT_EQ(addIn->GetPopupFormCount(), 1);
    window().isActiveWindowOfUser = false;
    tick(focus);
    EXPECT_FALSE(focus.isActive());
    EXPECT_EQ(addIn->GetPopupFormCount(), 0);
}

TEST_F(Timers, TheWindowEndsWithTheAddInAlsoWithinItsOwnTick) {
    activate();
    const QPointer<frmTimer> timers(&form());
    QObject::connect(timers, &frmTimer::CheckReminders, timers, [this] { addIn.reset(); });
    tick(timers->ReminderTimer());
    EXPECT_EQ(Module1::instance().addInCount(), 0);
    settle();
    EXPECT_TRUE(timers.isNull());
}

TEST_F(Timers, TheDaysCopyIsMadeWhileNobodyTypes) {
    activate();
    auto* const maker = form().findChild<DailyCopyMaker*>();
    ASSERT_NE(maker, nullptr);
    const QString day = world.folder() + QStringLiteral("/Backups/Notes/Notes %1.mdb");
    const auto pathOf = [&] { return day.arg(clock.now().date().toString(Qt::ISODate)); };
    SettingsStore store;
    NotesSettings settings(store);
    settings.set(setting::kDailyCopy, false);
    maker->look();
    settings.set(setting::kDailyCopy, true);
    clock.advance(3);
    QTest::qWait(250);
    EXPECT_FALSE(QFile::exists(pathOf())) << "switched off";

    maker->look();
    QTest::keyClick(&window(), Qt::Key_A);
    QTest::qWait(250);
    EXPECT_FALSE(QFile::exists(pathOf())) << "a key was pressed just now";
    clock.advance(3);
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(pathOf()); }));

    clock.advance(86400);
    maker->look();
    clock.advance(3);
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(pathOf()); })) << "the next day";
}

} // namespace
