// What shows by itself when the user lands on a record, and what takes it away again.
#include "tests/addin/AddInFixture.h"

#include "dialogs/frmAutoNotes.h"
#include "framework/Settings.h"

#include <QTableWidget>

using namespace yrw;
using namespace yrw::test;

namespace {

class Landing : public AddInFixture {
protected:
    void SetUp() override {
        activate();
        window().show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    }
    qint64 add(const QString& subject, const QString& objectKey, qint64 recordID,
               NoteStatus status = NoteStatus::Active, bool shows = true, qint64 userID = 1) {
        qint64 id = 0;
        const dao::ValueList data{{QStringLiteral("Subject"), subject},
                                  {QStringLiteral("PlainNote"), QString(u"Text of " + subject)},
                                  {QStringLiteral("Status"), static_cast<int>(status)},
                                  {QStringLiteral("AutomaticallyShow"), shows},
                                  {QStringLiteral("OwnerComponentProgID"), kFakeHostProgID},
                                  {QStringLiteral("OwnerObjectKey"), objectKey},
                                  {QStringLiteral("OwnerRecordID"), recordID},
                                  {QStringLiteral("RecordUserID"), userID}};
        Module1::instance().application().Notes()->Add(data, nullptr, id, true);
        return id;
    }
    void addTwo() {
        add(QStringLiteral("Ring"), QStringLiteral("cu"), 1);
        add(QStringLiteral("Write"), QStringLiteral("cu"), 1);
    }
    /// The user rests on a row of a grid.
    void land(FakeController& controller, qint64 row) {
        controller.grid->setCurrentRow(row);
        controller.StayOnRow.raise();
    }
    void land(qint64 row) { land(*window().upper, row); }
    [[nodiscard]] frmAutoNotes* popup() {
        const QList<Form*> forms = formsNamed(AutoNotes::kFormName);
        return forms.isEmpty() ? nullptr : qobject_cast<frmAutoNotes*>(forms.first());
    }
    [[nodiscard]] QTableWidget& list() {
        return *popup()->findChild<QTableWidget*>(QStringLiteral("flxThis"));
    }
    /// The popup's rows; "none" when there is no popup on screen.
    [[nodiscard]] QStringList rows() {
        if (popup() == nullptr || !popup()->isVisible()) {
            return {QStringLiteral("none")};
        }
        QStringList texts;
        for (int row = 0; row < list().rowCount(); ++row) {
            texts += list().item(row, 0)->text();
        }
        return texts;
    }
    [[nodiscard]] QString status() { return window().statusBar->text(); }
    [[nodiscard]] QString toolTip() { return window().statusBar->toolTipText(); }
    [[nodiscard]] bool isTimerOn() { return addIn->UpperTimerForm()->AutoNoteTimer().isActive(); }
    void waitUntilSettled() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return isTimerOn(); }, 2000));
    }
    void tick() { Q_EMIT addIn->UpperTimerForm()->CheckWindowFocus(); }
    void expectNothing(const char* why) {
        EXPECT_EQ(rows(), QStringList{QStringLiteral("none")}) << why;
        EXPECT_EQ(addIn->GetPopupFormCount(), 0) << why;
        EXPECT_EQ(status(), QString()) << why;
        EXPECT_EQ(window().statusBar->tag(), QString()) << why;
    }
    NotesSettings settings() { return NotesSettings(Module1::instance().services().settings); }
};

TEST_F(Landing, EachRecordShowsItsOwnNotes) {
    addTwo();
    add(QStringLiteral("Order note"), QStringLiteral("or"), 2);
    land(0);
    EXPECT_EQ(rows(), (QStringList{"Customer: Quill & Son [ANNA ASH NOTES]", "Ring", "Text of Ring",
                                   "Write", "Text of Write"}));
    EXPECT_EQ(status(), QStringLiteral("2 Note(s) Found...!!"));
    EXPECT_EQ(window().statusBar->tag(), AutoNotes::kMarker);
    EXPECT_EQ(toolTip(), QStringLiteral("Customer: Quill & Son [ANNA ASH NOTES]"));
    land(1);
    expectNothing("a record without notes");
    land(*window().lower, 1);
    EXPECT_EQ(rows().value(0), QStringLiteral("Order: O-2 [ANNA ASH NOTES]"));
    EXPECT_EQ(status(), QStringLiteral("1 Note(s) Found...!!"));
    EXPECT_EQ(addIn->GetPopupFormCount(), 1);
    land(0);
    EXPECT_EQ(rows().size(), 5);
    EXPECT_EQ(addIn->GetPopupFormCount(), 1);
}

TEST_F(Landing, NothingShowsWhereNothingShould) {
    add(QStringLiteral("Done"), QStringLiteral("cu"), 2, NoteStatus::Done);
    add(QStringLiteral("Quiet"), QStringLiteral("cu"), 2, NoteStatus::Active, false);
    addNote(QStringLiteral("cu"), 2, NoteStatus::Active, QStringLiteral("Other.Application"));
    addTwo();
    window().statusBar->setText({});
    land(1);
    expectNothing("neither done nor quiet notes show");
    options().set(setting::kShowPopupWindow, false);
    land(0);
    expectNothing("switched off");
    options().set(setting::kShowPopupWindow, true);
    window().notesMayBeChecked = false;
    land(0);
    expectNothing("the host is not to be disturbed");
    window().notesMayBeChecked = true;
    window().upper->StayOnCell.raise();
    expectNothing("a cell opens nothing");
    window().upper->grid->setAllowAddNew(true);
    land(window().upper->grid->rowCount());
    expectNothing("a new record");
    window().upper->grid->setAllowAddNew(false);
    Module1::instance().database()->RunScript(QStringLiteral("DROP VIEW qryNotes;"));
    land(0);
    expectNothing("the notes cannot be read");
}

TEST_F(Landing, TheHeadingNamesTheFirstNotesAuthor) {
    add(QStringLiteral("By Ben"), QStringLiteral("cu"), 1, NoteStatus::Active, true, 2);
    add(QStringLiteral("By Anna"), QStringLiteral("cu"), 1);
    land(0);
    EXPECT_EQ(rows().value(0), QStringLiteral("Customer: Quill & Son [BEN BIRCH NOTES]"));
    EXPECT_EQ(rows().size(), 5); // one heading, whoever wrote the others
    add(QStringLiteral("Author unknown"), QStringLiteral("cu"), 2, NoteStatus::Active, true, 99);
    land(1);
    EXPECT_EQ(rows().value(0), QStringLiteral("Customer: Ferry Lane [ NOTES]"));
}

TEST_F(Landing, TheFocusTickClosesThePopupOnlyWhenTheHostIsNotTheActiveWindow) {
    addTwo();
    land(0);
    waitUntilSettled();
    tick();
    EXPECT_EQ(rows().size(), 5);
    EXPECT_TRUE(isTimerOn());
    window().isActiveWindowOfUser = false;
    tick();
    expectNothing("another program has the focus");
    EXPECT_FALSE(isTimerOn());
    // Without a popup the timer switches itself off.
    options().set(setting::kCheckAutoNotes, true);
    tick();
    EXPECT_FALSE(isTimerOn());
}

TEST_F(Landing, AUsedPopupStaysUntilTheUserMovesOn) {
    addTwo();
    land(0);
    waitUntilSettled();
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {},
                      list().visualItemRect(list().item(1, 0)).center());
    EXPECT_FALSE(isTimerOn());
    QTest::qWait(300);
    EXPECT_FALSE(isTimerOn());
    EXPECT_EQ(rows().size(), 5);
    window().upper->grid->setCurrentRow(2);
    expectNothing("moved on");
}

TEST_F(Landing, EscapeClearsTheMessageSoThatADoubleClickOpensNothing) {
    addTwo();
    land(0);
    QTest::keyClick(&list(), Qt::Key_Escape);
    expectNothing("closed by hand");
    bool opened = false;
    whenShown(QStringLiteral("frmMain"), [&](Form& form) {
        opened = true;
        form.unload();
    });
    window().statusBar->DblClick.raise();
    EXPECT_FALSE(opened);
    addIn->ShowNotes(nullptr, 0); // what waits for the window ends with it
    EXPECT_TRUE(opened);
}

TEST_F(Landing, TheStatusBarOpensTheNotesOfTheRecordThatWasLandedOn) {
    add(QStringLiteral("Order note"), QStringLiteral("or"), 3);
    land(*window().lower, 2);
    QString title;
    whenShown(QStringLiteral("frmMain"), [&](Form& form) {
        title = form.windowTitle();
        EXPECT_EQ(addIn->GetPopupFormCount(), 0);
        form.unload();
    });
    window().statusBar->DblClick.raise();
    EXPECT_EQ(title, QStringLiteral("YRW Notes - (Order: O-3)"));
    // The popup comes back for that record, though the upper grid stands elsewhere.
    EXPECT_EQ(rows().value(1), QStringLiteral("Order note"));
}

TEST_F(Landing, ADoubleClickOnANoteOpensItAndOutlivesThePopup) {
    const qint64 first = add(QStringLiteral("Ring"), QStringLiteral("cu"), 1);
    add(QStringLiteral("Write"), QStringLiteral("cu"), 1);
    land(0);
    const QPointer<frmAutoNotes> before = popup();
    whenShown(QStringLiteral("frmMain"), [&](Form& form) {
        EXPECT_TRUE(before.isNull() || before->isUnloaded());
        Module1::instance().application().Notes()->Delete(QVariant(first));
        form.unload();
    });
    const QPoint place = list().visualItemRect(list().item(4, 0)).center();
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, place);
    EXPECT_TRUE(QTest::qWaitFor([&] { return before.isNull() && popup() != nullptr; }));
    EXPECT_EQ(rows(),
              (QStringList{"Customer: Quill & Son [ANNA ASH NOTES]", "Write", "Text of Write"}));
    EXPECT_EQ(status(), QStringLiteral("1 Note(s) Found...!!"));
}

TEST_F(Landing, ThePopupStaysAwayWhenItIsSwitchedOffInTheNotesWindow) {
    addTwo();
    land(0);
    whenShown(QStringLiteral("frmMain"), [&](Form& form) {
        options().set(setting::kShowPopupWindow, false);
        form.unload();
    });
    addIn->ShowNotes(nullptr, 0);
    expectNothing("switched off");
    // The same when the add-in is sent away from inside.
    options().set(setting::kShowPopupWindow, true);
    land(0);
    whenShown(QStringLiteral("frmMain"), [&](Form&) { addIn->DeActivate(); });
    addIn->ShowNotes(nullptr, 0);
    expectNothing("deactivated");
    EXPECT_FALSE(static_cast<bool>(addIn->Activate() && popup() != nullptr));
}

TEST_F(Landing, ThePopupStandsBesideTheHostAndGoesWithIt) {
    addTwo();
    land(0);
    EXPECT_LE(popup()->frameGeometry().right(), window().frameGeometry().right());
    EXPECT_EQ(popup()->parentWidget(), &window());
    EXPECT_TRUE(QTest::qWaitFor([&] { return window().isActiveWindow(); }));
    window().close();
    EXPECT_EQ(addIn->GetPopupFormCount(), 0);
    EXPECT_NE(settings().get(setting::kPopupHeight), std::nullopt);
}

TEST_F(Landing, AMarkedRowTellsItsSubjectsWhenItIsAsked) {
    for (int i = 0; i < 12; ++i) {
        add(QStringLiteral("<b>Subject %1").arg(i), QStringLiteral("cu"), 1, NoteStatus::Active,
            false);
    }
    add(QStringLiteral("Done"), QStringLiteral("cu"), 1, NoteStatus::Done);
    const auto remark = [&](qint64 recordID, bool details) {
        RowRemark said(details);
        window().upper->grid->FetchRowRemark.raise(0, window().upper->placeOf(recordID), said);
        return said.lines();
    };
    EXPECT_EQ(remark(1, false), QStringList{QStringLiteral("Has notes")});
    const QStringList lines = remark(1, true);
    EXPECT_EQ(lines.size(), 12); // the text, ten subjects, and that there are more
    EXPECT_EQ(lines.value(1), QStringLiteral("<b>Subject 0"));
    EXPECT_TRUE(remark(2, true).isEmpty());
    options().set(setting::kHighlightNotesRow, false);
    EXPECT_FALSE(remark(1, true).isEmpty()); // its number is still flagged
    options().set(setting::kFlagNotesRow, false);
    EXPECT_TRUE(remark(1, true).isEmpty());
}

} // namespace
