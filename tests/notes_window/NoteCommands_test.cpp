// What the commands on whole notes write, say and show next.
#include "tests/notes_window/WindowFixture.h"

namespace yrw::test {

class NoteCommands : public WindowFixture {
protected:
    void addThree() {
        for (const char* subject : {"First", "Second", "Third"}) {
            notes.append(store.addNote(QLatin1String(subject), customer));
        }
    }
    [[nodiscard]] qint64 reminders(const Ref<Note>& note) {
        return query<Note>(store.notesOf(customer)->Item(QVariant(idOf(note))))
            ->NumberOfReminders();
    }
    QList<Ref<Note>> notes;
};

TEST_F(NoteCommands, DeleteAsksAndShowsTheNextNote) {
    addThree();
    addReminder(store.application(), store.clock(), *notes[1], store.clock().now(), 1);
    open(customer, idOf(notes[1]));
    list().setFocus();
    script.answer(PromptAnswer::No);
    press(Qt::Key_Delete);
    EXPECT_EQ(script.asked.last(),
              "Confirmation: Are you sure that you want to delete the selected note?");
    EXPECT_EQ(script.lastDefault, PromptAnswer::No);
    EXPECT_EQ(list().items().rowCount(), 3);

    type("never saved");
    script.answer(PromptAnswer::Yes);
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(keys(), QStringList({keyOf(notes[0]), keyOf(notes[2])}));
    EXPECT_EQ(list().selectedKey(), keyOf(notes[2])); // the next one
    script.answer(PromptAnswer::Yes);
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(list().selectedKey(), keyOf(notes[0])); // after the last, the one before
    script.answer(PromptAnswer::Yes);
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_FALSE(editor().isEnabled());
    EXPECT_FALSE(tool("tooDelete").isEnabled());
    press(Qt::Key_D, Qt::ControlModifier); // off: asks nothing
    const Ref<dao::Recordset> left = store.database()->OpenRecordset("tblReminders");
    EXPECT_TRUE(left->AtEof());
}

TEST_F(NoteCommands, AFailedDeletionKeepsTheNoteAndItsReminders) {
    addThree();
    addReminder(store.application(), store.clock(), *notes[0], store.clock().now(), 1);
    store.database()->RunScript(
        "CREATE TRIGGER keep BEFORE DELETE ON tblNotes BEGIN SELECT RAISE(ABORT, 'no'); END");
    open(customer);
    script.answer(PromptAnswer::Yes);
    script.expectReport();
    click("tooDelete");
    EXPECT_EQ(reminders(notes[0]), 1);
    EXPECT_EQ(list().items().rowCount(), 3);
    EXPECT_EQ(list().selectedKey(), keyOf(notes[0]));
    EXPECT_EQ(script.pointer, MousePointer::Default);
}

TEST_F(NoteCommands, DoneSavesTellsAndShowsTheNextNote) {
    addThree();
    open(customer);
    type("said");
    script.expectMessage();
    script.whileOpen = [this] { EXPECT_EQ(script.pointer, MousePointer::Default); };
    click("tooDone");
    EXPECT_EQ(script.asked.last(), "Note Done: This note has been flagged as done.");
    EXPECT_EQ(script.lastIcon, PromptIcon::Information);
    EXPECT_EQ(stored(idOf(notes[0]), "Status"), int(NoteStatus::Done));
    EXPECT_EQ(stored(idOf(notes[0]), "PlainNote"), "said");
    EXPECT_EQ(keys(), QStringList({keyOf(notes[1]), keyOf(notes[2])}));
    EXPECT_EQ(list().selectedKey(), keyOf(notes[1]));
    click("tooShowDone");
    EXPECT_FALSE(tool("tooDone").isEnabled());
}

TEST_F(NoteCommands, CancelRemindersCountsThem) {
    addThree();
    notes[0]->Field("ReminderType")->setValue(int(ReminderKind::SelectedUsers));
    for (const qint64 user : {2, 3, 4}) {
        addReminder(store.application(), store.clock(), *notes[0], store.clock().now(), user);
    }
    open(customer);
    EXPECT_TRUE(list().items().isBold(keyOf(notes[0])));
    script.expectMessage(2);
    click("tooCancelReminders");
    EXPECT_EQ(script.asked.last(), "Cancel Reminders: 3 reminder(s) were canceled.");
    EXPECT_FALSE(list().items().isBold(keyOf(notes[0])));
    EXPECT_EQ(reminders(notes[0]), 0);
    click("tooCancelReminders");
    EXPECT_EQ(script.asked.last(), "Cancel Reminders: 0 reminder(s) were canceled.");
    click("tooShowAll"); // the row stays without the reminder colour after a rebuild
    EXPECT_FALSE(list().items().foreColour(keyOf(notes[0])).has_value());
}

TEST_F(NoteCommands, AddsANoteWithAReminder) {
    addThree();
    open(customer);
    type("before");
    whenDialogOpens([](QWidget& dialog) {
        dialog.findChild<QLineEdit*>("txtSubject")->setText("Fresh");
        clickIn(dialog, "chkAutoShow");
        clickIn(dialog, "chkReminder");
        clickIn(dialog, "cmdForm(0)");
    });
    press(Qt::Key_Insert); // in the text
    EXPECT_EQ(dialogs, 1);
    ASSERT_EQ(list().items().rowCount(), 4);
    const QString key = keys().last();
    EXPECT_EQ(texts(key), QStringList({"10/03/2026 09:00", "Fresh", "Active", "Y", "Anna Ash"}));
    EXPECT_TRUE(list().items().isBold(key));
    EXPECT_EQ(list().items().foreColour(key), QColor(0, 0x80, 0));
    EXPECT_EQ(list().selectedKey(), key);
    EXPECT_EQ(window->focusWidget(), &editor());
    EXPECT_EQ(editor().Text(), QString());
    const qint64 id = key.mid(2).toLongLong();
    EXPECT_EQ(stored(id, "OwnerObjectKey"), "cu");
    EXPECT_EQ(stored(id, "RecordUserCode"), "ANNA");
    EXPECT_EQ(stored(id, "ReminderDate").toDateTime(), store.clock().now().addSecs(3600));
    EXPECT_EQ(query<Note>(store.notesOf(customer)->Item(QVariant(id)))->NumberOfReminders(), 1);
}

TEST_F(NoteCommands, EditsTheNotesProperties) {
    addThree();
    open(customer, idOf(notes[1]));
    type("text stays");
    whenDialogOpens([](QWidget& dialog) {
        dialog.findChild<QLineEdit*>("txtSubject")->setText("Renamed");
        clickIn(dialog, "optType(0)");
        clickIn(dialog, "cmdForm(0)");
    });
    list().setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(dialogs, 1);
    EXPECT_EQ(keys().indexOf(keyOf(notes[1])), 1); // unsorted, it keeps its place
    EXPECT_EQ(texts(keyOf(notes[1]))[1], "Renamed");
    EXPECT_EQ(stored(idOf(notes[1]), "NoteType"), int(NoteType::Private));
    EXPECT_TRUE(stored(idOf(notes[1]), "ReminderDate").isNull());
    EXPECT_EQ(editor().Text(), "text stays");
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(stored(idOf(notes[1]), "PlainNote"), "text stays");
    EXPECT_EQ(stored(idOf(notes[1]), "Subject"), "Renamed");
}

TEST_F(NoteCommands, SaysHowManyRemindersWait) {
    addThree();
    open(customer);
    auto* const label = window->findChild<QWidget*>("lblReminders");
    EXPECT_FALSE(label->isVisible());
    for (const qint64 user : {1, 1, 2}) {
        addReminder(store.application(), store.clock(), *notes[0], store.clock().now(), user);
    }
    click("tooShowAll");
    EXPECT_TRUE(label->isVisible());
    EXPECT_EQ(label->property("text"), "2 reminders are waiting");
}

} // namespace yrw::test
