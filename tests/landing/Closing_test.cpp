// The desk ends with everything of the add-in open.
#include "platform/richtext/RichTextBox.h"
#include "tests/landing/LandingFixture.h"

namespace yrw::test {
namespace {

class ClosingTest : public LandingFixture {
protected:
    void remindOf(qint64 noteID) {
        qint64 id = 0;
        const QDateTime due = m_clock.now().addSecs(-60);
        Module1::instance().application().Reminders()->Add({{QStringLiteral("NoteID"), noteID},
                                                            {QStringLiteral("UserID"), 1},
                                                            {QStringLiteral("OriginalDate"), due},
                                                            {QStringLiteral("NextDate"), due}},
                                                           nullptr, id, true);
    }
    /// Value of a field in the notes database, read after the desk's end.
    QVariant stored(const QString& sql, const QString& field) {
        const auto workspace = dao::createWorkspace({m_clock, m_files});
        const auto rows =
            workspace->OpenDatabase(m_folder.filePath("data/Notes.mdb"))->OpenRecordset(sql);
        return rows->value(field);
    }
};

TEST_F(ClosingTest, PopupsAndTheNotesWindowAreSavedAndGone) {
    open();
    const qint64 note = addNote(QStringLiteral("cu"), 1, QStringLiteral("Ring back"));
    remindOf(note);
    upperGrid().setCurrentRow(1);
    upperGrid().setCurrentRow(0);
    ASSERT_TRUE(comesUp({QStringLiteral("Ring back")}));
    ASSERT_TRUE(addIn->CheckForReminders());
    QTimer::singleShot(200, &window(), [this] {
        QWidget* notes = QApplication::activeModalWidget();
        ASSERT_NE(notes, nullptr);
        auto* editor = notes->findChild<RichTextBox*>();
        ASSERT_NE(editor, nullptr);
        editor->setFocus();
        QTest::keyClicks(editor, QStringLiteral("typed last"));
        window().shutDown(); // as the end of the session does
    });
    addIn->ShowNotes(nullptr, note);
    shutDown();
    EXPECT_TRUE(Form::openForms().isEmpty());
    EXPECT_TRUE(stored(QStringLiteral("SELECT * FROM tblNotes"), QStringLiteral("PlainNote"))
                    .toString()
                    .contains(QStringLiteral("typed last")));
    EXPECT_EQ(stored(QStringLiteral("SELECT * FROM tblReminders"), QStringLiteral("Status")), 2)
        << "an unanswered reminder comes back";
    EXPECT_FALSE(Module1::instance().isDatabaseOpen());
}

TEST_F(ClosingTest, WithoutItsUsersRowTheDeskStillShowsItsNotes) {
    open();
    const qint64 note = addNote(QStringLiteral("cu"), 1, QStringLiteral("Ring back"));
    window().application()->DB()->Database().RunScript(
        QStringLiteral("DELETE FROM Users WHERE RecordID = 1;"));
    command("tooDeactivateAddIn").trigger();
    command("tooActivateAddIn").trigger();
    ASSERT_EQ(m_prompt.shown.size(), 1) << qPrintable(m_prompt.shown.join('\n'));
    EXPECT_TRUE(m_prompt.shown[0].startsWith(
        "Could Not Notes Open Database|The host does not give its current user: "))
        << qPrintable(m_prompt.shown[0]);
    QString title;
    QTimer::singleShot(200, &window(), [&title] {
        QWidget* const notes = QApplication::activeModalWidget();
        ASSERT_NE(notes, nullptr);
        title = notes->windowTitle();
        QTest::keyClick(notes, Qt::Key_Escape);
    });
    addIn->ShowNotes(nullptr, note);
    EXPECT_TRUE(title.startsWith("YRW Notes - (Customer: ")) << qPrintable(title);
    EXPECT_EQ(m_prompt.shown.size(), 1) << qPrintable(m_prompt.shown.join('\n'));
}

} // namespace
} // namespace yrw::test
