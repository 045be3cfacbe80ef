// Somebody else writes while a question is open, or between a look at a note and what is done to
// it.
#include "notes_window/NoteDrafts.h"
#include "tests/notes_window/WindowFixture.h"
#include "tests/support/OtherUser.h"

#include <utility>

namespace yrw::test {

namespace {

// What the other does; %1 is the note.
const QString kGone = "DELETE FROM tblReminders WHERE NoteID=%1; DELETE FROM tblNotes WHERE "
                      "RecordID=%1";
const QString kFinished = "UPDATE tblNotes SET Status=2 WHERE RecordID=%1";
const QString kRenamed = "UPDATE tblNotes SET Subject='Theirs', AutomaticallyShow=1 WHERE "
                         "RecordID=%1";
const QString kText = "UPDATE tblNotes SET RTFNote='{\\rtf1 theirs\\par}', PlainNote='theirs', "
                      "ChangeUserCode='BEN', ChangeDate='2026-03-10 09:04:00' WHERE RecordID=%1";
const QString kNewest = QString(kText).replace("theirs", "newest");
const QString kAnswered = "UPDATE tblReminders SET Status=4 WHERE NoteID=%1";
const QString kCancelled = "DELETE FROM tblReminders WHERE NoteID=%1; UPDATE tblNotes SET "
                           "ReminderType=0 WHERE RecordID=%1";
const QString kReminded = "UPDATE tblNotes SET ReminderType=1 WHERE RecordID=%1; INSERT INTO "
                          "tblReminders (NoteID, UserID) VALUES (%1, 4)";
const QString kDraftTaken = "the draft is taken over";

const QString kMine = "Keep mine (Anna Ash, 09:00)";
const QString kTheirs = "Keep theirs (Ben Birch, 09:04)";
const QString kBoth = "Keep both, one after the other";
const char* const kBothKept =
    "First 'mine\r [10/03/26 09:04 Ben Birch] -  \r theirs' 1/3/1, reminders 4 4, "
    "shows 'mine\r [10/03/26 09:04 Ben Birch] -  \r theirs'";

} // namespace

/// One note with two reminders, and what came of it as one line: its row, its reminders, what the
/// editor shows and whether a draft is kept.
class DecisiveMoments : public WindowFixture {
public: // for the table of acts
    /// What the user does; the other's deed is done by `meanwhile`, or while a box is open.
    using Act = void (DecisiveMoments::*)(const QString& deed, int reports);
    struct Moment {
        Act act;
        QString deed;
        int reports;         ///< error reports that come up
        QStringList presses; ///< buttons of the choices that come up
        const char* holds;
    };

    void begin() {
        close();
        store.database()->RunScript("DELETE FROM tblReminders; DELETE FROM tblNotes");
        const Ref<Note> note = store.addNote("First", customer);
        note->BeginMultipleFieldUpdate();
        note->MultipleUpdateFieldValues() = {{"RTFNote", "{\\rtf1 start\\par}"},
                                             {"PlainNote", "start"},
                                             {"ReminderType", int(ReminderKind::SelectedUsers)}};
        note->EndMultipleFieldUpdate();
        for (const qint64 user : {2, 3}) {
            addReminder(store.application(), store.clock(), *note, store.clock().now(), user);
        }
        id = idOf(note);
        for (const qint64 left : drafts().noteIDs()) {
            drafts().remove(left);
        }
        open(customer);
    }
    [[nodiscard]] NoteDrafts drafts() const { return {NoteDrafts::userFolder(), store.folder()}; }
    void meanwhile(const QString& deed) {
        if (deed == kDraftTaken) {
            drafts().remove(id);
        } else {
            elsewhere(store.notesPath(), QString(deed).replace("%1", QString::number(id)));
        }
    }
    /// Once, as soon as a box is open.
    void whileAsked(const QString& deed) {
        script.whileOpen = [this, deed, isFirst = true]() mutable {
            if (std::exchange(isFirst, false)) {
                meanwhile(deed);
            }
        };
    }

    void deletes(const QString& deed, int /*reports*/) {
        whileAsked(deed);
        script.answer(PromptAnswer::Yes);
        press(Qt::Key_D, Qt::ControlModifier);
    }
    void finishes(const QString& deed, int reports) {
        meanwhile(deed);
        script.expectMessage(reports == 0 ? 1 : 0);
        click("tooDone");
    }
    void finishesTyped(const QString& deed, int /*reports*/) {
        meanwhile(deed);
        type("mine ");
        script.expectMessage();
        script.whileOpen = [this] { EXPECT_EQ(stored(id, "PlainNote"), "mine start"); };
        click("tooDone");
    }
    void cancelsReminders(const QString& deed, int reports) {
        meanwhile(deed);
        script.expectMessage(reports == 0 ? 1 : 0);
        click("tooCancelReminders");
    }
    void makesPrivate(const QString& deed, int reports) {
        whenDialogOpens([&](QWidget& dialog) {
            meanwhile(deed);
            clickIn(dialog, "optType(0)");
            clickIn(dialog, "cmdForm(0)");
            EXPECT_EQ(dialog.isVisible(), reports > 0);
            clickIn(dialog, "cmdForm(1)");
        });
        press(Qt::Key_F2);
    }
    void types(const QString& deed, int /*reports*/) {
        editor().selectAll();
        type("mine");
        meanwhile(kText);
        whileAsked(deed);
        press(Qt::Key_S, Qt::ControlModifier);
    }
    /// Takes over a draft and saves it.
    void takesDraft(const QString& deed, int /*reports*/) {
        close();
        drafts().write({id, store.clock().now(), "{\\rtf1 mine\\par}"});
        script.answer(PromptAnswer::Yes);
        whileAsked(deed);
        open(customer);
        press(Qt::Key_S, Qt::ControlModifier);
    }
    void keepsDraftOfDeleted(const QString& deed, int /*reports*/) {
        close();
        drafts().write({id, store.clock().now(), "{\\rtf1 mine\\par}"});
        meanwhile(kGone);
        whileAsked(deed);
        open(customer);
    }
    void overwritesDamaged(const QString& deed, int /*reports*/) {
        close();
        meanwhile("UPDATE tblNotes SET RTFNote='{\\rtf1 cut' WHERE RecordID=%1");
        open(customer);
        editor().selectAll();
        type("mine");
        whileAsked(deed);
        script.answer(PromptAnswer::Yes);
        press(Qt::Key_S, Qt::ControlModifier);
    }
    void attachesLargeFile(const QString& deed, int /*reports*/) {
        QFile large(store.folder() + "/large.bin");
        EXPECT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(11 * 1024 * 1024));
        whileAsked(deed);
        script.answer(PromptAnswer::Yes);
        whenDialogOpens([&](QWidget& dialog) {
            dialog.findChild<QLineEdit*>("txtFile")->setText(large.fileName());
            clickIn(dialog, "cmdForm(0)");
        });
        click("tooInsertIcon");
        EXPECT_EQ(editor().objects().count(), 1);
        press(Qt::Key_S, Qt::ControlModifier);
    }

    [[nodiscard]] std::string outcome() {
        QStringList facts;
        const Ref<dao::Recordset> rows = store.database()->OpenRecordset("tblNotes");
        for (; !rows->AtEof(); rows->MoveNext()) {
            facts +=
                QStringLiteral("%1 '%2' %3/%4/%5%6")
                    .arg(rows->value(u"Subject").toString(),
                         rows->value(u"PlainNote").toString().left(50),
                         rows->value(u"Status").toString(), rows->value(u"ReminderType").toString(),
                         rows->value(u"NoteType").toString(),
                         rows->value(u"AutomaticallyShow").toBool() ? " auto" : "");
        }
        facts += rows->RecordCount() == 0 ? "gone" : QString();
        const Ref<dao::Recordset> reminders = store.database()->OpenRecordset("tblReminders");
        QString open;
        for (; !reminders->AtEof(); reminders->MoveNext()) {
            open += ' ' + reminders->value(u"Status").toString();
        }
        facts += open.isEmpty() ? QString() : "reminders" + open;
        facts += editor().isEnabled() ? "shows '" + editor().Text().left(50) + '\'' : QString();
        facts += drafts().find(id) ? QStringLiteral("draft") : QString();
        facts.removeAll(QString());
        return facts.join(", ").replace('\n', ' ').toStdString();
    }

    qint64 id = 0;
};

TEST_F(DecisiveMoments, NobodysWorkIsLost) {
    using D = DecisiveMoments;
    const Moment moments[] = {
        {&D::deletes, kGone, 0, {}, "gone"},
        {&D::deletes, kFinished, 0, {}, "gone"},
        {&D::deletes, kAnswered, 0, {}, "gone"},
        // What nobody has seen is not deleted; it is shown.
        {&D::deletes, kText, 1, {}, "First 'theirs' 1/3/1, reminders 1 1, shows 'theirs'"},
        {&D::deletes, kRenamed, 1, {}, "Theirs 'start' 1/3/1 auto, reminders 1 1, shows 'start'"},

        {&D::finishes, kGone, 1, {}, "gone, shows 'start'"},
        {&D::finishes, kFinished, 0, {}, "First 'start' 2/3/1, reminders 1 1"},
        {&D::finishes, kText, 0, {}, "First 'theirs' 2/3/1, reminders 1 1"},
        {&D::finishesTyped, kAnswered, 0, {}, "First 'mine start' 2/3/1, reminders 4 4"},

        {&D::cancelsReminders, kGone, 1, {}, "gone, shows 'start'"},
        {&D::cancelsReminders, kAnswered, 0, {}, "First 'start' 1/0/1, shows 'start'"},
        {&D::cancelsReminders, kReminded, 0, {}, "First 'start' 1/0/1, shows 'start'"},

        // What the user left alone stays the other's; reminders are always those of the dialog.
        {&D::makesPrivate, kGone, 1, {}, "gone, shows 'start'"},
        {&D::makesPrivate, kFinished, 0, {}, "First 'start' 2/3/2, reminders 1 1, shows 'start'"},
        {&D::makesPrivate, kText, 0, {}, "First 'theirs' 1/3/2, reminders 1 1, shows 'start'"},
        {&D::makesPrivate,
         kRenamed,
         0,
         {},
         "Theirs 'start' 1/3/2 auto, reminders 1 1, shows 'start'"},
        {&D::makesPrivate, kAnswered, 0, {}, "First 'start' 1/3/2, reminders 1 1, shows 'start'"},
        {&D::makesPrivate, kCancelled, 0, {}, "First 'start' 1/3/2, reminders 1 1, shows 'start'"},
        {&D::makesPrivate, kReminded, 0, {}, "First 'start' 1/3/2, reminders 1 1, shows 'start'"},

        // A text that came while one was compared is compared too.
        {&D::types, kNewest, 0, {kMine, kMine}, "First 'mine' 1/3/1, reminders 1 1, shows 'mine'"},
        {&D::types, kNewest, 0, {kTheirs}, "First 'newest' 1/3/1, reminders 1 1, shows 'newest'"},
        {&D::types, kRenamed, 0, {kMine}, "Theirs 'mine' 1/3/1 auto, reminders 1 1, shows 'mine'"},
        {&D::types, kAnswered, 0, {kBoth}, kBothKept},
        {&D::types, kAnswered, 0, {""}, kBothKept}, // closed
        {&D::types, kGone, 1, {kMine}, "gone, shows 'mine', draft"},
        {&D::types, kGone, 1, {kTheirs}, "gone, shows 'mine', draft"},

        {&D::takesDraft, kText, 0, {kMine}, "First 'mine' 1/3/1, reminders 1 1, shows 'mine'"},
        {&D::takesDraft, kGone, 1, {}, "gone, shows 'mine', draft"},
        {&D::keepsDraftOfDeleted, kDraftTaken, 0, {"Keep as a new note"}, "gone"},

        {&D::overwritesDamaged,
         kText,
         0,
         {kTheirs},
         "First 'theirs' 1/3/1, reminders 1 1, shows 'theirs'"},
        {&D::overwritesDamaged, kGone, 1, {}, "gone, shows 'mine', draft"},
        {&D::attachesLargeFile, kGone, 1, {}, "gone, shows ' start', draft"},
    };
    for (const Moment& moment : moments) {
        SCOPED_TRACE(QStringLiteral("row %1: %2")
                         .arg(&moment - moments)
                         .arg(moment.deed.left(60))
                         .toStdString());
        begin();
        script.expectReport(moment.reports);
        for (const QString& button : moment.presses) {
            script.press(button);
        }
        (this->*moment.act)(moment.deed, moment.reports);
        EXPECT_EQ(outcome(), moment.holds);
        EXPECT_EQ(script.pointer, MousePointer::Default);
        script.whileOpen = nullptr;
    }
}

TEST_F(DecisiveMoments, AFailureBetweenNoteAndRemindersLeavesBothAsTheyWere) {
    const QString guard = "CREATE TRIGGER full BEFORE INSERT ON tblReminders WHEN new.UserID = 3 "
                          "BEGIN SELECT RAISE(ABORT, 'no'); END";
    for (const bool adding : {true, false}) {
        begin();
        const std::string before = outcome();
        const QStringList row = texts(keys().first());
        store.database()->RunScript(guard);
        whenDialogOpens([&](QWidget& dialog) {
            dialog.findChild<QLineEdit*>("txtSubject")->setText("Again");
            if (adding) {
                clickIn(dialog, "chkReminder");
                clickIn(dialog, "optReminder(0)");
            }
            script.expectReport();
            clickIn(dialog, "cmdForm(0)");
            EXPECT_TRUE(dialog.isVisible());
            EXPECT_EQ(dialog.findChild<QLineEdit*>("txtSubject")->text(), "Again");
            EXPECT_EQ(outcome(), before);
            EXPECT_EQ(keys().size(), 1);
            EXPECT_EQ(texts(keys().first()), row);
            store.database()->RunScript("DROP TRIGGER full");
            clickIn(dialog, "cmdForm(0)");
        });
        press(adding ? Qt::Key_Insert : Qt::Key_F2);
        EXPECT_EQ(keys().size(), adding ? 2 : 1);
        EXPECT_EQ(texts(keys().last()).at(1), "Again");
        EXPECT_EQ(list().selectedKey(), keys().last());
    }
}

} // namespace yrw::test
