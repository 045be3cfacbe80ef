// Every command: where its tool is, its keys, what it does, and when it is off.
#include "notes_window/NoteCommands.h"
#include "tests/notes_window/DrivenWindow.h"

#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QHeaderView>

namespace yrw::test {

class Commands : public DrivenWindow {
public:
    using DrivenWindow::addIn;
    using DrivenWindow::click;
    using DrivenWindow::editor;
    using DrivenWindow::script;
    void attach() const { editor().objects().insertFile(write("a.txt", "a"), ObjectDisplay::Icon); }
};

/// What a tool does to a window whose first note has the marked word "wrod", not saved yet.
struct CommandRow {
    int id;
    const char* tool;
    const char* keys; ///< up to two shortcuts
    bool on;          ///< also without a note
    const char* news; ///< what is new afterwards
    void (*prepare)(Commands&) = [](Commands&) {};
};

const std::optional<FontChoice> kFont{{"DejaVu Serif", 14, true, true, false, false, 255, {}}};

const CommandRow kCommands[] = {
    {20003, "tooSave", "Ctrl+S", false, "stored 1 'wrod'"},
    {20008, "tooPrint", "Ctrl+P", false, "print: Print Note",
     [](Commands& c) { c.script.choosePrinter(nullptr); }},
    {20045, "tooBold", "Ctrl+B", false, "bold; tooBold on"},
    {20046, "tooItalic", "Ctrl+I", false, "italic; tooItalic on"},
    {20047, "tooUnderline", "Ctrl+U", false, "underlined; tooUnderline on"},
    {20048, "tooOutdent", "", false, "indent 40",
     [](Commands& c) { c.editor().selection().setIndent(60); }},
    {20049, "tooIndent", "", false, "indent 20"},
    {20050, "tooLeft", "", false, "aligned 0; tooLeft on; tooRight off",
     [](Commands& c) { c.editor().selection().setAlignment(TextAlignment::Right); }},
    {20051, "tooCenter", "", false, "aligned 2; tooLeft off; tooCenter on"},
    {20052, "tooRight", "", false, "aligned 1; tooLeft off; tooRight on"},
    {20054, "tooBullets", "", false, "bullets; tooBullets on"},
    {20055, "tooFont", "", false, "font %last"},
    {20061, "tooInsertDate", "Ctrl+Shift+D", false, "text 'wrod10/03/2026 '; misspelt"},
    {20062, "tooInsertTime", "Ctrl+Shift+T", false, "text 'wrod09:00 '; misspelt"},
    {20063, "tooInsertContent", "", false, "dialog Insert Attachment Show Content"},
    {20064, "tooInsertIcon", "Ctrl+Shift+F", false, "dialog Insert Attachment Show as Icon"},
    {20065, "tooInsertStamp", "Ctrl+Shift+M", false, "text 'wrod [10/03/26 09:00 Anna Ash] - '"},
    {20100, "tooAdd", "Ins, Ctrl+A", true, "dialog Add Note Public Remind Just Me"},
    {20101, "tooDelete", "Ctrl+D", false,
     "Confirmation: Are you sure that you want to delete the selected note?; rows 2 3; note 2; "
     "text ''; misspelt",
     [](Commands& c) { c.script.answer(PromptAnswer::Yes); }},
    {20200, "tooEdit", "F2", false, "dialog Edit Note Public Remind Just Me"},
    {20201, "tooDone", "", false,
     "Note Done: This note has been flagged as done.; rows 2 3; note 2; text ''; misspelt ; stored "
     "1 'wrod' done",
     [](Commands& c) { c.script.expectMessage(); }},
    {20202, "tooCancelReminders", "", false, "Cancel Reminders: 0 reminder(s) were canceled.",
     [](Commands& c) { c.script.expectMessage(); }},
    {20300, "tooShowActive", "", true,
     "rows 1 2 3; note 1; caption [Showing Active]; text 'wrod'; misspelt wrod; tooShowActive on; "
     "tooShowDone off",
     [](Commands& c) { c.click("tooShowDone"); }},
    {20301, "tooShowDone", "", true,
     "rows ; note ; caption [Showing Done]; text ''; misspelt ; stored 1 'wrod'; tooShowActive "
     "off; tooShowDone on; keys to lsvMain"},
    {20302, "tooShowAll", "", true,
     "caption [Showing All]; stored 1 'wrod'; tooShowActive off; tooShowAll on; keys to lsvMain"},
    {20303, "tooShowMyNotes", "", true,
     "caption [Showing Active]; stored 1 'wrod'; ShowUserNotes=True; tooShowMyNotes on; keys to "
     "lsvMain"},
    {20304, "tooCheckReminders", "", true, "CheckForReminders=False; tooCheckReminders off"},
    {20305, "tooCheckAutoNotes", "", true, "CheckAutoNotes=False; tooCheckAutoNotes off"},
    {20306, "tooShowAutoPopup", "", true, "ShowPopupWindow=False; tooShowAutoPopup off"},
    {20307, "tooHighlightNotesRow", "", true, "HighlightNotesRow=False; tooHighlightNotesRow off"},
    {20308, "tooForgetPopupSize", "", true, "PopupWindow-W=none",
     [](Commands& c) { storeText(c.addIn->settings(), "PopupWindow-W", "900"); }},
    {20309, "tooFlagNotesRow", "", true, "FlagNotesRow=False; tooFlagNotesRow off"},
    {21002, "tooColour", "", false, "colour: ; colour 255",
     [](Commands& c) { c.script.chooseColour(std::optional(255)); }},
    {30000, "tooChooseFont", "", false,
     "font: ; bold; italic; font DejaVu Serif; colour 255; tooBold on; tooItalic on",
     [](Commands& c) { c.script.chooseFont(kFont); }},
    {30002, "tooDefaultFont", "", true, "font: ; DefaultFontName=DejaVu Serif; DefaultFontSize=14",
     [](Commands& c) { c.script.chooseFont(kFont); }},
    {40000, "tooUndo", "", false, "text ''; misspelt"},
    {40001, "tooRedo", "", false, "text 'wrod'; misspelt wrod",
     [](Commands& c) { c.editor().undo(); }},
    {40002, "tooFind", "Ctrl+F", true, "find ''; keys to txtFind"},
    {40010, "tooCopy", "", false, "clipboard wrod"},
    {40011, "tooPaste", "", false, "text 'clip'; misspelt clip"},
    {40012, "tooClear", "", false, "text ''; misspelt"},
    {40020, "tooListType", "", true,
     "caption [Showing All]; stored 1 'wrod'; tooShowActive off; tooShowAll on"},
    {40030, "tooView", "", true, "menu bndNotesShowType"},
    {41000, "tooPreview", "", false, "preview: Print Preview",
     [](Commands& c) { c.script.choosePrinter(nullptr); }},
    {41001, "tooExportPdf", "", false,
     "Export as PDF:", [](Commands& c) { c.script.chooseFiles({}); }},
    {41010, "tooOpenAttachment", "", false,
     "Open Attachment: Open a copy of \"a.txt\" (plain text document)? What you change in the copy "
     "does not come back into the note. Open only files that you expect.",
     [](Commands& c) {
         c.attach();
         c.script.answer(PromptAnswer::No);
     }},
    {41011, "tooSaveAttachment", "", false, "Save Attachment:",
     [](Commands& c) {
         c.attach();
         c.script.chooseFiles({});
     }},
    {41020, "tooPasteKeepsLook", "", true, "PasteKeepsLook=True; tooPasteKeepsLook on"},
    {41021, "tooCheckSpelling", "", true, "misspelt ; CheckSpelling=False; tooCheckSpelling off"},
    {41100, "tooWord0", "", false, "text '%entry'; misspelt"},
    {41101, "tooWord1", "", false, "text '%entry'; misspelt"},
    {41102, "tooWord2", "", false, "text '%entry'; misspelt"},
    {41103, "tooWord3", "", false, "text '%entry'; misspelt"},
    {41104, "tooWord4", "", false, "text '%entry'; misspelt"},
    {41105, "tooWord5", "", false, "misspelt"},
};

std::string expected(const CommandRow& row) {
    return QString(row.news).replace("%last", QFontDatabase::families().last()).toStdString();
}

/// The same by a shortcut in a control: the attachment dialog leaves the keyboard to the text.
std::string expectedIn(const QByteArray& focus, const CommandRow& row) {
    const bool moves = row.id == 20064 && focus != "rtxMain";
    const bool isThere = row.id == 40002 && focus == "txtFind";
    return isThere ? std::string() : expected(row) + (moves ? "; keys to rtxMain" : "");
}

TEST_F(Commands, EachHasARowHere) {
    QList<int> rows;
    for (const CommandRow& row : kCommands) {
        rows.append(row.id);
    }
    QList<int> ids = NoteCommands::ids();
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(rows, ids);
    start();
    for (int i = 0; i < toolbar().bandCount(); ++i) {
        for (int j = 0; j < toolbar().bandAt(i)->toolCount(); ++j) {
            EXPECT_TRUE(ids.contains(toolbar().bandAt(i)->toolAt(j)->id())) << i << ' ' << j;
        }
    }
}

TEST_F(Commands, EachDoesItsWorkFromEveryBandThatShowsItAndATickedOneUndoesIt) {
    start();
    for (const CommandRow& row : kCommands) {
        int places = 0;
        for (const char* key : {"bndRecords", "bndStandard", "bndFormatting", "bndInsert",
                                "bndNotesShowType", "bndNotePopup", "bndTextPopup"}) {
            SCOPED_TRACE(std::string(row.tool) + " in " + key);
            const bool ofWord = row.id >= 41100 && key == QByteArray("bndTextPopup");
            if (toolbar().findBand(key)->findTool(row.tool) == nullptr && !ofWord) {
                continue;
            }
            start();
            ++places;
            const IBand& band = *toolbar().findBand(key);
            const ITool* tool = band.findTool(row.tool);
            row.prepare(*this);
            if (band.key() == "bndNotePopup") {
                list().setFocus(); // as the click that opens the menu does
            }
            const bool wasOn = tool != nullptr && tool->isChecked();
            EXPECT_EQ(newsOf([&] { use(band, row.tool); }), expected(row));
            if (tool != nullptr && tool->kind() == ToolKind::Check) {
                newsOf([&] { use(band, row.tool); });
                EXPECT_EQ(tool->isChecked(), wasOn);
            }
        }
        EXPECT_GT(places, 0) << row.tool;
    }
}

TEST_F(Commands, EachIsDoneOnceByItsKeysWhereverTheKeyboardIs) {
    for (const CommandRow& row : kCommands) {
        const QKeySequence keys(row.keys);
        for (int i = 0; i < keys.count(); ++i) {
            for (const char* focus : {"lsvMain", "rtxMain", "txtFind", "tooListType"}) {
                SCOPED_TRACE(std::string(row.keys) + " in " + focus);
                start();
                row.prepare(*this);
                focusOn(focus);
                EXPECT_EQ(newsOf([&] { pressKeys(keys, i); }), expectedIn(focus, row));
            }
        }
    }
}

TEST_F(Commands, WhatNeedsANoteIsOffWithoutOne) {
    for (const CommandRow& row : kCommands) {
        SCOPED_TRACE(row.tool);
        start(false);
        const ITool* tool = toolbar().findTool(row.tool);
        if (row.on || tool == nullptr) {
            EXPECT_TRUE(tool == nullptr || tool->isEnabled());
            continue;
        }
        const QKeySequence keys(row.keys);
        for (const char* focus : {"txtFind", "lsvMain"}) {
            focusOn(focus);
            for (int i = 0; i < keys.count(); ++i) {
                EXPECT_EQ(newsOf([&] { pressKeys(keys, i); }), "") << focus;
            }
        }
        for (int i = 0; i < toolbar().bandCount(); ++i) {
            if (const IBand& band = *toolbar().bandAt(i); band.findTool(row.tool)) {
                EXPECT_EQ(newsOf([&] { use(band, row.tool); }), "");
            }
        }
    }
}

/// What a key does where no tool has it.
struct KeyRow {
    const char* keys;
    const char* focus;
    const char* news;
    void (*prepare)(Commands&) = [](Commands&) {};
};

const KeyRow kKeys[] = {
    {"Esc", "lsvMain", "closed"},
    {"Esc", "rtxMain", "closed"},
    {"Esc", "tooListType", "closed"},
    {"Esc", "picHSplit", "closed"},
    {"Esc", "txtFind", "no find; keys to lsvMain"},
    {"Del", "lsvMain", "Confirmation: Are you sure that you want to delete the selected note?",
     [](Commands& c) { c.script.answer(PromptAnswer::No); }},
    {"Del", "rtxMain", "text ''; misspelt"},
    {"Del", "txtFind", ""},
    {"Del", "tooListType", ""},
    {"Return", "lsvMain", "dialog Edit Note Public Remind Just Me"},
    {"Enter", "lsvMain", "dialog Edit Note Public Remind Just Me"},
    {"Return", "rtxMain", "text ' '; misspelt"},
    {"Return", "txtFind", ""},
    {"Ctrl+Ins", "rtxMain", "clipboard wrod"},
    {"Shift+Ins", "rtxMain", "text 'clip'; misspelt clip"},
    {"Ctrl+Ins", "lsvMain", "clipboard 10/03/2026 09:00"},
    {"Shift+Ins", "txtFind", "rows ; note ; text ''; misspelt ; stored 1 'wrod'; find 'noteclip'"},
    {"Ctrl+C", "rtxMain", "clipboard wrod"},
    {"Ctrl+V", "rtxMain", "text 'clip'; misspelt clip"},
    {"Ctrl+Z", "rtxMain", "text ''; misspelt"},
    {"Tab", "rtxMain", "text ' '; misspelt"},
    {"F6", "lsvMain", "keys to rtxMain"},
    {"F6", "rtxMain", "keys to lsvMain"},
    {"F6", "txtFind", "keys to lsvMain"},
    {"F10", "rtxMain", "keys to tooListType"},
};

TEST_F(Commands, EscapeLeavesAToolbarThatF10CalledAndClosesTheWindowElsewhere) {
    start();
    for (QWidget* from : {static_cast<QWidget*>(&list()), static_cast<QWidget*>(&editor())}) {
        from->setFocus();
        press(Qt::Key_F10);
        press(Qt::Key_Right);
        EXPECT_TRUE(toolbar().isAncestorOf(window->focusWidget()));
        press(Qt::Key_Escape);
        EXPECT_TRUE(from->hasFocus()) << from->objectName().toStdString();
    }
    press(Qt::Key_F10);
    toolbar().findChild<QWidget*>("tooFont")->setFocus();
    list().setFocus(); // the user has left the toolbar another way
    toolbar().findChild<QWidget*>("tooFont")->setFocus();
    press(Qt::Key_Escape);
    EXPECT_TRUE(window->isUnloaded());
}

TEST_F(Commands, KeysWithoutATool) {
    for (const KeyRow& row : kKeys) {
        SCOPED_TRACE(std::string(row.keys) + " in " + row.focus);
        start();
        row.prepare(*this);
        focusOn(row.focus);
        EXPECT_EQ(newsOf([&] { pressKeys(QKeySequence(row.keys)); }), row.news);
    }
}

// Undo, redo, copy, paste and clear, in this order, wherever they stand: lit while they can act.
TEST_F(Commands, ToolsOfTheTextAreLitWhileTheyCanAct) {
    start();
    clickRow(list().items().keyAt(1));
    QGuiApplication::clipboard()->clear();
    struct Case {
        const char* what;
        std::function<void()> act;
        const char* lit;
    };
    const QList<Case> cases{
        {"an untouched text", [] {}, "-----"},
        {"typed", [this] { type("word"); }, "U----"},
        {"marked", [this] { editor().selectAll(); }, "U-C-X"},
        {"copied", [this] { press(Qt::Key_C, Qt::ControlModifier); }, "U-CPX"},
        {"undone", [this] { click("tooUndo"); }, "-R-P-"},
        {"redone", [this] { click("tooRedo"); }, "U--P-"},
        {"the clipboard empty", [] { QGuiApplication::clipboard()->clear(); }, "U----"},
        {"the clipboard filled",
         [] { QGuiApplication::clipboard()->setText(QStringLiteral("clip")); }, "U--P-"},
        {"saved", [this] { press(Qt::Key_S, Qt::ControlModifier); }, "U--P-"},
        {"only to be read",
         [this] {
             editor().setReadOnly(true);
             editor().selectAll();
         },
         "--C--"},
        {"another note", [this] { clickRow(list().items().keyAt(2)); }, "---P-"},
        {"no note", [this] { click("tooShowDone"); }, "-----"},
    };
    for (const Case& each : cases) {
        each.act();
        QString lit;
        for (const char* key : {"tooUndo", "tooRedo", "tooCopy", "tooPaste", "tooClear"}) {
            const char* const letters[] = {"U", "R", "C", "P", "X"};
            lit += tool(key).isEnabled() ? letters[lit.size()] : "-";
        }
        EXPECT_EQ(lit.toStdString(), each.lit) << each.what;
    }
}

TEST_F(Commands, HelpComesFromTheHostElseAListOfTheKeysWithTheHourglassGone) {
    start();
    list().setFocus();
    press(Qt::Key_F1);
    EXPECT_EQ(store.host().shownHelp.size(), 1);
    store.host().hasHelp = false;
    script.expectMessage();
    script.whileOpen = [this] { EXPECT_EQ(script.pointer, MousePointer::Default); };
    QTest::keyPress(&list(), Qt::Key_F1);
    EXPECT_TRUE(script.asked.isEmpty()); // when the key is released
    script.pointers.clear();
    QTest::keyRelease(&list(), Qt::Key_F1);
    EXPECT_EQ(script.pointers.value(0), MousePointer::Hourglass);
    for (const CommandRow& row : kCommands) {
        for (const QString& keys : QString(row.keys).replace("Ins", "Insert").split(", ")) {
            EXPECT_TRUE(script.asked.last().contains(keys)) << row.tool;
        }
    }
}

TEST_F(Commands, TheList) {
    struct Case {
        const char* what;
        std::function<void()> act;
        const char* news;
        int shown; ///< how often a note is fetched
    };
    QWidget* view = nullptr;
    const auto at = [this](int row) {
        return list().visualRect(list().model()->index(row, 0)).center();
    };
    const auto press = [&](const QPoint& place) {
        QTest::mouseClick(view, Qt::LeftButton, {}, place);
    };
    const auto pressTwice = [&](const QPoint& place) {
        press(place);
        QTest::mouseDClick(view, Qt::LeftButton, {}, place);
    };
    const auto key = [this](Qt::Key pressed) { QTest::keyClick(&list(), pressed); };
    const auto head = [this](int column) {
        const QHeaderView* header = list().header();
        const QPoint place(header->sectionPosition(column) + 10, 5);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
    };
    const auto menuKey = [&] {
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, {}, {});
        QApplication::sendEvent(view, &menu);
    };
    const QPoint beside(9, 150);
    const QList<Case> cases{
        {"click", [&] { press(at(1)); }, "note 2; text ''; misspelt ; stored 1 'wrod'", 1},
        {"click beside", [&] { press(beside); }, "", 0},
        {"double-click", [&] { pressTwice(at(1)); },
         "dialog Edit Note Public Remind Just Me; note 2; text ''; misspelt ; stored 1 'wrod'", 1},
        {"double-click beside", [&] { pressTwice(beside); }, "", 0},
        {"down", [&] { key(Qt::Key_Down); }, "note 2; text ''; misspelt ; stored 1 'wrod'", 1},
        {"up at the top", [&] { key(Qt::Key_Up); }, "", 0},
        {"end", [&] { key(Qt::Key_End); }, "note 3; text ''; misspelt ; stored 1 'wrod'", 1},
        {"letters", [&] { QTest::keyClicks(&list(), "note"); },
         "note 2; text ''; misspelt ; stored 1 'wrod'", 1},
        {"date's head", [&] { head(0); }, "", 0},
        {"subject's head twice",
         [&] {
             head(1);
             head(1);
         },
         "rows 3 2 1", 0},
        {"right click", [&] { rightClick(*view, at(2)); },
         "menu bndNotePopup; note 3; text ''; misspelt ; stored 1 'wrod'", 1},
        {"menu key", [&] { menuKey(); }, "menu bndNotePopup", 0},
        {"shift and F10", [&] { QTest::keyClick(&list(), Qt::Key_F10, Qt::ShiftModifier); },
         "menu bndNotePopup", 0},
        {"shift and F10 in the text",
         [&] {
             editor().setFocus(); // as a display does for a key that is pressed there
             QTest::keyClick(&editor(), Qt::Key_F10, Qt::ShiftModifier);
         },
         "menu bndTextPopup; keys to rtxMain", 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.what);
        start();
        list().setFocus();
        view = list().viewport();
        script.pointers.clear();
        EXPECT_EQ(newsOf(each.act), each.news);
        const int saved = each.shown; // what was typed is saved first
        EXPECT_EQ(script.pointers.count(MousePointer::Hourglass), each.shown + saved);
    }
}

} // namespace yrw::test
