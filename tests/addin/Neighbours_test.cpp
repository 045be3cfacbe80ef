// What other users and programs do to the notes database while a host works with it.
#include "platform/richtext/RichTextBox.h"
#include "tests/addin/AddInFixture.h"

#include <QMessageBox>
#include <QMetaObject>

#include <unistd.h>

using namespace yrw;
using namespace yrw::test;

namespace {

class Neighbours : public AddInFixture {
protected:
    static void minuteTick() {
        auto* timer = Module1::instance().replacedFile().findChild<QTimer*>(
            QStringLiteral("tmrReplacedFile"));
        ASSERT_TRUE(timer->isActive());
        QMetaObject::invokeMethod(timer, "timeout");
    }
    /// Puts a copy without what was written since in the place of the open database.
    void replace(const QString& copy) const {
        ASSERT_EQ(::rename(qPrintable(copy), qPrintable(world.notesPath())), 0);
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
    options().set(setting::kCheckForReminders, false);
    minuteTick();
    EXPECT_TRUE(prompt.asked.isEmpty());
    replace(copy);
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

/// What makes the replaced file be noticed while somebody types.
enum class Notice { AtTheMinute, AtASave, UnderABox, AtClosing };

class ReplacedUnderTheWindow : public Neighbours, public testing::WithParamInterface<Notice> {
protected:
    static void notice(Form& form) {
        switch (GetParam()) {
        case Notice::AtTheMinute:
            return minuteTick();
        case Notice::AtASave:
            return QTest::keyClick(form.findChild<RichTextBox*>(QStringLiteral("rtxMain")),
                                   Qt::Key_S, Qt::ControlModifier);
        case Notice::AtClosing:
            form.unload();
            return;
        case Notice::UnderABox:
            break;
        }
        QMessageBox box(&form);
        QTimer::singleShot(20, &box, [&box] {
            minuteTick();
            minuteTick();
            box.close();
        });
        box.exec();
    }
};

INSTANTIATE_TEST_SUITE_P(, ReplacedUnderTheWindow,
                         testing::Values(Notice::AtTheMinute, Notice::AtASave, Notice::UnderABox,
                                         Notice::AtClosing));

TEST_P(ReplacedUnderTheWindow, WhatWasTypedGoesOnInTheFileThatIsThere) {
    activate();
    const qint64 note = addNote(QStringLiteral("cu"), 1);
    const QString copy = world.notesPath() + QStringLiteral(".copy");
    Module1::instance().database()->CopyTo(copy);
    addNote(QStringLiteral("cu"), 1);
    if (GetParam() == Notice::UnderABox) {
        prompt.expectMessage();
    }
    prompt.answer(PromptAnswer::Yes); // to the file that is there
    prompt.answer(PromptAnswer::Yes); // to the text that was left
    QString shown;
    const auto goOn = [&](Form& form) {
        auto* box = form.findChild<RichTextBox*>(QStringLiteral("rtxMain"));
        EXPECT_TRUE(QTest::qWaitFor([box] { return box->Text() == u"typed"; }));
        shown = box->Text();
        form.unload();
    };
    whenShown(QStringLiteral("frmMain"), [&](Form& form) {
        QObject::connect(&form, &Form::unloaded, qApp,
                         [&] { whenShown(QStringLiteral("frmMain"), goOn); });
        auto* box = form.findChild<RichTextBox*>(QStringLiteral("rtxMain"));
        box->setFocus();
        QTest::keyClicks(box, QStringLiteral("typed"));
        replace(copy);
        notice(form);
    });
    addIn->ShowNotes(nullptr, note);
    if (GetParam() == Notice::AtClosing) {
        addIn->ShowNotes(nullptr, note);
    }
    EXPECT_EQ(shown, QStringLiteral("typed"));
    EXPECT_EQ(notes(), 1);
    const Ref<IRecord> saved = Module1::instance().application().Notes()->Item(QVariant(note));
    EXPECT_EQ(saved->value(QStringLiteral("PlainNote")).toString(), QStringLiteral("typed"));
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
    const Ref<IRecord> note = Module1::instance().application().Notes()->Item(QVariant(id));
    ASSERT_TRUE(Module1::instance().applicationView()->DB()->UpdateRecord(
        *note, {{QStringLiteral("AutomaticallyShow"), true}}));
    FakeController& upper = *window().upper;
    const Ref<dao::Database> holder = others->OpenDatabase(world.notesPath());
    holder->RunScript("PRAGMA locking_mode = EXCLUSIVE");
    holder->RunScript(""); // the next transaction takes the file
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
