#include "notes_window/NoteCommands.h"

#include "notes_window/AttachmentInsertion.h"
#include "notes_window/EditedNote.h"
#include "notes_window/ListContents.h"
#include "notes_window/ListFind.h"
#include "notes_window/NoteChanges.h"
#include "notes_window/NotePaper.h"
#include "notes_window/NoteTools.h"
#include "notes_window/OptionTools.h"
#include "notes_window/TextCommands.h"
#include "notes_window/TextMenu.h"
#include "notes_window/TextOptions.h"
#include "notes_window/WindowContext.h"
#include "platform/forms/Form.h"
#include "platform/toolbar/Toolbar.h"

#include <algorithm>
#include <vector>

namespace yrw {

namespace {

using On = CommandTargets;

/// One row of the dispatcher: a tool, the procedure's name in error reports, what it does.
struct Command {
    NoteTool tool;
    const char16_t* procedure;
    void (*run)(const CommandTargets& on, ITool& tool);
};

/// Keys that do what a click on a tool does.
struct Shortcut {
    int key;
    Qt::KeyboardModifiers shift;
    const char16_t* toolKey;
};

// What the rows of toggles do.

void toggleOption(const CommandTargets& on, ITool& tool) {
    const NoteTool option{tool.id()};
    const bool ticked = !tool.isChecked();
    on.tools.setChecked(option, ticked);
    switchOption(option, ticked, on.context);
}

void replaceWord(const CommandTargets& on, ITool& tool) {
    on.menu.replaceWord(tool);
}

/// What is done with whole notes.
std::vector<Command> noteCommands() {
    return {
        {NoteTool::Save, u"SaveNote", [](const On& on, ITool&) { on.edited.save(); }},
        {NoteTool::Print, u"PrintNote", [](const On& on, ITool&) { on.paper.print(); }},
        {NoteTool::Add, u"AddNote", [](const On& on, ITool&) { on.notes.add(); }},
        {NoteTool::Delete, u"DeleteNote", [](const On& on, ITool&) { on.notes.deleteSelected(); }},
        {NoteTool::Edit, u"EditNote", [](const On& on, ITool&) { on.notes.EditNote(); }},
        {NoteTool::Done, u"DoneNote", [](const On& on, ITool&) { on.notes.finishSelected(); }},
        {NoteTool::CancelReminders, u"CancelReminders",
         [](const On& on, ITool&) { on.notes.cancelSelectedReminders(); }},
        {NoteTool::Find, u"Find", [](const On& on, ITool&) { on.find.open(); }},
        {NoteTool::PrintPreview, u"PreviewNote", [](const On& on, ITool&) { on.paper.preview(); }},
        {NoteTool::ExportPdf, u"ExportPdf", [](const On& on, ITool&) { on.paper.exportPdf(); }},
    };
}

/// How the text looks.
std::vector<Command> formatCommands() {
    return {
        {NoteTool::Bold, u"Bold",
         [](const On& on, ITool& tool) { on.text.text().selection().setBold(!tool.isChecked()); }},
        {NoteTool::Italic, u"Italic",
         [](const On& on, ITool& tool) {
             on.text.text().selection().setItalic(!tool.isChecked());
         }},
        {NoteTool::Underline, u"Underline",
         [](const On& on, ITool& tool) {
             on.text.text().selection().setUnderline(!tool.isChecked());
         }},
        {NoteTool::Outdent, u"Indent", [](const On& on, ITool&) { on.text.indentLess(); }},
        {NoteTool::Indent, u"Indent", [](const On& on, ITool&) { on.text.indentMore(); }},
        {NoteTool::Left, u"Align",
         [](const On& on, ITool&) {
             on.text.text().selection().setAlignment(TextAlignment::Left);
         }},
        {NoteTool::Center, u"Align",
         [](const On& on, ITool&) {
             on.text.text().selection().setAlignment(TextAlignment::Center);
         }},
        {NoteTool::Right, u"Align",
         [](const On& on, ITool&) {
             on.text.text().selection().setAlignment(TextAlignment::Right);
         }},
        {NoteTool::Bullets, u"Bullets",
         [](const On& on, ITool& tool) {
             on.text.text().selection().setBullet(!tool.isChecked());
         }},
        {NoteTool::Font, u"Font",
         [](const On& on, ITool& tool) { on.text.text().selection().setFontName(tool.text()); }},
        {NoteTool::TextColour, u"TextColour", [](const On& on, ITool&) { on.text.chooseColour(); }},
        {NoteTool::ChooseFont, u"ChooseFont", [](const On& on, ITool&) { on.text.chooseFont(); }},
        {NoteTool::SetDefaultFont, u"SetDefaultFont",
         [](const On& on, ITool&) { on.text.setDefaultFont(); }},
        {NoteTool::PasteKeepsLook, u"PasteKeepsLook",
         [](const On& on, ITool& tool) { on.textOptions.setPasteKeepsLook(!tool.isChecked()); }},
        {NoteTool::CheckSpelling, u"CheckSpelling",
         [](const On& on, ITool& tool) { on.textOptions.setChecksSpelling(!tool.isChecked()); }},
    };
}

/// What comes into the text and goes out of it.
std::vector<Command> textCommands() {
    return {
        {NoteTool::InsertDate, u"InsertDate", [](const On& on, ITool&) { on.text.insertDate(); }},
        {NoteTool::InsertTime, u"InsertTime", [](const On& on, ITool&) { on.text.insertTime(); }},
        {NoteTool::InsertFile, u"InsertFile",
         [](const On& on, ITool&) { on.attachments.openDialog(ObjectDisplay::Content); }},
        {NoteTool::InsertIcon, u"InsertFile",
         [](const On& on, ITool&) { on.attachments.openDialog(ObjectDisplay::Icon); }},
        {NoteTool::InsertStamp, u"InsertStamp",
         [](const On& on, ITool&) { on.text.insertStamp(); }},
        {NoteTool::Undo, u"Undo", [](const On& on, ITool&) { on.text.text().undo(); }},
        {NoteTool::Redo, u"Redo", [](const On& on, ITool&) { on.text.text().redo(); }},
        {NoteTool::Copy, u"Copy", [](const On& on, ITool&) { on.text.text().copy(); }},
        {NoteTool::Paste, u"Paste", [](const On& on, ITool&) { on.text.text().paste(); }},
        {NoteTool::Clear, u"Clear", [](const On& on, ITool&) { on.text.removeSelected(); }},
        {NoteTool::OpenAttachment, u"OpenAttachment",
         [](const On& on, ITool&) { on.menu.openAttachment(); }},
        {NoteTool::SaveAttachment, u"SaveAttachment",
         [](const On& on, ITool&) { on.menu.saveAttachment(); }},
        {NoteTool::FirstWord, u"ReplaceWord", replaceWord},
        {NoteTool::SecondWord, u"ReplaceWord", replaceWord},
        {NoteTool::ThirdWord, u"ReplaceWord", replaceWord},
        {NoteTool::FourthWord, u"ReplaceWord", replaceWord},
        {NoteTool::FifthWord, u"ReplaceWord", replaceWord},
        {NoteTool::AcceptWord, u"AcceptWord", [](const On& on, ITool&) { on.menu.acceptWord(); }},
    };
}

/// What the list shows, and the options.
std::vector<Command> listCommands() {
    return {
        {NoteTool::ShowActive, u"ShowType",
         [](const On& on, ITool&) { on.contents.show(ShowType::Active); }},
        {NoteTool::ShowDone, u"ShowType",
         [](const On& on, ITool&) { on.contents.show(ShowType::Done); }},
        {NoteTool::ShowAll, u"ShowType",
         [](const On& on, ITool&) { on.contents.show(ShowType::All); }},
        {NoteTool::ListType, u"ShowType",
         [](const On& on, ITool& tool) { on.contents.show(ShowType(tool.listIndex())); }},
        {NoteTool::ShowMyNotes, u"ShowMyNotes",
         [](const On& on, ITool& tool) { on.contents.showMineOnly(!tool.isChecked()); }},
        {NoteTool::CheckReminders, u"CheckReminders", toggleOption},
        {NoteTool::CheckAutoNotes, u"CheckAutoNotes", toggleOption},
        {NoteTool::ShowAutoPopup, u"ShowAutoPopup", toggleOption},
        {NoteTool::HighlightNotesRow, u"HighlightNotesRow", toggleOption},
        {NoteTool::FlagNotesRow, u"FlagNotesRow", toggleOption},
        {NoteTool::ForgetPopupSize, u"ForgetPopupSize",
         [](const On& on, ITool&) {
             on.context.settings().remove(setting::kPopupHeight);
             on.context.settings().remove(setting::kPopupWidth);
         }},
        {NoteTool::View, u"View",
         [](const On& on, ITool&) { on.toolbar.popup(QStringLiteral("bndNotesShowType")); }},
    };
}

const std::vector<Command>& commands() {
    static const std::vector<Command> table = [] {
        std::vector<Command> all;
        for (const std::vector<Command>& some :
             {noteCommands(), formatCommands(), textCommands(), listCommands()}) {
            all.insert(all.end(), some.begin(), some.end());
        }
        return all;
    }();
    return table;
}

constexpr Qt::KeyboardModifiers kBoth = Qt::ControlModifier | Qt::ShiftModifier;
constexpr Shortcut kShortcuts[] = {
    {Qt::Key_Insert, Qt::NoModifier, u"tooAdd"},
    {Qt::Key_A, Qt::ControlModifier, u"tooAdd"},
    {Qt::Key_D, Qt::ControlModifier, u"tooDelete"},
    {Qt::Key_S, Qt::ControlModifier, u"tooSave"},
    {Qt::Key_P, Qt::ControlModifier, u"tooPrint"},
    {Qt::Key_F, Qt::ControlModifier, u"tooFind"},
    {Qt::Key_B, Qt::ControlModifier, u"tooBold"},
    {Qt::Key_I, Qt::ControlModifier, u"tooItalic"},
    {Qt::Key_U, Qt::ControlModifier, u"tooUnderline"},
    {Qt::Key_F2, Qt::NoModifier, u"tooEdit"},
    {Qt::Key_M, kBoth, u"tooInsertStamp"},
    {Qt::Key_F, kBoth, u"tooInsertIcon"},
    {Qt::Key_D, kBoth, u"tooInsertDate"},
    {Qt::Key_T, kBoth, u"tooInsertTime"},
};

} // namespace

void NoteCommands::run(ITool& tool) {
    const std::vector<Command>& table = commands();
    const auto command = std::find_if(table.begin(), table.end(), [&](const Command& each) {
        return int(each.tool) == tool.id();
    });
    if (command == table.end()) {
        return;
    }
    m_targets.context.report(QString::fromUtf16(command->procedure),
                             QStringLiteral("Could not Run the Command"),
                             [&] { command->run(m_targets, tool); });
    m_targets.context.prompt().setMousePointer(MousePointer::Default);
}

bool NoteCommands::press(const FormKey& key) {
    for (const Shortcut& shortcut : kShortcuts) {
        if (key.is(shortcut.key, shortcut.shift)) {
            m_targets.toolbar.activate(QString::fromUtf16(shortcut.toolKey));
            return true;
        }
    }
    return false;
}

QList<int> NoteCommands::ids() {
    QList<int> ids;
    for (const Command& command : commands()) {
        ids.append(int(command.tool));
    }
    return ids;
}

} // namespace yrw
