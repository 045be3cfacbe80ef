#pragma once

#include "dialogs/frmNoteProperties.h"
#include "framework/INotesAddIn.h"
#include "framework/Settings.h"
#include "notes_window/NoteDrafts.h"
#include "notes_window/UserNames.h"
#include "notes_window/WindowContext.h"
#include "platform/controls/ListView.h"
#include "platform/forms/Form.h"
#include "platform/richtext/RichTextBox.h"
#include "store/Operations.h"

#include <QPointer>
#include <QTextCursor>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QLabel;
class QPrinter;

namespace yrw {

class FindBar;
class NoteFinder;
class NotesList;
class frmInsertAttachment;
class IBand;
class NoteAttachments;
class SpellChecker;
class SplitBar;
class TextTools;
class Toolbar;

/// The notes window: the notes of one host record (or those kept on none), the text of the selected
/// note in an editor below, and the commands on a toolbar.
///
/// Life: made, `Initialise`d once, shown modally, and released by the add-in after it unloaded.
/// Closing saves the text that was typed.
/// Lifetime: the add-in and the store's context outlive the window.
/// Thread: the user-interface thread.
class frmMain final : public Form {
    Q_OBJECT

public:
    frmMain(INotesAddIn& addIn, StoreContext& context);
    ~frmMain() override;

    /// Loads the window for an owner record (or none) and shows the note with that id, else the
    /// first one. A failure is reported.
    void Initialise(const Ref<INotesAddIn>& Parent, const Ref<IRecord>& Owner, qint64 NoteID);
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
    /// The ids of the tools that do something here; a tool of any other id does nothing.
    [[nodiscard]] static QList<int> commandIDs();

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
    /// Whose text a note keeps that two users have changed.
    enum class TextChoice { Mine, Theirs, Both };
    struct Command;
    struct OptionTool;
    struct Shortcut;

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
    void mfrmInsert_Continue(const QString& Filename, ObjectDisplay DisplayType, bool& Cancel);
    void mfrmProperties_AddNote(Ref<IRecord>& note, const NoteChoices& choices);
    void mfrmProperties_EditNote(Ref<IRecord>& note, const NoteChoices& choices);
    void mfrmProperties_AddReminder(const Ref<IRecord>& note, const QDateTime& due, qint64 userID);

    // Window layout (frmMain.cpp, frmMainControls.cpp).
    void createControls();
    void connectEvents();
    void connectToolbar();
    void loadToolbar();
    void restoreSize();
    void storeSize();
    void arrange();
    [[nodiscard]] int clampedSplit(int top) const;
    [[nodiscard]] int leastTextHeight() const;
    void moveSplit(int top);

    // The list (frmMainList.cpp).
    void fillWindow(qint64 noteID);
    void refillList();
    void prepareRefill();
    void showListType(int listIndex);
    void selectAfterRefill(const QString& before);
    void showNoteOf(const QString& item);
    void putIntoEditor(Note& note);
    void turnEditorOff();
    bool readIntoEditor(const QString& rtf);
    [[nodiscard]] bool isNoteCut() const;
    void emptyEditor();
    void leaveItem(const QString& item);
    void showRow(const Ref<IRecord>& note);
    void showEmptyText();
    void countWaitingReminders();
    [[nodiscard]] QString ownerText();
    void applyFind();
    void narrowList();
    void selectFound();
    void showFindState();
    void markHits();
    void openFind();
    void closeFind();

    // The text (frmMainEditor.cpp, frmMainSaving.cpp).
    void writeText();
    void writeTextInto(Note& note);
    [[nodiscard]] std::function<void(int percent)> savingWatch();
    void settleConflict();
    [[nodiscard]] TextChoice askWhoseText(Note& theirs);
    void appendOther(Note& theirs);
    void setDirty(bool dirty);
    void rememberLoaded(Note& note);
    [[nodiscard]] bool mayLeaveText();
    bool writeDraft();
    void offerDraft(qint64 noteID);
    void takeOver(const NoteDraft& draft);
    void offerDraftsOfDeletedNotes();
    void keepAsNewNote(const NoteDraft& draft);
    [[nodiscard]] bool isDeleted(qint64 noteID) const;
    [[nodiscard]] FontChoice defaultFont() const;
    void chooseColour();
    void changeIndent(int twips);
    void align(TextAlignment alignment);
    [[nodiscard]] bool mayOverwrite();

    // Attachments, spelling and paper (frmMainAttachments.cpp).
    void setUpEditor();
    void openInsertAttachment(ObjectDisplay display);
    bool InsertFile(const QString& Filename, ObjectDisplay DisplayType);
    [[nodiscard]] bool mayBeLarge(const QString& file);
    void openPopupObject();
    void savePopupObject();
    void prepareObjectTools(IBand& band);
    void prepareWordTools(IBand& band);
    void replaceWord(const ITool& tool);
    void acceptWord();
    void applySpelling();
    void toggleSpelling(const ITool& tool);
    void togglePasteKeepsLook(const ITool& tool);
    void paintNote(QPrinter& printer);
    void printNote();
    void previewNote();
    void exportPdf();

    // Commands (NoteCommands.cpp, NoteListCommands.cpp).
    [[nodiscard]] static std::vector<Command> noteCommands();
    [[nodiscard]] static std::vector<Command> textCommands();
    [[nodiscard]] static std::vector<Command> listCommands();
    [[nodiscard]] static const std::vector<Command>& commands();
    [[nodiscard]] static const std::vector<OptionTool>& options();
    [[nodiscard]] static const std::vector<Shortcut>& shortcuts();
    void run(ITool& tool);
    void openProperties(const Ref<IRecord>& note);
    void showAdded(const Ref<IRecord>& note);
    void showChanged(const Ref<Note>& note);
    void deleteSelected();
    void deleteShown(const QString& item);
    void finishSelected();
    void cancelSelectedReminders();
    void showType(int listIndex);
    void toggleMine(const ITool& tool);
    void toggleOption(const ITool& tool);
    void showHelp();
    void setToolEnabled(int id, bool enabled);
    void setToolChecked(int id, bool checked);
    [[nodiscard]] bool isToolChecked(const QString& key) const;

    [[nodiscard]] Services& services() const { return m_context.services(); }
    [[nodiscard]] Prompt& prompt() const { return m_context.prompt(); }
    [[nodiscard]] NotesSettings settings() const { return m_context.settings(); }

    Toolbar* m_atbMain = nullptr;
    FindBar* m_findBar = nullptr;
    NoteFinder* m_finder = nullptr;
    ListView* m_lsvMain = nullptr;
    SplitBar* m_picHSplit = nullptr;
    RichTextBox* m_rtxMain = nullptr;
    TextTools* m_textTools = nullptr;
    QLabel* m_lblReminders = nullptr;
    StatusBar* m_stbMain;

    WindowContext m_context;
    UserNames m_names;
    std::unique_ptr<NotesList> m_list;
    Ref<INotesAddIn> m_parent;
    Ref<IRecord> m_owner; ///< nothing for notes that are kept on no record
    Ref<Note> m_note;     ///< shown in the editor
    QString m_title;
    bool m_textIsStored = false; ///< the editor shows what `m_loadedText` is
    qint64 m_editedNote = 0;     ///< whose text the editor holds; 0 for none
    QVariant m_loadedText;       ///< rich text of the current note as it was last read or written
    bool m_initialising = false;
    bool m_loading = false; ///< changes of the editor are not the user's
    bool m_dirty = false;
    bool m_isShowing = false;          ///< a note is being read into the editor
    std::optional<QString> m_nextItem; ///< the list item to be shown after that
    NoteDrafts m_drafts;
    bool m_draftsOffered = false; ///< the questions about drafts have been asked
    bool m_draftFailed = false;   ///< the last one could not be written
    QTimer m_draftTimer;
    QTimer m_waitingTimer;
    int m_splitTop = 0; ///< top of the splitter in pixels; 0 until it is first placed
    std::unique_ptr<NoteAttachments> m_attachments;
    std::shared_ptr<SpellChecker> m_spellChecker; ///< nothing without a dictionary
    QPointer<frmInsertAttachment> m_mfrmInsert;   ///< while it is open
    QPoint m_popupPoint;                          ///< where the text's menu opens
    int m_popupObject = -1;                       ///< the object that the menu is about
    QTextCursor m_misspelt;                       ///< the word that the menu is about
    qint64 m_overwritable = 0;                    ///< damaged note that the user let be overwritten
    std::vector<Connection> m_connections;
};

} // namespace yrw
