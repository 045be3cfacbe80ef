// The dispatcher: which tool and which key does what.
#include "notes_window/frmMain.h"

#include "dialogs/Hourglass.h"
#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "notes_window/EachTool.h"
#include "notes_window/FindBar.h"
#include "notes_window/NoteTexts.h"
#include "notes_window/TextTools.h"
#include "platform/clock/Clock.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"

#include <QFontDatabase>
#include <QTextCursor>

#include <algorithm>

namespace yrw {

namespace {

constexpr int kIndentStep = 20; ///< twips
constexpr int kFirstShowTool = 20300;
constexpr int kHelpTopic = 110000;

const QString kFormattingBand = QStringLiteral("bndFormatting");
const QString kStandardBand = QStringLiteral("bndStandard");
const QString kInsertBand = QStringLiteral("bndInsert");
const QString kShowTypeBand = QStringLiteral("bndNotesShowType");

} // namespace

/// One row of the dispatcher: a tool's id, the procedure's name in error reports, what it does.
struct frmMain::Command {
    int id;
    const char16_t* procedure;
    void (*run)(frmMain&, ITool&);
};

/// An option that a check tool shows, the settings store keeps and the process follows.
struct frmMain::OptionTool {
    int id;
    QString settingKey;
    NotesSwitch which;
};

/// Keys that do what a click on a tool does.
struct frmMain::Shortcut {
    int key;
    Qt::KeyboardModifiers shift;
    QString toolKey;
};

/// What is done with whole notes.
std::vector<frmMain::Command> frmMain::noteCommands() {
    return {
        {20003, u"SaveNote", [](frmMain& f, ITool&) { f.SaveNote(); }},
        {20008, u"PrintNote", [](frmMain& f, ITool&) { f.printNote(); }},
        {20100, u"AddNote", [](frmMain& f, ITool&) { f.openProperties(nullptr); }},
        {20101, u"DeleteNote", [](frmMain& f, ITool&) { f.deleteSelected(); }},
        {20200, u"EditNote", [](frmMain& f, ITool&) { f.lsvMain_DblClick(); }},
        {20201, u"DoneNote", [](frmMain& f, ITool&) { f.finishSelected(); }},
        {20202, u"CancelReminders", [](frmMain& f, ITool&) { f.cancelSelectedReminders(); }},
        {40002, u"Find", [](frmMain& f, ITool&) { f.openFind(); }},
        {41000, u"PreviewNote", [](frmMain& f, ITool&) { f.previewNote(); }},
        {41001, u"ExportPdf", [](frmMain& f, ITool&) { f.exportPdf(); }},
    };
}

/// What is done with the text.
std::vector<frmMain::Command> frmMain::textCommands() {
    return {
        {20045, u"Bold", [](frmMain& f, ITool& t) { f.m_rtxMain->setSelBold(!t.isChecked()); }},
        {20046, u"Italic", [](frmMain& f, ITool& t) { f.m_rtxMain->setSelItalic(!t.isChecked()); }},
        {20047, u"Underline",
         [](frmMain& f, ITool& t) { f.m_rtxMain->setSelUnderline(!t.isChecked()); }},
        {20048, u"Indent", [](frmMain& f, ITool&) { f.changeIndent(-kIndentStep); }},
        {20049, u"Indent", [](frmMain& f, ITool&) { f.changeIndent(kIndentStep); }},
        {20050, u"Align", [](frmMain& f, ITool&) { f.align(TextAlignment::Left); }},
        {20051, u"Align", [](frmMain& f, ITool&) { f.align(TextAlignment::Center); }},
        {20052, u"Align", [](frmMain& f, ITool&) { f.align(TextAlignment::Right); }},
        {20054, u"Bullets",
         [](frmMain& f, ITool& t) { f.m_rtxMain->setSelBullet(!t.isChecked()); }},
        {20055, u"Font", [](frmMain& f, ITool& t) { f.m_rtxMain->setSelFontName(t.text()); }},
        {20061, u"InsertDate",
         [](frmMain& f, ITool&) {
             f.AppendText(noteDayText(f.services().clock.now()), false, false);
         }},
        {20062, u"InsertTime",
         [](frmMain& f, ITool&) {
             f.AppendText(noteTimeText(f.services().clock.now()), false, false);
         }},
        {20063, u"InsertFile",
         [](frmMain& f, ITool&) { f.openInsertAttachment(ObjectDisplay::Content); }},
        {20064, u"InsertFile",
         [](frmMain& f, ITool&) { f.openInsertAttachment(ObjectDisplay::Icon); }},
        {20065, u"InsertStamp", [](frmMain& f, ITool&) { f.InsertStamp(); }},
        {21002, u"TextColour", [](frmMain& f, ITool&) { f.chooseColour(); }},
        {30000, u"ChooseFont", [](frmMain& f, ITool&) { f.ChooseFont(); }},
        {30002, u"SetDefaultFont", [](frmMain& f, ITool&) { f.SetDefaultFont(); }},
        {40000, u"Undo", [](frmMain& f, ITool&) { f.m_rtxMain->undo(); }},
        {40001, u"Redo", [](frmMain& f, ITool&) { f.m_rtxMain->redo(); }},
        {40010, u"Copy", [](frmMain& f, ITool&) { f.m_rtxMain->copy(); }},
        {40011, u"Paste", [](frmMain& f, ITool&) { f.m_rtxMain->paste(); }},
        {40012, u"Clear",
         [](frmMain& f, ITool&) {
             if (!f.m_rtxMain->isReadOnly()) {
                 f.m_rtxMain->textCursor().removeSelectedText();
             }
         }},
        {41010, u"OpenAttachment", [](frmMain& f, ITool&) { f.openPopupObject(); }},
        {41011, u"SaveAttachment", [](frmMain& f, ITool&) { f.savePopupObject(); }},
        {41020, u"PasteKeepsLook", [](frmMain& f, ITool& t) { f.togglePasteKeepsLook(t); }},
        {41021, u"CheckSpelling", [](frmMain& f, ITool& t) { f.toggleSpelling(t); }},
        {41100, u"ReplaceWord", [](frmMain& f, ITool& t) { f.replaceWord(t); }},
        {41101, u"ReplaceWord", [](frmMain& f, ITool& t) { f.replaceWord(t); }},
        {41102, u"ReplaceWord", [](frmMain& f, ITool& t) { f.replaceWord(t); }},
        {41103, u"ReplaceWord", [](frmMain& f, ITool& t) { f.replaceWord(t); }},
        {41104, u"ReplaceWord", [](frmMain& f, ITool& t) { f.replaceWord(t); }},
        {41105, u"AcceptWord", [](frmMain& f, ITool&) { f.acceptWord(); }},
    };
}

/// What the list shows, and the options.
std::vector<frmMain::Command> frmMain::listCommands() {
    return {
        {20300, u"ShowType", [](frmMain& f, ITool&) { f.showType(1); }},
        {20301, u"ShowType", [](frmMain& f, ITool&) { f.showType(2); }},
        {20302, u"ShowType", [](frmMain& f, ITool&) { f.showType(3); }},
        {20303, u"ShowMyNotes", [](frmMain& f, ITool& t) { f.toggleMine(t); }},
        {20304, u"CheckReminders", [](frmMain& f, ITool& t) { f.toggleOption(t); }},
        {20305, u"CheckAutoNotes", [](frmMain& f, ITool& t) { f.toggleOption(t); }},
        {20306, u"ShowAutoPopup", [](frmMain& f, ITool& t) { f.toggleOption(t); }},
        {20307, u"HighlightNotesRow", [](frmMain& f, ITool& t) { f.toggleOption(t); }},
        {20308, u"ForgetPopupSize",
         [](frmMain& f, ITool&) {
             f.settings().remove(QStringLiteral("PopupWindow-H"));
             f.settings().remove(QStringLiteral("PopupWindow-W"));
         }},
        {20309, u"FlagNotesRow", [](frmMain& f, ITool& t) { f.toggleOption(t); }},
        {40020, u"ShowType", [](frmMain& f, ITool& t) { f.showType(t.listIndex()); }},
        {40030, u"View", [](frmMain& f, ITool&) { f.m_atbMain->popup(kShowTypeBand); }},
    };
}

const std::vector<frmMain::Command>& frmMain::commands() {
    static const std::vector<Command> table = [] {
        std::vector<Command> all = noteCommands();
        for (const std::vector<Command>& more : {textCommands(), listCommands()}) {
            all.insert(all.end(), more.begin(), more.end());
        }
        return all;
    }();
    return table;
}

const std::vector<frmMain::OptionTool>& frmMain::options() {
    static const std::vector<OptionTool> table{
        {20304, QStringLiteral("CheckForReminders"), NotesSwitch::CheckForReminders},
        {20305, QStringLiteral("CheckAutoNotes"), NotesSwitch::CheckAutoNotes},
        {20306, QStringLiteral("ShowPopupWindow"), NotesSwitch::ShowPopupWindow},
        {20307, QStringLiteral("HighlightNotesRow"), NotesSwitch::HighlightNotesRow},
        {20309, QStringLiteral("FlagNotesRow"), NotesSwitch::FlagNotesRow},
    };
    return table;
}

const std::vector<frmMain::Shortcut>& frmMain::shortcuts() {
    constexpr Qt::KeyboardModifiers control = Qt::ControlModifier;
    constexpr Qt::KeyboardModifiers both = Qt::ControlModifier | Qt::ShiftModifier;
    static const std::vector<Shortcut> table{
        {Qt::Key_Insert, Qt::NoModifier, QStringLiteral("tooAdd")},
        {Qt::Key_A, control, QStringLiteral("tooAdd")},
        {Qt::Key_D, control, QStringLiteral("tooDelete")},
        {Qt::Key_S, control, QStringLiteral("tooSave")},
        {Qt::Key_P, control, QStringLiteral("tooPrint")},
        {Qt::Key_F, control, QStringLiteral("tooFind")},
        {Qt::Key_B, control, QStringLiteral("tooBold")},
        {Qt::Key_I, control, QStringLiteral("tooItalic")},
        {Qt::Key_U, control, QStringLiteral("tooUnderline")},
        {Qt::Key_F2, Qt::NoModifier, QStringLiteral("tooEdit")},
        {Qt::Key_M, both, QStringLiteral("tooInsertStamp")},
        {Qt::Key_F, both, QStringLiteral("tooInsertIcon")},
        {Qt::Key_D, both, QStringLiteral("tooInsertDate")},
        {Qt::Key_T, both, QStringLiteral("tooInsertTime")},
    };
    return table;
}

void frmMain::atbMain_Click(ITool& tool) {
    run(tool);
    rtxMain_SelChange();
}

void frmMain::atbMain_ComboSelChange(ITool& tool) {
    atbMain_Click(tool);
}

void frmMain::atbMain_ComboDrop(ITool& tool) {
    if (tool.key() == QStringLiteral("tooFont")) {
        tool.setList(QFontDatabase::families());
    }
}

void frmMain::run(ITool& tool) {
    const std::vector<Command>& table = commands();
    const auto command = std::find_if(table.begin(), table.end(),
                                      [&](const Command& each) { return each.id == tool.id(); });
    if (command == table.end()) {
        return;
    }
    reportErrors(services().utility,
                 QStringLiteral("YRWNOTES.frmMain.") + QString::fromUtf16(command->procedure),
                 QStringLiteral("Could not Run the Command"), QStringLiteral("Notes Problem"),
                 [&] { command->run(*this, tool); });
    prompt().setMousePointer(MousePointer::Default);
}

QList<int> frmMain::commandIDs() {
    QList<int> ids;
    for (const Command& command : commands()) {
        ids.append(command.id);
    }
    return ids;
}

void frmMain::Form_KeyDown(FormKey& key) {
    if (key.is(Qt::Key_Escape)) {
        key.consumed = true;
        if (m_findBar->fieldHasFocus()) {
            closeFind();
        } else if (!m_atbMain->leave()) {
            unload();
        }
        return;
    }
    if (key.is(Qt::Key_F6)) {
        // The tabulator belongs to the text: this is the way out of it.
        key.consumed = true;
        QWidget& other = m_lsvMain->hasFocus() ? static_cast<QWidget&>(*m_rtxMain) : *m_lsvMain;
        other.activateWindow(); // a floating band may have the keyboard
        other.setFocus();
        return;
    }
    for (const Shortcut& shortcut : shortcuts()) {
        if (key.is(shortcut.key, shortcut.shift)) {
            key.consumed = true;
            m_atbMain->activate(shortcut.toolKey);
            return;
        }
    }
    if (m_lsvMain->hasFocus()) {
        lsvMain_KeyDown(key);
    }
}

void frmMain::Form_KeyUp(FormKey& key) {
    if (key.is(Qt::Key_F1)) {
        key.consumed = true;
        ignoreErrors([this] { showHelp(); });
    }
}

void frmMain::showHelp() {
    bool shown = false;
    {
        const Hourglass hourglass(prompt());
        const Ref<IHostApplication> host = m_context.store().hostApplication();
        shown = host && host->ShowHelp(kHelpTopic);
    }
    if (!shown) {
        prompt().message(
            QStringLiteral("Insert or Ctrl+A: add a note\rEnter or F2: edit the note's properties\r"
                           "Delete or Ctrl+D: delete the note\rCtrl+F: find\rCtrl+S: save\r"
                           "Ctrl+P: print\rF6: between list and text\rCtrl+B, Ctrl+I, Ctrl+U: "
                           "bold, italic, underline\r"
                           "Ctrl+Shift+D, Ctrl+Shift+T: insert the date, the time\r"
                           "Ctrl+Shift+M: insert date, time and your name\r"
                           "Ctrl+Shift+F: attach a file\rEscape: save and close"),
            QStringLiteral("Keys of the Notes Window"), PromptIcon::Information);
    }
}

void frmMain::changeIndent(int twips) {
    m_rtxMain->setSelIndent(m_rtxMain->SelIndent().value_or(0) + twips);
}

void frmMain::align(TextAlignment alignment) {
    m_rtxMain->setSelAlignment(alignment);
}

void frmMain::showType(int listIndex) {
    if (ITool* type = m_atbMain->findTool(QStringLiteral("tooListType"))) {
        type->setListIndex(listIndex);
    }
    BuildNotesList();
}

void frmMain::toggleMine(const ITool& tool) {
    if (!mayLeaveText()) {
        return;
    }
    const bool mine = !tool.isChecked();
    setToolChecked(tool.id(), mine);
    settings().setBoolean(QStringLiteral("ShowUserNotes"), mine);
    BuildNotesList();
}

void frmMain::toggleOption(const ITool& tool) {
    const auto option = std::find_if(options().begin(), options().end(),
                                     [&](const OptionTool& each) { return each.id == tool.id(); });
    const bool on = !tool.isChecked();
    setToolChecked(option->id, on);
    settings().setBoolean(option->settingKey, on);
    m_context.addIn().setSwitch(option->which, on);
    switch (option->which) {
    case NotesSwitch::CheckForReminders:
        m_context.addIn().setReminderTimerEnabled(on);
        break;
    case NotesSwitch::CheckAutoNotes:
        m_context.addIn().setAutoNoteTimerEnabled(on);
        break;
    case NotesSwitch::HighlightNotesRow:
    case NotesSwitch::FlagNotesRow:
        m_context.addIn().repaintGrids();
        break;
    case NotesSwitch::ShowPopupWindow:
        break;
    }
}

void frmMain::UpdateToolStates() {
    const bool shown = bool(m_note);
    const bool whole = shown && !isNoteCut();
    for (const QString& key : {kFormattingBand, kInsertBand}) {
        if (IBand* band = m_atbMain->findBand(key)) {
            band->setEnabled(whole);
        }
    }
    if (IBand* band = m_atbMain->findBand(kStandardBand)) {
        band->setEnabled(shown);
    }
    constexpr int toolSave = 20003;
    constexpr int toolDone = 20201;
    for (const int id : {20101, 20200, 20202}) {
        setToolEnabled(id, shown);
    }
    for (const int id : {20008, 41000, 41001}) {
        setToolEnabled(id, whole);
    }
    m_textTools->update();
    setToolEnabled(toolSave, shown && m_dirty);
    setToolEnabled(toolDone, shown && !m_note->Done());
    if (m_context.isReadOnly()) {
        for (const QString& key : {kFormattingBand, kInsertBand}) {
            if (IBand* band = m_atbMain->findBand(key)) {
                band->setEnabled(false);
            }
        }
        // Add, delete, properties, done, reminders; font, undo, redo, paste and clear.
        for (const int id :
             {20100, 20101, 20200, 20201, 20202, 30000, 40000, 40001, 40011, 40012}) {
            setToolEnabled(id, false);
        }
    }
    setToolChecked(kFirstShowTool + 3, settings().boolean(QStringLiteral("ShowUserNotes")));
    for (const OptionTool& option : options()) {
        setToolChecked(option.id, settings().boolean(option.settingKey));
    }
}

void frmMain::setToolEnabled(int id, bool enabled) {
    forEachTool(*m_atbMain, id, [enabled](ITool& tool) { tool.setEnabled(enabled); });
}

void frmMain::setToolChecked(int id, bool checked) {
    forEachTool(*m_atbMain, id, [checked](ITool& tool) { tool.setChecked(checked); });
}

bool frmMain::isToolChecked(const QString& key) const {
    const ITool* tool = m_atbMain->findTool(key);
    return tool != nullptr && tool->isChecked();
}

} // namespace yrw
