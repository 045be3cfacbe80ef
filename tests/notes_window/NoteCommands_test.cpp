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
    type("never saved");
    script.answer(PromptAnswer::Yes);
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(script.lastDefault, PromptAnswer::No);
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

TEST_F(NoteCommands, OwnWaitingRemindersAreToldAndCancellingCountsAll) {
    addThree();
    notes[0]->Field("ReminderType")->setValue(int(ReminderKind::SelectedUsers));
    const std::pair<qint64, const char*> cases[] = {
        {2, ""}, {1, "1 reminder is waiting"}, {1, "2 reminders are waiting"}};
    for (const auto& [user, told] : cases) {
        addReminder(store.application(), store.clock(), *notes[0], store.clock().now(), user);
        open(customer);
        auto* const label = window->findChild<QWidget*>("lblReminders");
        EXPECT_EQ(label->isVisible() ? label->property("text") : QVariant(""), told);
    }
    EXPECT_TRUE(list().items().isBold(keyOf(notes[0])));
    script.expectMessage();
    click("tooCancelReminders");
    EXPECT_EQ(script.asked.last(), "Cancel Reminders: 3 reminder(s) were canceled.");
    EXPECT_FALSE(list().items().isBold(keyOf(notes[0])));
    EXPECT_EQ(reminders(notes[0]), 0);
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

} // namespace yrw::test
