// The text: what is saved when, drafts, fonts, undo and what is appended.
#include "notes_window/NoteDrafts.h"
#include "platform/rtf/Writer.h"
#include "tests/driving/Select.h"
#include "tests/notes_window/WindowFixture.h"
#include "tests/support/FullDisk.h"

#include <QStandardPaths>

namespace yrw::test {

class NoteEditor : public WindowFixture {
protected:
    void SetUp() override {
        WindowFixture::SetUp();
        note = store.addNote("First", customer);
        second = store.addNote("Second", customer);
    }
    [[nodiscard]] QString text(const Ref<Note>& of) {
        return stored(idOf(of), "PlainNote").toString();
    }
    /// Types into a note until a draft of it is kept.
    void typeUntilKept(const Ref<Note>& into, const QString& typed) {
        type(typed);
        const NoteDrafts drafts(NoteDrafts::userFolder(), store.folder());
        const auto kept = [&] { return drafts.find(idOf(into)).value_or(NoteDraft()).rtf; };
        ASSERT_TRUE(QTest::qWaitFor([&] { return kept().contains(typed); }));
    }
    Ref<Note> note;
    Ref<Note> second;
};

TEST_F(NoteEditor, NothingTypedIsLost) {
    const auto confirm = [this](Qt::Key key) {
        whenDialogOpens([](QWidget& dialog) {
            dialog.findChild<QLineEdit*>("txtSubject")->setText("New");
            clickIn(dialog, "cmdForm(0)");
        });
        press(key);
    };
    const QList<std::function<void()>> ways{
        [this] { clickRow(keyOf(second)); }, [this] { click("tooShowAll"); },
        [this] { click("tooShowMyNotes"); }, [this] { press(Qt::Key_Escape); },
        [this] { window->close(); },         [&] { confirm(Qt::Key_F2); },
        [&] { confirm(Qt::Key_Insert); },
    };
    QString expected;
    for (int i = 0; i < ways.size(); ++i) {
        SCOPED_TRACE(i);
        open(customer, idOf(note));
        editor().setFocus();
        editor().moveCursor(QTextCursor::End);
        type(QString::number(i));
        expected += QString::number(i);
        ways[i]();
        EXPECT_EQ(text(note), expected);
    }
}

// The rich text itself gets what is appended in the place of its ending.
TEST_F(NoteEditor, WhatIsAppendedComesBeforeTheEndingOfTheRichText) {
    const QString ending = "\r\n\\par\r\n}\r\n";
    const QString braces = QString::fromUtf8("O}{\\b Неill");
    const char* const texts[] = {
        "",
        " ",
        "ends in blanks   ",
        "\\b in bold text",
        "\\b bold\\b0  and not",
        "two\\par lines\\par",
        "\\cf1\\i red",
        "\\pard{\\*\\pn\\pnlvlblt{\\pntxtb\\'B7}}\\fi-360\\li720 an item\\par",
        "{\\field{\\*\\fldinst HYPERLINK \"http://a/\"}{\\fldrslt link}}",
        "{\\object{\\*\\objclass Odd}{\\*\\objdata 01}}"};
    const QString head = "{\\rtf1{\\fonttbl{\\f0 Arial;}}{\\colortbl;\\red255;}\\f0\\fs20 ";
    const QString stamp = "[10/03/26 09:00 Anna " + braces + "] - ";
    store.host().DAODatabase()->RunScript("UPDATE tblUsers SET LastName = '" + braces +
                                          "' WHERE UserID = 1");
    store.actAs(1);
    open(customer);
    for (const char* text : texts) {
        for (const Qt::Key key : {Qt::Key_D, Qt::Key_T, Qt::Key_M}) {
            SCOPED_TRACE(std::string(text) + char(key));
            editor().setTextRTF(head + QLatin1String(text) + u'}');
            RichTextBox expected;
            for (int i = 0; i < 2; ++i) {
                expected.setTextRTF(editor().TextRTF());
                QString rtf = expected.TextRTF();
                ASSERT_EQ(rtf.right(11), ending);
                rtf.chop(11);
                if (key == Qt::Key_M) {
                    rtf += expected.Text().isEmpty() ? "" : "\\par\r\n";
                    rtf += "\\b " + rtf::escape(stamp) + "\\cf0\\b0 ";
                } else {
                    rtf += key == Qt::Key_D ? "10/03/2026" : "09:00";
                }
                expected.setTextRTF(rtf + " }");
                press(key, Qt::ControlModifier | Qt::ShiftModifier);
                EXPECT_EQ(editor().Text(), expected.Text());
                EXPECT_EQ(editor().TextRTF(), expected.TextRTF());
                EXPECT_TRUE(editor().textCursor().atEnd());
            }
        }
    }
}

TEST_F(NoteEditor, DefaultFont) {
    open(customer);
    EXPECT_EQ(editor().selection().fontName(), "Comic Sans MS");
    EXPECT_EQ(editor().selection().fontSize(), 10);
    script.chooseFont(
        std::optional(FontChoice{"DejaVu Serif", 14, true, false, false, false, 0xff0000, {}}));
    click("tooDefaultFont");
    EXPECT_EQ(storedText(addIn->settings(), "DefaultFontName"), "DejaVu Serif");
    EXPECT_EQ(storedText(addIn->settings(), "DefaultFontBold"), "True");
    open(customer);
    type("x");
    EXPECT_EQ(editor().selection().fontName(), "DejaVu Serif");
    EXPECT_EQ(editor().selection().fontSize(), 14);
    EXPECT_EQ(editor().selection().bold(), true);
    EXPECT_EQ(editor().selection().colour(), 0xff0000);
}

TEST_F(NoteEditor, FontDialogLeavesMixedPartsThatNobodyChose) {
    open(customer);
    editor().setTextRTF("{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1 Courier;}}{\\colortbl;\\red255;"
                        "\\blue255;}\\f0\\fs20\\cf1\\b one \\f1\\fs40\\cf2\\b0\\i two\\par}");
    editor().selectAll();
    const QString before = editor().TextRTF();
    const FontParts mixed =
        FontPart::Name | FontPart::Points | FontPart::Bold | FontPart::Italic | FontPart::Colour;
    FontChoice choice;
    choice.mixed = mixed;
    script.chooseFont(std::optional(choice));
    click("tooChooseFont");
    EXPECT_EQ(script.fontAsked.mixed, mixed);
    EXPECT_EQ(editor().TextRTF(), before);
    choice.mixed = mixed & ~FontParts(FontPart::Colour);
    choice.colour = 0x00FF00;
    script.chooseFont(std::optional(choice));
    click("tooChooseFont");
    EXPECT_EQ(editor().selection().colour(), 0x00FF00);
    EXPECT_FALSE(editor().selection().bold().has_value());
    EXPECT_FALSE(editor().selection().fontName().has_value());
    editor().undo();
    EXPECT_EQ(editor().TextRTF(), before);
}

TEST_F(NoteEditor, AfterACrashTheTypedTextIsOfferedAndOnlyNoThrowsItAway) {
    const auto openAnswering = [this](PromptAnswer answer) {
        script.asked.clear();
        script.answer(answer);
        open(customer); // goes to the note with the draft by itself
        EXPECT_TRUE(QTest::qWaitFor([this] { return !script.asked.isEmpty(); }));
        EXPECT_EQ(list().selectedKey(), keyOf(second));
    };
    open(customer, idOf(second));
    typeUntilKept(second, "first");
    crash();
    script.whileOpen = [this] { EXPECT_TRUE(window->isVisible()); };
    openAnswering(PromptAnswer::Cancel); // as Escape does
    EXPECT_TRUE(
        script.asked.last().contains("Unsaved text of 09:00 was found for the note \"Second"))
        << script.asked.last().toStdString();
    store.manualClock().advance(60);
    typeUntilKept(second, "other"); // has a draft of its own, and is saved
    openAnswering(PromptAnswer::Cancel);
    openAnswering(PromptAnswer::Yes);
    EXPECT_EQ(editor().Text(), "first");
    EXPECT_TRUE(tool("tooSave").isEnabled());
    close();
    EXPECT_EQ(text(second), "first");
    open(customer, idOf(second));
    QCoreApplication::processEvents();
    EXPECT_EQ(script.asked.size(), 1); // nothing is offered any more
}

TEST_F(NoteEditor, OnAFullDiskTheStatusBarSaysThatNoCopyIsKeptAndTheTextStays) {
    const auto status = [this] { return window->findChild<StatusBar*>("stbMain")->text(); };
    open(customer, idOf(note));
    {
        const FullDisk full(10);
        type("precious");
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return status().startsWith("No copy of the unsaved text"); }));
    }
    type("!");
    ASSERT_TRUE(QTest::qWaitFor([&] { return status().contains("is kept again"); }));
    store.database()->RunScript(
        "CREATE TRIGGER refuse BEFORE UPDATE ON tblNotes BEGIN SELECT RAISE(ABORT, 'full'); END");
    {
        const FullDisk full(10);
        for (const auto& leave : {std::function<void()>([this] { clickRow(keyOf(second)); }),
                                  std::function<void()>([this] { press(Qt::Key_Escape); }),
                                  std::function<void()>([this] { click("tooShowAll"); })}) {
            script.expectReport();
            script.answer(PromptAnswer::No);
            leave();
            EXPECT_TRUE(status().startsWith("Not saved, and no copy")) << status().toStdString();
            EXPECT_EQ(list().selectedKey(), keyOf(note));
            EXPECT_EQ(editor().Text(), "precious!");
        }
        EXPECT_TRUE(tool("tooSave").isEnabled());
    }
    store.database()->RunScript("DROP TRIGGER refuse");
    close();
    EXPECT_EQ(text(note), "precious!");
}

TEST_F(NoteEditor, TextOfANoteThatWasDeletedElsewhereIsOffered) {
    const auto typeIntoADeletedNote = [this](const Ref<Note>& into) {
        open(customer, idOf(into));
        type("nowhere to go");
        deleteNote(store.application(), idOf(into));
        script.expectReport(1);
        close();
    };
    typeIntoADeletedNote(note);
    script.press("Ask again later");
    open(customer);
    EXPECT_TRUE(script.asked.last().contains("its note was deleted"));
    EXPECT_EQ(keys(), QStringList{keyOf(second)});
    script.press("Keep as a new note");
    open(customer);
    ASSERT_EQ(list().items().rowCount(), 2);
    clickRow(list().items().keyAt(1));
    EXPECT_EQ(editor().Text(), "nowhere to go");
    typeIntoADeletedNote(second);
    script.press("Throw away");
    open(customer);
    open(customer); // nothing is left to be asked
    EXPECT_EQ(list().items().rowCount(), 1);
}

TEST_F(NoteEditor, AFailedSaveIsReportedAndKeepsTheText) {
    open(customer);
    type("kept");
    store.database()->RunScript(
        "CREATE TRIGGER refuse BEFORE UPDATE ON tblNotes BEGIN SELECT RAISE(ABORT, 'full'); END");
    script.expectReport(1);
    press(Qt::Key_S, Qt::ControlModifier);
    ASSERT_EQ(script.reports.size(), 1);
    EXPECT_EQ(script.reports[0].source, "YRWNOTES.frmMain.SaveNote");
    EXPECT_EQ(script.reports[0].title, "Notes Problem");
    EXPECT_FALSE(tool("tooSave").isEnabled());
    EXPECT_EQ(editor().Text(), "kept");
    store.database()->RunScript("DROP TRIGGER refuse");
    clickRow(keyOf(second));
    script.answer(PromptAnswer::No);
    clickRow(keyOf(note));
    EXPECT_EQ(editor().Text(), QString());
    clickRow(keyOf(second));
    clickRow(keyOf(note)); // refused once, it is not offered again
}

// Every way of saving that leaves the same note in the editor.
TEST_F(NoteEditor, UndoGoesBackBehindASave) {
    const QList<std::function<void()>> saves{
        [this] { press(Qt::Key_S, Qt::ControlModifier); }, [this] { click("tooShowAll"); },
        [this] { click("tooShowMyNotes"); }, [this] { clickRow(keyOf(note)); }};
    for (qsizetype i = 0; i < saves.size(); ++i) {
        SCOPED_TRACE(i);
        note = store.addNote("Typed into", customer);
        note->Field("RTFNote")->setValue("{\\rtf1 before\\par}");
        open(customer, idOf(note));
        editor().moveCursor(QTextCursor::End);
        type(" typed");
        const QString both = editor().Text();
        saves[i]();
        EXPECT_EQ(stored(idOf(note), "PlainNote").toString(), both);
        EXPECT_FALSE(tool("tooSave").isEnabled());
        editor().setFocus();
        press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(editor().Text().trimmed(), "before");
        EXPECT_TRUE(tool("tooSave").isEnabled());
        press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(editor().Text(), both);
        click("tooUndo");
        press(Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(stored(idOf(note), "PlainNote").toString().trimmed(), "before");
        clickRow(keyOf(second)); // another note begins anew
        EXPECT_FALSE(editor().document()->isUndoAvailable());
        EXPECT_FALSE(editor().document()->isRedoAvailable());
    }
}

} // namespace yrw::test
