#include "notes_window/NoteTools.h"

#include "notes_window/EachTool.h"
#include "notes_window/EditedNote.h"
#include "notes_window/OptionTools.h"
#include "notes_window/WindowContext.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"

namespace yrw {

namespace {

const QString kFormattingBand = QStringLiteral("bndFormatting");
const QString kStandardBand = QStringLiteral("bndStandard");
const QString kInsertBand = QStringLiteral("bndInsert");
const QString kListType = QStringLiteral("tooListType");

} // namespace

NoteTools::NoteTools(Toolbar& toolbar, RichTextBox& text, const EditedNote& edited,
                     WindowContext& context)
    : m_toolbar(toolbar), m_text(text), m_edited(edited), m_context(context),
      m_textTools(text, toolbar, nullptr) {}

void NoteTools::update() {
    const bool shown = bool(m_edited.note());
    const bool whole = shown && !m_edited.isCut();
    enableBands(whole, shown);
    for (const NoteTool tool : {NoteTool::Delete, NoteTool::Edit, NoteTool::CancelReminders}) {
        setEnabled(tool, shown);
    }
    for (const NoteTool tool : {NoteTool::Print, NoteTool::PrintPreview, NoteTool::ExportPdf}) {
        setEnabled(tool, whole);
    }
    m_textTools.update();
    followText();
    setEnabled(NoteTool::Done, shown && !m_edited.note()->Done());
    if (m_context.isReadOnly()) {
        turnWritingOff();
    }
    const NotesSettings settings = m_context.settings();
    setChecked(NoteTool::ShowMyNotes, settings.get(setting::kShowUserNotes));
    for (const OptionTool& option : optionTools()) {
        setChecked(option.tool, settings.get(*option.setting));
    }
}

void NoteTools::enableBands(bool whole, bool shown) {
    for (const QString& key : {kFormattingBand, kInsertBand}) {
        if (IBand* band = m_toolbar.findBand(key)) {
            band->setEnabled(whole);
        }
    }
    if (IBand* band = m_toolbar.findBand(kStandardBand)) {
        band->setEnabled(shown);
    }
}

void NoteTools::turnWritingOff() {
    enableBands(false, bool(m_edited.note()));
    for (const NoteTool tool : {NoteTool::Add, NoteTool::Delete, NoteTool::Edit, NoteTool::Done,
                                NoteTool::CancelReminders, NoteTool::ChooseFont, NoteTool::Undo,
                                NoteTool::Redo, NoteTool::Paste, NoteTool::Clear}) {
        setEnabled(tool, false);
    }
}

void NoteTools::followText() {
    setEnabled(NoteTool::Save, m_edited.isChanged());
}

void NoteTools::followSelection() {
    const richtext::SelectionFormat& selection = m_text.selection();
    const std::optional<TextAlignment> alignment = selection.alignment();
    setChecked(NoteTool::Bold, selection.bold().value_or(false));
    setChecked(NoteTool::Italic, selection.italic().value_or(false));
    setChecked(NoteTool::Underline, selection.underline().value_or(false));
    setChecked(NoteTool::Left, alignment == TextAlignment::Left);
    setChecked(NoteTool::Right, alignment == TextAlignment::Right);
    setChecked(NoteTool::Center, alignment == TextAlignment::Center);
    setChecked(NoteTool::Bullets, selection.bullet().value_or(false));
    if (ITool* font = m_toolbar.findTool(QStringLiteral("tooFont"))) {
        font->setText(selection.fontName().value_or(QString()));
    }
}

void NoteTools::setEnabled(NoteTool tool, bool enabled) {
    forEachTool(m_toolbar, int(tool), [enabled](ITool& each) { each.setEnabled(enabled); });
}

void NoteTools::setChecked(NoteTool tool, bool checked) {
    forEachTool(m_toolbar, int(tool), [checked](ITool& each) { each.setChecked(checked); });
}

ShowType NoteTools::showType() const {
    const ITool* type = m_toolbar.findTool(kListType);
    const int index = type != nullptr ? type->listIndex() : 0;
    return index == 0 ? ShowType::Active : ShowType(index);
}

void NoteTools::setShowType(ShowType type) {
    if (ITool* tool = m_toolbar.findTool(kListType)) {
        tool->setListIndex(int(type));
    }
}

void NoteTools::tickShowType(ShowType type) {
    setChecked(NoteTool::ShowActive, type == ShowType::Active);
    setChecked(NoteTool::ShowDone, type == ShowType::Done);
    setChecked(NoteTool::ShowAll, type == ShowType::All);
}

bool NoteTools::showsMineOnly() const {
    const ITool* tool = m_toolbar.findTool(QStringLiteral("tooShowMyNotes"));
    return tool != nullptr && tool->isChecked();
}

} // namespace yrw
