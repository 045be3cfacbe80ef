// Files inside notes, the text's menu and spelling.
#include "notes_window/NoteAttachments.h"
#include "notes_window/frmInsertAttachment.h"
#include "platform/rtf/EmbeddedObject.h"
#include "tests/driving/Desktop.h"
#include "tests/notes_window/WindowFixture.h"

#include <QDir>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QRadioButton>
#include <QRegularExpression>

namespace yrw::test {

class NoteAttachmentsTest : public WindowFixture {
protected:
    void SetUp() override {
        WindowFixture::SetUp();
        note = store.addNote("First", customer);
    }
    [[nodiscard]] QString file(const QString& name, const QByteArray& content) const {
        QFile out(folder.filePath(name));
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(content);
        return out.fileName();
    }
    /// Fills in the attachment dialog as soon as it is open, and confirms.
    void insertIn(const QString& path) {
        whenDialogOpens([path](QWidget& dialog) {
            dialog.findChild<QLineEdit*>("txtFile")->setText(path);
            clickIn(dialog, "cmdForm(0)");
        });
    }
    /// Right-clicks a place in the text; `act` sees the menu's captions.
    void menuAt(const QPoint& place, const std::function<void(QMenu&)>& act) {
        bool seen = false;
        QTimer::singleShot(0, window.get(), [&] {
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            seen = true;
            act(*menu);
            menu->close();
        });
        QTest::mouseClick(editor().viewport(), Qt::RightButton, {}, place);
        EXPECT_TRUE(seen);
    }
    static QStringList captions(const QMenu& menu) {
        QStringList all;
        for (const QAction* action : menu.actions()) {
            all.append(QString(action->text()).section('\t', 0, 0).remove('&'));
        }
        return all;
    }
    static void choose(QMenu& menu, const QString& caption) {
        for (QAction* action : menu.actions()) {
            if (QString(action->text()).remove('&') == caption) {
                menu.setActiveAction(action);
                QTest::keyClick(&menu, Qt::Key_Return);
                return;
            }
        }
        ADD_FAILURE() << "no " << caption.toStdString();
    }
    [[nodiscard]] QPoint placeOf(int position) const {
        QTextCursor cursor(editor().document());
        cursor.setPosition(position);
        return editor().cursorRect(cursor).center() + QPoint(8, 0);
    }

    QTemporaryDir folder;
    Ref<Note> note;
};

TEST_F(NoteAttachmentsTest, ToolsAndKeyAttachAFileThatSurvivesTheDatabase) {
    struct Case {
        std::function<void()> begin;
        bool icon;
    };
    const Case cases[] = {
        {[this] { click("tooInsertContent"); }, false},
        {[this] { click("tooInsertIcon"); }, true},
        {[this] { press(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier); }, true}};
    const QString path = file("list.txt", "milk\nbread");
    open(customer);
    int count = 0;
    for (const Case& each : cases) {
        whenDialogOpens([&](QWidget& dialog) {
            EXPECT_EQ(dialog.findChild<QRadioButton*>("optDisplay(0)")->isChecked(), each.icon);
            dialog.findChild<QLineEdit*>("txtFile")->setText(path);
            clickIn(dialog, "cmdForm(0)");
        });
        each.begin();
        EXPECT_EQ(editor().objects().count(), ++count);
    }
    EXPECT_TRUE(tool("tooSave").isEnabled());
    restart();
    ASSERT_EQ(editor().objects().count(), 3);
    EXPECT_EQ(editor().objects().file(2)->data, "milk\nbread");
    // Nothing but attachments is no text.
    EXPECT_TRUE(stored(idOf(note), "PlainNote").isNull());
    EXPECT_FALSE(stored(idOf(note), "RTFNote").isNull());
}

TEST_F(NoteAttachmentsTest, WhatCannotBeAttachedIsReportedAndLeavesTheText) {
    storeText(addIn->settings(), "LargestAttachment", "11");
    const QString large = file("large.bin", QByteArray(12 * 1024 * 1024, 'x'));
    open(customer);
    type("text");
    for (const QString& path : {QString(), folder.filePath("none"), folder.path(), large}) {
        script.expectReport();
        insertIn(path);
        click("tooInsertIcon");
        const ErrorReport& report = script.reports.last();
        EXPECT_EQ(report.message, "Could Not Insert Object");
        EXPECT_EQ(report.title, "Yarrowen Error");
        EXPECT_EQ(report.source, "YRWNotes.frmMain.InsertFile");
        EXPECT_EQ(editor().objects().count(), 0);
        EXPECT_EQ(editor().Text(), "text");
    }
    EXPECT_TRUE(script.reports.last().description.contains("12 MB; at most 11 MB"));
}

TEST_F(NoteAttachmentsTest, DroppedFilesAreAttachedThroughTheSameQuestions) {
    open(customer);
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(file("a.txt", "a")),
                   QUrl::fromLocalFile(file("large.bin", QByteArray(11 * 1024 * 1024, 'x')))});
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(editor().viewport(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QApplication::sendEvent(editor().viewport(), &drop);
    EXPECT_TRUE(script.asked.isEmpty()); // whoever drags is not kept waiting
    script.answer(PromptAnswer::No);
    QCoreApplication::processEvents();
    EXPECT_EQ(script.asked.size(), 1);
    ASSERT_EQ(editor().objects().count(), 1);
    EXPECT_EQ(editor().objects().name(0), "a.txt");
}

TEST_F(NoteAttachmentsTest, ALargeFileIsAskedAboutAndNoBringsTheDialogBack) {
    const QString large = file("large.bin", QByteArray(11 * 1024 * 1024, 'x'));
    open(customer);
    script.answer(PromptAnswer::No);
    script.answer(PromptAnswer::Yes);
    whenDialogOpens([&](QWidget& dialog) {
        dialog.findChild<QLineEdit*>("txtFile")->setText(large);
        clickIn(dialog, "cmdForm(0)");
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(editor().objects().count(), 0);
        clickIn(dialog, "cmdForm(0)");
    });
    click("tooInsertIcon");
    EXPECT_EQ(editor().objects().count(), 1);
    EXPECT_TRUE(script.asked.last().contains("\"large.bin\" has 11 MB."));
}

TEST_F(NoteAttachmentsTest, ADialogThatIsStillHeldGoesBeforeAnotherOpens) {
    open(customer);
    QPointer<QWidget> first;
    whenDialogOpens([&](QWidget& dialog) {
        first = &dialog;
        whenDialogOpens([&](QWidget& second) {
            EXPECT_NE(first.data(), &second);
            EXPECT_TRUE(qobject_cast<frmInsertAttachment*>(first)->isUnloaded());
            EXPECT_FALSE(first->isVisible());
            clickIn(second, "cmdForm(1)");
        });
        toolbar().activate("tooInsertIcon");
    });
    click("tooInsertContent");
    EXPECT_EQ(dialogs, 2);
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(NoteAttachmentsTest, OpensAPrivateReadOnlyCopyAfterAQuestion) {
    Desktop desktop;
    open(customer);
    insertIn(file("list.txt", "milk"));
    click("tooInsertIcon");
    script.answer(PromptAnswer::No);
    script.answer(PromptAnswer::Yes);
    for (int i = 0; i < 2; ++i) {
        QTest::mouseDClick(editor().viewport(), Qt::LeftButton, {}, placeOf(0));
        EXPECT_EQ(desktop.opened.size(), i);
    }
    EXPECT_TRUE(script.asked.last().contains("\"list.txt\" (plain text document)"));
    const QFileInfo copy(desktop.opened.value(0));
    EXPECT_EQ(copy.fileName(), "list.txt");
    const QFile::Permissions others(0x77);
    EXPECT_FALSE(copy.permissions() & (others | QFile::WriteOwner | QFile::ExeOwner));
    EXPECT_FALSE(QFileInfo(QFileInfo(copy.path()).path()).permissions() & others);
}

TEST_F(NoteAttachmentsTest, NeverOpensWhatADesktopWouldRun) {
    struct Case {
        const char* name;
        QByteArray data;
        bool program;
    };
    const Case cases[] = {
        {"a.sh", "echo", true},
        {"a.desktop", "[Desktop Entry]", true},
        {"setup.EXE", "MZ", true},
        {"notes.txt", "#!/bin/sh\nrm", true},
        {"a",
         "\x7f"
         "ELF\2\1\1",
         true},
        {"a.py", "import os", true},
        {"a.jar", "PK", true},
        {"a.lnk", "L", true},
        {"a.AppImage",
         "\x7f"
         "ELF",
         true},
        {"a.html", "<script>", false},
        {"a.txt", "hello", false},
        {"a.pdf", "%PDF-1.4", false},
        {"a.doc", "\xd0\xcf\x11\xe0", false},
        {"a.png", "\x89PNG", false},
        {"a.csv", "a,b", false},
        {"a.zip", "PK\3\4", false},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(isProgram(each.name, each.data), each.program) << each.name;
    }
    Desktop desktop;
    open(customer);
    for (const bool executable : {true, false}) {
        editor().setText(QString());
        const QString path = file("a.sh", "echo");
        QFile::setPermissions(path, executable ? QFile::Permissions(0x7700) : QFile::ReadOwner);
        insertIn(path);
        click("tooInsertIcon");
        ASSERT_EQ(editor().objects().at(placeOf(0)), 0) << executable;
        script.expectMessage();
        QTest::mouseDClick(editor().viewport(), Qt::LeftButton, {}, placeOf(0));
        EXPECT_TRUE(script.asked.last().contains("(shell script) is not opened"));
        EXPECT_TRUE(desktop.opened.isEmpty());
        QFile::remove(path);
    }
}

TEST_F(NoteAttachmentsTest, TheMenuSavesAnAttachmentAndShowsThatOnlyThere) {
    const QString target = folder.filePath("out.txt");
    open(customer);
    insertIn(file("list.txt", "milk"));
    click("tooInsertIcon");
    type(" words");
    script.chooseFiles({target});
    menuAt(placeOf(0), [](QMenu& menu) { choose(menu, "Save Attachment As..."); });
    EXPECT_EQ(script.fileRequests.last().name, "list.txt");
    QFile out(target);
    ASSERT_TRUE(out.open(QIODevice::ReadOnly));
    EXPECT_EQ(out.readAll(), "milk");
    script.chooseFiles({"/no/such/folder/x"});
    script.expectReport();
    menuAt(placeOf(0), [](QMenu& menu) { choose(menu, "Save Attachment As..."); });
    menuAt(placeOf(4), [](QMenu& menu) {
        EXPECT_EQ(captions(menu), QStringList({"Copy", "Paste", "Clear"}));
    });
}

/// An object that is a link, in the older way or as a package, with or without a picture.
QString linkObject(const QByteArray& path, bool package, const QByteArray& picture) {
    const auto counted = [](const QByteArray& text) -> QByteArray {
        const char size[] = {static_cast<char>(text.size() + 1), 0, 0, 0};
        return QByteArray(size, 4) + text + QByteArray(1, '\0');
    };
    QByteArray stream("\1\5\0\0\1\0\0\0", 8);
    stream += counted("Excel.Sheet.8") + counted(path) + counted("R1C1");
    if (package) {
        const QByteArray native = QByteArray("\2\0b.xls\0", 8) + path + QByteArray("\0\0\0\1\0", 5);
        stream = rtf::writeObject({.className = rtf::kPackageClass, .native = native});
    }
    const QByteArray rtf = "{\\rtf1{\\object\\objlink{\\*\\objclass Excel.Sheet.8}{\\*\\objdata " +
                           stream.toHex() + "}{\\result " + picture + "}} x}";
    return QString::fromLatin1(rtf);
}

TEST_F(NoteAttachmentsTest, ADateBehindALinkOrAnObjectIsTextOfItsOwn) {
    open(customer);
    for (const char* before : {"{\\field{\\*\\fldinst HYPERLINK \"http://a/\"}{\\fldrslt link}}",
                               "{\\object{\\*\\objclass Odd}{\\*\\objdata 01}}"}) {
        editor().setTextRTF(QLatin1String("{\\rtf1 ") + before + QLatin1String("}"));
        press(Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
        const QString rtf = editor().TextRTF();
        EXPECT_TRUE(QRegularExpression("}+ ?10/03/2026 ").match(rtf).hasMatch())
            << rtf.toStdString();
    }
}

TEST_F(NoteAttachmentsTest, SavesWhatALinkLeadsToElseItsPicture) {
    const QString target = folder.filePath("out");
    const QString linked = file("b.xls", "sheet");
    const QByteArray reached = QString(folder.path() + "\\B.XLS").replace('/', '\\').toUtf8();
    const QByteArray picture = "{\\pict\\emfblip 01000000}";
    struct Case {
        QByteArray path;
        bool package;
        QByteArray picture;
        QList<PromptAnswer> answers;
        QByteArray told;
        QByteArray saved; ///< nothing when nothing is
    };
    const QList<Case> cases{
        {reached, false, picture, {PromptAnswer::Yes}, "/b.xls", "sheet"},
        {reached, true, picture, {PromptAnswer::Yes}, "/b.xls", "sheet"},
        {reached, false, picture, {PromptAnswer::No}, "/b.xls", ""},
        {"C:\\gone\\c.xls", false, picture, {PromptAnswer::Yes}, "C:\\gone", "\1"},
        {"C:\\gone\\c.xls", true, picture, {PromptAnswer::No}, "C:\\gone", ""},
        {"C:\\gone\\c.xls", false, "", {}, "Make its drive or folder available", ""},
    };
    open(customer);
    for (const Case& each : cases) {
        SCOPED_TRACE(each.path.toStdString());
        QFile::remove(target);
        editor().setTextRTF(linkObject(each.path, each.package, each.picture));
        ASSERT_EQ(editor().objects().count(), 1);
        for (const PromptAnswer answer : each.answers) {
            script.answer(answer);
        }
        script.expectMessage(each.answers.isEmpty() ? 1 : 0);
        if (!each.saved.isEmpty()) {
            script.chooseFiles({target});
        }
        menuAt(placeOf(0), [](QMenu& menu) { choose(menu, "Save Attachment As..."); });
        EXPECT_TRUE(script.asked.join('|').contains(each.told));
        QFile out(target);
        ASSERT_EQ(out.open(QIODevice::ReadOnly), !each.saved.isEmpty());
        EXPECT_EQ(out.readAll().left(5).startsWith(each.saved), true);
        script.asked.clear();
    }
}

TEST_F(NoteAttachmentsTest, UnknownWordsAreOfferedOthersWhereADictionaryIsInstalled) {
    const QString affixes = file("xx_YY.aff", "SET UTF-8\nTRY abcdefghijklmnopqrstuvwxyz\n");
    const QString words = file("xx_YY.dic", "3\nbreakfast\nopen\nwindow\n");
    qputenv("DICPATH", folder.path().toUtf8());
    open(customer);
    EXPECT_FALSE(tool("tooCheckSpelling").isChecked()); // no dictionary of the user's language
    storeText(addIn->settings(), "SpellingLanguage", "xx_ZZ");
    open(customer);
    EXPECT_TRUE(tool("tooCheckSpelling").isChecked());
    EXPECT_FALSE(tool("tooSave").isEnabled());
    type("Breakfst window YRW a.b@example.org");
    const QString before = editor().TextRTF();
    const QStringList usual{"Copy", "Paste", "Clear"};
    for (const int known : {12, 17, 30}) {
        menuAt(placeOf(known), [&](QMenu& menu) { EXPECT_EQ(captions(menu), usual) << known; });
    }
    EXPECT_EQ(editor().TextRTF(), before);
    menuAt(placeOf(3), [](QMenu& menu) { choose(menu, "Breakfast"); });
    EXPECT_EQ(editor().Text(), "Breakfast window YRW a.b@example.org");
    editor().setText("qwxz");
    menuAt(placeOf(1), [](QMenu& menu) { choose(menu, "Accept This Word"); });
    menuAt(placeOf(1), [](QMenu& menu) { EXPECT_EQ(menu.actions().size(), 3); });
    toolbar().activate("tooCheckSpelling");
    EXPECT_EQ(storedText(addIn->settings(), "CheckSpelling"), "False");
    editor().setText("xqwz");
    menuAt(placeOf(1), [](QMenu& menu) { EXPECT_EQ(menu.actions().size(), 3); });
    qunsetenv("DICPATH");
}

TEST_F(NoteAttachmentsTest, ADamagedNoteIsNotOverwrittenWithoutAsking) {
    struct Case {
        QString rich;
        QString shown; ///< of it, or the plain text where nothing can be read of it
    };
    const Case cases[] = {{"{\\rtf1 half a {\\b note", "half a note"},
                          {"\\rtf1 without a brace", "plain"},
                          {"{\\rtf1{\\fonttbl", "plain"}};
    for (const auto& [damaged, shown] : cases) {
        SCOPED_TRACE(damaged.toStdString());
        const Ref<IRecord> fresh = store.notesOf(customer)->Item(QVariant(idOf(note)));
        fresh->BeginMultipleFieldUpdate();
        fresh->Field("RTFNote")->setValue(damaged);
        fresh->Field("PlainNote")->setValue("plain");
        fresh->EndMultipleFieldUpdate();
        open(customer);
        EXPECT_EQ(editor().toPlainText(), shown);
        type("x");
        script.answer(PromptAnswer::No);
        press(Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(stored(idOf(note), "RTFNote"), damaged);
        type("y");
        script.answer(PromptAnswer::Yes);
        press(Qt::Key_S, Qt::ControlModifier);
        type("z");
        press(Qt::Key_S, Qt::ControlModifier); // asked once
        EXPECT_EQ(stored(idOf(note), "PlainNote"), QString("xyz" + shown));
    }
}

TEST_F(NoteAttachmentsTest, AConflictBringsTheOthersAttachmentsAlong) {
    open(customer);
    insertIn(file("mine.txt", "mine"));
    click("tooInsertIcon");
    RichTextBox theirs;
    theirs.objects().insertFile(file("theirs.txt", "theirs"), ObjectDisplay::Icon);
    store.actAs(2);
    const Ref<IRecord> other = store.notesOf(customer)->Item(QVariant(idOf(note)));
    other->BeginMultipleFieldUpdate();
    other->Field("RTFNote")->setValue(theirs.TextRTF());
    other->Field("ChangeDate")->setValue(store.clock().now().addSecs(60));
    other->EndMultipleFieldUpdate();
    store.actAs(1);
    script.press("Keep both, one after the other"); // keeps both
    press(Qt::Key_S, Qt::ControlModifier);
    ASSERT_EQ(editor().objects().count(), 2);
    EXPECT_EQ(editor().objects().file(0)->data, "mine");
    EXPECT_EQ(editor().objects().file(1)->data, "theirs");
}

} // namespace yrw::test
