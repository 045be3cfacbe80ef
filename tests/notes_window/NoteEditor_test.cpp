// The text: what is saved when, conflicts, drafts, formats and what is appended.
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
    /// Another user changes the text of the first note behind the window's back.
    void changeElsewhere(const QString& plain) {
        store.actAs(2);
        store.manualClock().advance(60);
        const Ref<IRecord> other = store.notesOf(customer)->Item(QVariant(idOf(note)));
        other->BeginMultipleFieldUpdate();
        other->Field("PlainNote")->setValue(plain);
        other->Field("RTFNote")->setValue(QString("{\\rtf1 " + plain + "\\par}"));
        other->Field("ChangeDate")->setValue(store.clock().now());
        other->EndMultipleFieldUpdate();
        store.actAs(1);
    }
    Ref<Note> note;
    Ref<Note> second;
};

TEST_F(NoteEditor, BoldTextComesBackFromTheDatabase) {
    open(customer);
    type("Call ");
    press(Qt::Key_B, Qt::ControlModifier);
    type("today");
    store.manualClock().advance(30);
    restart();
    EXPECT_EQ(editor().Text(), "Call today");
    select(editor(), 1);
    EXPECT_EQ(editor().selection().bold(), false);
    select(editor(), 7);
    EXPECT_EQ(editor().selection().bold(), true);
    EXPECT_TRUE(tool("tooBold").isChecked());
    EXPECT_EQ(text(note), "Call today");
    EXPECT_EQ(stored(idOf(note), "ChangeDate").toDateTime(), store.clock().now());
}

TEST_F(NoteEditor, LoadingIsNoEditAndTypingIs) {
    open(customer);
    EXPECT_FALSE(tool("tooSave").isEnabled());
    type("a");
    EXPECT_TRUE(tool("tooSave").isEnabled());
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(tool("tooSave").isEnabled());
    EXPECT_EQ(text(note), "a");
    type("b");
    editor().undo(); // back over the save
    editor().undo();
    EXPECT_EQ(editor().Text(), QString());
}

TEST_F(NoteEditor, NothingTypedIsLost) {
    const QList<std::function<void()>> ways{
        [this] { clickRow(keyOf(second)); },
        [this] { click("tooShowAll"); },
        [this] { click("tooShowMyNotes"); },
        [this] { press(Qt::Key_Escape); },
        [this] { window->close(); },
        [this] {
            whenDialogOpens([](QWidget& dialog) {
                dialog.findChild<QLineEdit*>("txtSubject")->setText("New");
                clickIn(dialog, "cmdForm(0)");
            });
            press(Qt::Key_Insert);
        },
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

TEST_F(NoteEditor, EmptyTextIsStoredAsNull) {
    open(customer);
    type("x");
    press(Qt::Key_S, Qt::ControlModifier);
    press(Qt::Key_Backspace);
    click("tooSave");
    EXPECT_TRUE(stored(idOf(note), "PlainNote").isNull());
    EXPECT_TRUE(stored(idOf(note), "RTFNote").isNull());
}

TEST_F(NoteEditor, AppendsDatesTimesAndStamps) {
    struct Case {
        Qt::Key key;
        const char* before;
        const char* after;
        bool bold;
    };
    const QList<Case> cases{
        {Qt::Key_D, "Due ", "Due 10/03/2026 ", false},
        {Qt::Key_T, "At ", "At 09:00 ", false},
        {Qt::Key_M, "", "[10/03/26 09:00 Anna Ash] -  ", true},
        {Qt::Key_M, "Before", "Before\r\n[10/03/26 09:00 Anna Ash] -  ", true},
    };
    open(customer);
    for (const Case& each : cases) {
        SCOPED_TRACE(each.after);
        editor().setText(each.before);
        press(each.key, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(editor().Text(), each.after);
        EXPECT_EQ(editor().selection().bold(), false);
        EXPECT_EQ(editor().textCursor().selectionStart(),
                  editor().document()->toPlainText().size());
        select(editor(), editor().textCursor().selectionStart() - 4);
        EXPECT_EQ(editor().selection().bold(), each.bold);
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
        "\\pard{\\*\\pn\\pnlvlblt{\\pntxtb\\'B7}}\\fi-360\\li720 an item\\par"};
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

TEST_F(NoteEditor, ThreeWaysOutOfAConflict) {
    struct Case {
        const char* button; ///< none: the question is closed
        bool mine;
        bool theirs;
    };
    const QList<Case> cases{{"Keep mine (Anna Ash, 09:02)", true, false},
                            {"Keep theirs (Ben Birch, 09:04)", false, true},
                            {"Keep both, one after the other", true, true},
                            {"", true, true}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.button);
        note->Refresh();
        changeElsewhere("start");
        open(customer);
        editor().selectAll();
        type("mine");
        changeElsewhere("theirs");
        script.press(each.button);
        press(Qt::Key_Escape);
        EXPECT_TRUE(window->isUnloaded());
        const QString kept = text(note);
        EXPECT_EQ(kept.startsWith("mine"), each.mine) << kept.toStdString();
        EXPECT_EQ(kept.endsWith("theirs"), each.theirs) << kept.toStdString();
        EXPECT_EQ(kept.contains("Ben Birch] - "), each.mine && each.theirs);
    }
    EXPECT_TRUE(script.asked.first().contains("Ben Birch saved another text of it on 10/03/2026"));
}

TEST_F(NoteEditor, AfterACrashTheTypedTextIsOffered) {
    open(customer, idOf(second));
    type("half a sent");
    QTest::qWait(2300);
    crash();
    script.answer(PromptAnswer::Yes);
    script.whileOpen = [this] { EXPECT_TRUE(window->isVisible()); };
    open(customer); // goes to the note with the draft by itself
    EXPECT_TRUE(QTest::qWaitFor([this] { return !script.asked.isEmpty(); }));
    script.whileOpen = {};
    EXPECT_TRUE(
        script.asked.last().contains("Unsaved text of 09:00 was found for the note \"Second"))
        << script.asked.last().toStdString();
    EXPECT_EQ(list().selectedKey(), keyOf(second));
    EXPECT_EQ(editor().Text(), "half a sent");
    EXPECT_TRUE(tool("tooSave").isEnabled());
    open(customer); // closing has saved it: nothing is offered any more
    EXPECT_EQ(text(second), "half a sent");
}

TEST_F(NoteEditor, OnlyNoThrowsADraftAway) {
    const auto openAnswering = [this](PromptAnswer answer) {
        script.asked.clear();
        script.answer(answer);
        open(customer, idOf(note));
        EXPECT_TRUE(QTest::qWaitFor([this] { return !script.asked.isEmpty(); }));
    };
    open(customer, idOf(note));
    type("first");
    QTest::qWait(2300);
    crash();
    openAnswering(PromptAnswer::Cancel); // as Escape does
    type("second");                      // has a draft of its own, and is saved
    QTest::qWait(2300);
    openAnswering(PromptAnswer::Cancel);
    openAnswering(PromptAnswer::Yes);
    EXPECT_EQ(editor().Text(), "first");
    close();
    EXPECT_EQ(text(note), "first");
    script.asked.clear();
    open(customer, idOf(note));
    QTest::qWait(50);
    EXPECT_TRUE(script.asked.isEmpty());
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
