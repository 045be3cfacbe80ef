#pragma once

#include "framework/INotesParent.h"
#include "platform/forms/Form.h"
#include "platform/toolbar/api/IToolbar.h"

#include <memory>

namespace yrw {

class NotesContext;

/// The notes window: the notes of one host record (or those kept on none), the text of the selected
/// note in an editor below, and the commands on a toolbar.
///
/// It wires its parts: the list (`NotesList`), the note in the editor (`EditedNote`), the commands
/// (`NoteCommands`) and what those work with.
/// Life: made, `Initialise`d once, shown modally, and released by the add-in after it unloaded.
/// Closing saves the text that was typed.
/// Lifetime: the context outlives the window.
/// Thread: the user-interface thread.
class frmMain final : public Form {
    Q_OBJECT

public:
    explicit frmMain(NotesContext& notes);
    ~frmMain() override;

    /// Loads the window for an owner record (or none) and shows the note with that id, else the
    /// first one. A failure is reported.
    void Initialise(const Ref<INotesParent>& Parent, const Ref<IRecord>& Owner, qint64 NoteID);
    /// Empties and refills the list for the owner and the chosen show type. Typed text is saved
    /// first; the same note stays selected, else the first is. A failure is reported, and the list
    /// keeps what was read before it.
    void BuildNotesList();
    /// Puts the note of a list item into the editor; an empty key empties the editor and turns it
    /// off. Typed text of the note before is saved first. A failure is reported.
    void ShowNote(const QString& item);
    /// Writes into the status bar and paints it at once.
    void ShowStatus(const QString& text);
    /// Adds or removes the "User" column; true when only the user's own notes are shown.
    bool SetUserColumn();
    /// Builds the caption for an owner record.
    void SetOwnerCaption();
    /// Writes the editor's text into the current note when it was changed; false when that failed,
    /// which is reported. The text then stays in the editor and in a draft.
    bool SaveNote();
    /// Appends text after the last paragraph, or as a paragraph of its own.
    void AppendText(const QString& text, bool bold, bool newParagraph);
    void InsertStamp();
    void ApplyDefaultFont();
    void ChooseFont();
    void SetDefaultFont();
    /// Brings the tools in line with the note shown and with the settings.
    void UpdateToolStates();

protected:
    void Form_Load() override;
    void Form_Resize() override;
    void Form_KeyDown(FormKey& key) override;
    void Form_KeyUp(FormKey& key) override;
    void Form_QueryUnload(bool& cancel) override;
    void Form_Unload() override;
    void Form_EndSession() override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Parts;

    // Event handlers.
    void atbMain_Click(ITool& tool);
    void atbMain_ComboSelChange(ITool& tool);
    void atbMain_ComboDrop(ITool& tool);
    void atbMain_BandMove();
    void atbMain_BandOpen(IBand& band);
    void lsvMain_ColumnClick(int column);
    void lsvMain_ItemClick(const QString& item);
    void lsvMain_SourceFailed();
    void lsvMain_DblClick();
    void lsvMain_KeyDown(FormKey& key);
    void lsvMain_MouseUp(const QPoint& globalPosition);
    void picHSplit_MouseDown();
    void picHSplit_MouseMove(int top);
    void picHSplit_MouseUp();
    void picHSplit_DblClick();
    void rtxMain_Change();
    void rtxMain_SelChange();
    void rtxMain_MouseDown(const QPoint& at);
    void rtxMain_ObjectActivated(int index);

    void connectControls();
    void connectParts();
    void connectToolbar();
    void fillWindow(qint64 noteID);
    [[nodiscard]] QString firstItem() const;
    void noteChanged();
    void swapFocus();

    std::unique_ptr<Parts> m_parts; ///< nothing while they are being made
};

} // namespace yrw
