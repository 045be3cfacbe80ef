// The properties dialog: what it shows, refuses and raises.
#include "dialogs/frmNoteProperties.h"
#include "platform/forms/DatePicker.h"
#include "tests/driving/ScreenWatch.h"
#include "tests/support/FakeAddIn.h"
#include "tests/support/ZoneClock.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace yrw::test {

class NoteProperties : public testing::Test {
protected:
    /// What one OK raised.
    struct Raised {
        QStringList events;
        QString subject;
        QDateTime date;
        QDateTime due;
        ReminderKind kind = ReminderKind::None;
        bool autoShow = false;
        NoteType type = NoteType::Public;
        QList<qint64> users;
    };

    void open(const Ref<Note>& note) {
        dialog = std::make_unique<frmNoteProperties>(store);
        listen(dialog->AddNote, "AddNote");
        listen(dialog->EditNote, "EditNote");
        connections.push_back(
            dialog->AddReminder.connect([this](Ref<Note>& of, const QDateTime&, qint64 user) {
                EXPECT_TRUE(of);
                raised.users.append(user);
            }));
        dialog->Initialise(addIn, note);
        dialog->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    void listen(frmNoteProperties::NoteEvent& event, const QString& name) {
        connections.push_back(event.connect(
            [this, name](const QDateTime& date, const QString& subject, Ref<Note>& note,
                         ReminderKind kind, const QDateTime& due, bool autoShow, NoteType type) {
                raised.events += name;
                raised.date = date;
                raised.subject = subject;
                raised.kind = kind;
                raised.due = due;
                raised.autoShow = autoShow;
                raised.type = type;
                if (!note) {
                    note = store.addNote(subject);
                }
            }));
    }
    [[nodiscard]] Ref<Note> noteWith(ReminderKind kind, const QList<qint64>& users) {
        Ref<Note> note = store.addNote("Subject");
        note->Field("ReminderType")->setValue(int(kind));
        for (const qint64 user : users) {
            addReminder(store.application(), store.clock(), *note, store.clock().now(), user);
        }
        return note;
    }
    template <class Control = QAbstractButton>
    [[nodiscard]] Control& control(const char* name) const {
        return *dialog->findChild<Control*>(QLatin1String(name));
    }
    void click(const char* name) const {
        QWidget& button = control(name); // its mark is at its left end
        QTest::mouseClick(&button, Qt::LeftButton, Qt::NoModifier, QPoint(8, button.height() / 2));
    }
    void setSubject(const QString& text) const { control<QLineEdit>("txtSubject").setText(text); }
    [[nodiscard]] QTreeWidget& tree() const { return control<QTreeWidget>("tvwRemindUsers"); }
    [[nodiscard]] QStringList ticked() const {
        QStringList texts;
        for (QTreeWidgetItemIterator node(&tree()); *node != nullptr; ++node) {
            if ((*node)->checkState(0) == Qt::Checked) {
                texts.append((*node)->text(0));
            }
        }
        return texts;
    }
    /// Ticks or unticks a node as a user does with the space key.
    void tick(const QString& text) const {
        tree().setFocus();
        tree().setCurrentItem(
            tree().findItems(text, Qt::MatchExactly | Qt::MatchRecursive).first());
        QTest::keyClick(&tree(), Qt::Key_Space);
    }

    PromptScript script;
    TestStore store;
    Ref<FakeAddIn> addIn = make<FakeAddIn>(store, script);
    std::unique_ptr<frmNoteProperties> dialog;
    std::vector<Connection> connections;
    Raised raised;
};

TEST_F(NoteProperties, ANewNoteBeginsPublicNowAndWithoutReminder) {
    open(nullptr);
    EXPECT_EQ(dialog->windowTitle(), "Add Note");
    EXPECT_EQ(control<DatePicker>("dtpDate").value(), store.clock().now());
    EXPECT_EQ(control<DatePicker>("dtpReminder").value(), store.clock().now().addSecs(3600));
    EXPECT_TRUE(control("optType(1)").isChecked());
    EXPECT_TRUE(control("optReminder(1)").isChecked());
    EXPECT_EQ(control("optReminder(3)").text(), "Remind Everyone in the 'Sales' &Group");
    EXPECT_FALSE(control("optReminder(0)").isEnabled());
    EXPECT_FALSE(tree().isEnabled());
    EXPECT_TRUE(control<QLineEdit>("txtSubject").hasFocus());
    EXPECT_EQ(control<QLineEdit>("txtSubject").maxLength(), 255);
    setSubject("Call");
    QTest::keyClick(dialog.get(), Qt::Key_Return); // OK is the default
    EXPECT_TRUE(dialog->isUnloaded());
    EXPECT_EQ(raised.events, QStringList("AddNote"));
    EXPECT_EQ(raised.subject, "Call");
    EXPECT_EQ(raised.kind, ReminderKind::None);
    EXPECT_FALSE(raised.due.isValid());
    EXPECT_EQ(raised.type, NoteType::Public);
    EXPECT_TRUE(raised.users.isEmpty());
}

TEST_F(NoteProperties, LongNamesLeaveTheDialogWholeOnTheScreen) {
    store.host().DAODatabase()->RunScript(
        QStringLiteral("UPDATE tblGroups SET GroupName = '%1'; UPDATE tblUsers SET LastName = '%1'")
            .arg(QString(63, u'W')));
    open(noteWith(ReminderKind::Everyone, {1, 2}));
    dialog->move(0, 0); // where a window manager may put it
    EXPECT_EQ(ScreenWatch::faultsOf(*dialog).join("; ").toStdString(), "");
    EXPECT_TRUE(control("optReminder(3)").toolTip().contains(QString(63, u'W')));
}

TEST_F(NoteProperties, RefusesIncompleteInput) {
    open(nullptr);
    script.expectMessage(3);
    click("cmdForm(0)");
    EXPECT_EQ(script.asked.last(), "Input Check: A subject is required.");
    EXPECT_EQ(script.lastIcon, PromptIcon::Exclamation);
    setSubject("Call");
    click("chkReminder");
    click("optReminder(2)");
    click("cmdForm(0)");
    EXPECT_EQ(script.asked.last(), "User Check: Please tick at least 1 user in the user tree.");
    tick("Sales");     // ticks its users too
    tick("Anna Ash");  // which the user takes back:
    tick("Ben Birch"); // only the group stays ticked
    EXPECT_EQ(ticked(), QStringList("Sales"));
    click("cmdForm(0)");
    EXPECT_EQ(script.asked.last(), "User Check: Please tick at least 1 user in the user tree.");
    EXPECT_FALSE(dialog->isUnloaded());
    EXPECT_TRUE(raised.events.isEmpty());
}

TEST_F(NoteProperties, WhoIsRemindedByEachOption) {
    struct Case {
        const char* option;
        QStringList ticked;
        ReminderKind kind;
        QList<qint64> users;
    };
    const QList<Case> cases{
        {"optReminder(0)",
         {"Office", "Erin Elm", "Sales", "Anna Ash", "Ben Birch", "Service", "Cara Cedar",
          "Dave Dogwood"},
         ReminderKind::Everyone,
         {5, 1, 2, 3, 4}},
        {"optReminder(1)", {}, ReminderKind::Me, {1}},
        {"optReminder(3)", {"Sales", "Anna Ash", "Ben Birch"}, ReminderKind::MyGroup, {1, 2}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.option);
        raised = {};
        open(nullptr);
        setSubject("Call");
        click("chkReminder");
        click("optReminder(2)");
        EXPECT_EQ(ticked(), QStringList()); // chosen users begin with none
        click(each.option);
        EXPECT_EQ(ticked(), each.ticked);
        EXPECT_EQ(tree().isEnabled(), each.kind != ReminderKind::Me);
        click("cmdForm(0)");
        EXPECT_EQ(raised.kind, each.kind);
        EXPECT_EQ(raised.users, each.users);
        EXPECT_EQ(raised.due, store.clock().now().addSecs(3600));
    }
}

TEST_F(NoteProperties, UsersWithoutAGroupComeLastAndAGroupsAmpersandShows) {
    store.host().DAODatabase()->RunScript(
        "UPDATE tblUsers SET GroupID = NULL WHERE RecordID = 3; "
        "UPDATE tblGroups SET GroupName = 'Sales & Co' WHERE GroupID = 1");
    open(nullptr);
    EXPECT_EQ(control("optReminder(3)").text(), "Remind Everyone in the 'Sales && Co' &Group");
    click("chkReminder");
    click("optReminder(0)");
    EXPECT_EQ(tree().topLevelItem(tree().topLevelItemCount() - 1)->text(0), "(no group)");
    EXPECT_EQ(ticked().last(), "Cara Cedar");
    tree().collapseItem(tree().topLevelItem(0));
    EXPECT_TRUE(tree().topLevelItem(0)->isExpanded());
}

TEST_F(NoteProperties, StoredKindsReopen) {
    struct Case {
        ReminderKind kind;
        QList<qint64> users;
        const char* option;
        QStringList ticked;
    };
    const QList<Case> cases{
        {ReminderKind::None, {}, "optReminder(1)", {}},
        {ReminderKind::Everyone,
         {1, 5},
         "optReminder(0)",
         {"Office", "Erin Elm", "Sales", "Anna Ash", "Service"}},
        {ReminderKind::Me, {1}, "optReminder(1)", {}},
        {ReminderKind::SelectedUsers, {2, 3}, "optReminder(2)", {"Ben Birch", "Cara Cedar"}},
        {ReminderKind::MyGroup, {1, 2}, "optReminder(2)", {"Anna Ash", "Ben Birch"}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(int(each.kind));
        open(noteWith(each.kind, each.users));
        EXPECT_EQ(dialog->windowTitle(), "Edit Note");
        EXPECT_EQ(control("chkReminder").isChecked(), each.kind != ReminderKind::None);
        EXPECT_TRUE(control(each.option).isChecked());
        EXPECT_EQ(ticked(), each.ticked);
    }
}

TEST_F(NoteProperties, ShowsHowFarEachRecipientIs) {
    const Ref<Note> note = noteWith(ReminderKind::SelectedUsers, {1, 2, 3, 4});
    const QStringList states{"1", "2", "3, NextDate = '2026-03-11 08:00:00'",
                             "4, LastDate = '2026-03-09 17:45:00'"};
    for (qsizetype i = 0; i < states.size(); ++i) {
        store.database()->RunScript(QStringLiteral("UPDATE tblReminders SET Status = %1 WHERE "
                                                   "UserID = %2;")
                                        .arg(states[i])
                                        .arg(i + 1));
    }
    // An answered reminder of somebody who has an open one too does not hide that.
    store.database()->RunScript(
        "INSERT INTO tblReminders (NoteID, UserID, Status, LastDate) VALUES "
        "(1, 1, 4, '2026-03-01 08:00:00');");
    open(note);
    const auto stateOf = [this](const char* name) {
        return tree().findItems(name, Qt::MatchExactly | Qt::MatchRecursive).first()->text(1);
    };
    EXPECT_FALSE(tree().isHeaderHidden());
    for (const char* option : {"optReminder(2)", "optReminder(0)"}) {
        click(option);
        EXPECT_EQ(stateOf("Anna Ash"), "waiting");
        EXPECT_EQ(stateOf("Ben Birch"), "waiting");
        EXPECT_EQ(stateOf("Cara Cedar"), "told later until 11/03/2026 08:00");
        EXPECT_EQ(stateOf("Dave Dogwood"), "dismissed on 09/03/2026 17:45");
        EXPECT_EQ(stateOf("Erin Elm"), "");
        EXPECT_EQ(stateOf("Sales"), "");
    }
    // The one who reminds herself stands in no list.
    auto& own = control<QLabel>("lblOwnState");
    EXPECT_TRUE(own.isHidden());
    click("optReminder(1)");
    EXPECT_EQ(own.text(), "waiting");
    EXPECT_TRUE(own.isVisible());
    EXPECT_EQ(control("optReminder(1)").accessibleDescription(), "waiting");
    EXPECT_FALSE(control("optReminder(0)").isChecked());
    open(noteWith(ReminderKind::None, {}));
    EXPECT_TRUE(tree().isHeaderHidden());
    EXPECT_TRUE(control<QLabel>("lblOwnState").isHidden());
}

TEST_F(NoteProperties, AnHourThatComesTwiceIsExplained) {
    const InZone zone("Europe/Berlin");
    open(nullptr);
    click("chkReminder");
    auto& picker = control<DatePicker>("dtpReminder");
    EXPECT_TRUE(control<QLabel>("lblClockChange").isHidden());
    picker.setDateTime(QDateTime(QDate(2026, 10, 25), QTime(2, 30), Qt::UTC));
    EXPECT_TRUE(control<QLabel>("lblClockChange").isVisible());
    EXPECT_TRUE(control<QLabel>("lblClockChange").text().contains("comes twice"));
    EXPECT_EQ(picker.accessibleDescription(), control<QLabel>("lblClockChange").text());
}

TEST_F(NoteProperties, TheTabKeyVisitsEveryControlInReadingOrder) {
    open(nullptr);
    click("chkReminder");
    click("optReminder(2)");
    control<QLineEdit>("txtSubject").setFocus();
    QStringList visited;
    for (int i = 0; i < 30 && visited.count("txtSubject") < 2; ++i) {
        const QString name = dialog->focusWidget()->objectName();
        if (visited.isEmpty() || visited.last() != name) {
            visited += name;
        }
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(visited.join(' ').toStdString(),
              "txtSubject dtpDate optType(1) chkAutoShow chkReminder dtpReminder updReminderUp "
              "updReminderDown optReminder(2) tvwRemindUsers cmdForm(0) cmdForm(1) "
              "qt_tabwidget_tabbar txtSubject");
}

TEST_F(NoteProperties, ShowsAndRaisesTheNotesFields) {
    const Ref<Note> note = store.addNote("Old");
    note->Field("NoteType")->setValue(int(NoteType::Private));
    note->Field("AutomaticallyShow")->setValue(true);
    open(note);
    EXPECT_EQ(control<QLineEdit>("txtSubject").text(), "Old");
    EXPECT_TRUE(control("optType(0)").isChecked());
    EXPECT_TRUE(control("chkAutoShow").isChecked());
    click("chkAutoShow");
    click("cmdForm(0)");
    EXPECT_EQ(raised.events, QStringList("EditNote"));
    EXPECT_EQ(raised.type, NoteType::Private);
    EXPECT_FALSE(raised.autoShow);
    EXPECT_EQ(raised.date, store.clock().now());
}

TEST_F(NoteProperties, WhatIsLeftAloneKeepsItsSecondsAndALongSubjectShowsItsBeginning) {
    const QDateTime date = store.clock().now().addSecs(27);
    const QDateTime due = date.addSecs(86400);
    for (const bool touched : {false, true}) {
        const Ref<Note> note = noteWith(ReminderKind::Me, {1});
        note->Field("Date")->setValue(date);
        note->Field("ReminderDate")->setValue(due);
        open(note);
        EXPECT_EQ(control<QLineEdit>("txtSubject").cursorPosition(), 0);
        if (touched) {
            control<DatePicker>("dtpDate").stepBy(1);
            control<DatePicker>("dtpReminder").addMinutes(1);
        }
        click("cmdForm(0)");
        EXPECT_EQ(raised.date == date, !touched);
        EXPECT_EQ(raised.due, touched ? due.addSecs(33) : due);
    }
}

TEST_F(NoteProperties, EditingRecreatesTheReminders) {
    const Ref<Note> note = noteWith(ReminderKind::SelectedUsers, {2, 3});
    open(note);
    click("chkReminder"); // taken off
    click("cmdForm(0)");
    EXPECT_EQ(note->NumberOfReminders(), 0);
    EXPECT_TRUE(raised.users.isEmpty());
}

TEST_F(NoteProperties, StepsByHalfAnHour) {
    open(nullptr);
    click("chkReminder");
    const QDateTime start = control<DatePicker>("dtpReminder").value();
    click("updReminderUp");
    EXPECT_EQ(control<DatePicker>("dtpReminder").value(), start.addSecs(1800));
    click("updReminderDown");
    click("updReminderDown");
    EXPECT_EQ(control<DatePicker>("dtpReminder").value(), start.addSecs(-1800));
}

TEST_F(NoteProperties, CancelAndEscapeRaiseNothing) {
    for (const bool byKey : {false, true}) {
        open(nullptr);
        setSubject("Call");
        if (byKey) {
            QTest::keyClick(&control<QLineEdit>("txtSubject"), Qt::Key_Escape);
        } else {
            click("cmdForm(1)");
        }
        EXPECT_TRUE(dialog->isUnloaded());
    }
    EXPECT_TRUE(raised.events.isEmpty());
}

TEST_F(NoteProperties, HelpAsksTheHostForItsTopic) {
    open(nullptr);
    QTest::keyClick(dialog.get(), Qt::Key_F1);
    EXPECT_EQ(store.host().shownHelp, QStringList("110001"));
}

} // namespace yrw::test
