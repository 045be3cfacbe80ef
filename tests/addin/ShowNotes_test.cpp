// The notes window, and what may happen to the add-in while it is open.
#include "tests/addin/AddInFixture.h"

using namespace yrw;
using namespace yrw::test;

namespace {

class ShowNotesTest : public AddInFixture {
protected:
    /// The caption of the window that opens for a note, which is closed again.
    QString captionFor(qint64 noteID) {
        QString caption;
        whenShown(QStringLiteral("frmMain"), [&](Form& form) {
            caption = form.windowTitle();
            EXPECT_EQ(window().status, QStringLiteral("Showing Notes..."));
            EXPECT_EQ(prompt.pointer, MousePointer::Default);
            form.unload();
        });
        addIn->ShowNotes(nullptr, noteID);
        EXPECT_EQ(window().status, QString());
        return caption;
    }
};

TEST_F(ShowNotesTest, ANoteIsShownWithTheOthersOfItsRecord) {
    activate();
    struct Case {
        qint64 note;
        QString inCaption;
    };
    const Case cases[] = {
        {addNote(QStringLiteral("cu"), 3), QStringLiteral("Larch Ltd")},
        {addNote(QStringLiteral("or"), 3), QStringLiteral("O-3")},
        {addNote({}, 0), QStringLiteral("System Notes")},
        {addNote(QStringLiteral("cu"), 999), QStringLiteral("System Notes")},
        {addNote(QStringLiteral("zz"), 1), QStringLiteral("System Notes")},
        {4711, QStringLiteral("System Notes")},
    };
    for (const Case& one : cases) {
        const QString caption = captionFor(one.note);
        EXPECT_TRUE(caption.contains(one.inCaption)) << caption.toStdString();
    }
}

TEST_F(ShowNotesTest, AFailureIsReportedAndNoWindowOpens) {
    activate();
    Module1::instance().database()->RunScript(QStringLiteral("DROP VIEW qryNotes;"));
    prompt.expectReport();
    addIn->ShowNotes(nullptr, 1);
    ASSERT_EQ(prompt.reports.size(), 1);
    EXPECT_EQ(prompt.reports[0].source, QStringLiteral("YRWNOTES.AddIn.ShowNotes"));
    EXPECT_EQ(prompt.reports[0].message, QStringLiteral("Could not show Notes"));
    EXPECT_EQ(prompt.reports[0].title, QStringLiteral("Notes Problem"));
    EXPECT_EQ(prompt.pointer, MousePointer::Default);
    EXPECT_EQ(window().status, QString());
}

TEST_F(ShowNotesTest, TheHostMayLetGoWhileTheWindowIsOpen) {
    activate();
    whenShown(QStringLiteral("frmMain"), [&](Form& form) {
        addIn.reset();
        form.unload();
    });
    AddIn& raw = *addIn;
    raw.ShowNotes(nullptr, 0);
    settle();
    EXPECT_EQ(Module1::instance().addInCount(), 0);
    EXPECT_FALSE(Module1::instance().isDatabaseOpen());
}

TEST_F(ShowNotesTest, ANestedWindowGivesTheOuterOneBack) {
    activate();
    bool cancelledInside = false;
    bool cancelledAfter = false;
    const auto tick = [&](bool& cancelled) {
        Q_EMIT addIn->UpperTimerForm()->CheckReminders(cancelled);
    };
    whenShown(QStringLiteral("frmMain"), [&](Form& outer) {
        const auto inner = [&](Form&) {
            tick(cancelledInside);
            formsNamed(QStringLiteral("frmMain")).last()->unload();
        };
        QTimer::singleShot(20, qApp, [&] { inner(outer); });
        addIn->ShowNotes(nullptr, 0);
        tick(cancelledAfter); // the outer window still keeps reminders back
        outer.unload();
    });
    addIn->ShowNotes(nullptr, 0);
    EXPECT_TRUE(cancelledInside);
    EXPECT_TRUE(cancelledAfter);
    bool cancelled = false;
    tick(cancelled);
    EXPECT_FALSE(cancelled);
}

TEST_F(ShowNotesTest, DeActivatingUnloadsTheOpenWindowsFirst) {
    activate();
    bool openWhenUnloaded = false;
    whenShown(QStringLiteral("frmMain"), [&](Form& outer) {
        QObject::connect(&outer, &Form::unloaded, &outer,
                         [&] { openWhenUnloaded = Module1::instance().isDatabaseOpen(); });
        QTimer::singleShot(20, qApp, [&] {
            EXPECT_EQ(formsNamed(QStringLiteral("frmMain")).size(), 2);
            addIn->DeActivate();
            EXPECT_TRUE(formsNamed(QStringLiteral("frmMain")).isEmpty());
        });
        addIn->ShowNotes(nullptr, 0);
    });
    addIn->ShowNotes(nullptr, 0);
    EXPECT_TRUE(openWhenUnloaded);
    EXPECT_FALSE(Module1::instance().isDatabaseOpen());
    EXPECT_TRUE(addIn->Activate());
}

TEST_F(ShowNotesTest, ANewNoteMarksItsRowAtOnce) {
    activate();
    window().show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window()));
    whenShown(QStringLiteral("frmMain"), [&](Form& form) {
        addNote(QStringLiteral("cu"), 3);
        form.unload();
    });
    addIn->ShowNotes(nullptr, 0);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return window().upper->grid->paintedRowColour(2) == QColor(192, 192, 255); }));
    EXPECT_NE(window().upper->grid->paintedRowColour(1), QColor(192, 192, 255));
}

} // namespace
