#include "notes_window/frmMain.h"

#include "notes_window/AppendedText.h"
#include "notes_window/AttachmentInsertion.h"
#include "notes_window/EditedNote.h"
#include "notes_window/FindBar.h"
#include "notes_window/KeysHelp.h"
#include "notes_window/LeftDrafts.h"
#include "notes_window/ListContents.h"
#include "notes_window/ListFind.h"
#include "notes_window/MainControls.h"
#include "notes_window/NoteChanges.h"
#include "notes_window/NoteCommands.h"
#include "notes_window/NoteDrafts.h"
#include "notes_window/NotePaper.h"
#include "notes_window/NoteTexts.h"
#include "notes_window/NoteTools.h"
#include "notes_window/OwnerText.h"
#include "notes_window/SplitBar.h"
#include "notes_window/TextCommands.h"
#include "notes_window/TextMenu.h"
#include "notes_window/TextOptions.h"
#include "notes_window/ToolbarFile.h"
#include "notes_window/UserNames.h"
#include "notes_window/WaitingReminders.h"
#include "notes_window/WindowContext.h"
#include "notes_window/WindowLayout.h"
#include "platform/clock/Clock.h"
#include "platform/toolbar/Toolbar.h"

#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QMouseEvent>

#include <vector>

namespace yrw {

namespace {} // namespace

/// What the window is made of; each part knows only those above it.
struct frmMain::Parts {
    Parts(frmMain& window, NotesContext& notes)
        : controls(window), context(window, controls.stbMain, notes), names(notes),
          drafts(NoteDrafts::userFolder(), notes.databaseFolder()),
          layout(window, controls, context), waiting(controls.lblReminders, notes),
          list(controls.lsvMain, context, names),
          edited(controls.rtxMain, list, drafts, names, context),
          leftDrafts(drafts, edited, list, context),
          find(controls.picFind, list, edited, controls.rtxMain, notes),
          tools(controls.atbMain, controls.rtxMain, edited, context),
          contents(list, edited, find, tools, names, waiting, context),
          text(controls.rtxMain, names, context), textOptions(controls.rtxMain, tools, context),
          menu(controls.rtxMain, controls.atbMain, textOptions, context),
          attachments(controls.rtxMain, edited, context),
          paper(controls.rtxMain, edited, list, names, context),
          changes(list, edited, drafts, controls.rtxMain, waiting, context),
          commands({changes, contents, find, edited, text, menu, textOptions, attachments, paper,
                    tools, controls.atbMain, context}) {}

    MainControls controls;
    WindowContext context;
    UserNames names;
    NoteDrafts drafts;
    WindowLayout layout;
    WaitingReminders waiting;
    NotesList list;
    EditedNote edited;
    LeftDrafts leftDrafts;
    ListFind find;
    NoteTools tools;
    ListContents contents;
    TextCommands text;
    TextOptions textOptions;
    TextMenu menu;
    AttachmentInsertion attachments;
    NotePaper paper;
    NoteChanges changes;
    NoteCommands commands;
    std::vector<Connection> connections;
};

frmMain::frmMain(NotesContext& notes) : Form(QStringLiteral("frmMain")) {
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                   Qt::WindowSystemMenuHint | Qt::WindowMaximizeButtonHint |
                   Qt::WindowCloseButtonHint);
    m_parts = std::make_unique<Parts>(*this, notes);
    connectControls();
    connectParts();
}

frmMain::~frmMain() = default;

// The table of events.

void frmMain::connectControls() {
    const ListView& list = m_parts->controls.lsvMain;
    connect(&list, &ListView::columnClick, this, &frmMain::lsvMain_ColumnClick);
    connect(&list, &ListView::itemClick, this, &frmMain::lsvMain_ItemClick);
    connect(&list, &ListView::sourceFailed, this, &frmMain::lsvMain_SourceFailed);
    connect(&list, &ListView::itemDblClick, this, [this] { lsvMain_DblClick(); });
    connect(&list, &ListView::rightClick, this, &frmMain::lsvMain_MouseUp);
    const SplitBar& split = m_parts->controls.picHSplit;
    connect(&split, &SplitBar::mouseDown, this, &frmMain::picHSplit_MouseDown);
    connect(&split, &SplitBar::mouseMove, this, &frmMain::picHSplit_MouseMove);
    connect(&split, &SplitBar::mouseUp, this, &frmMain::picHSplit_MouseUp);
    connect(&split, &SplitBar::dblClick, this, &frmMain::picHSplit_DblClick);
    connect(&split, &SplitBar::stepped, this,
            [this, &split](int pixels) { m_parts->layout.moveSplit(split.y() + pixels); });
    const RichTextBox& text = m_parts->controls.rtxMain;
    connect(&text, &RichTextBox::contentChanged, this, &frmMain::rtxMain_Change);
    connect(&text, &RichTextBox::selectionStateChanged, this, &frmMain::rtxMain_SelChange);
    connect(&text, &RichTextBox::objectActivated, this, &frmMain::rtxMain_ObjectActivated);
}

void frmMain::connectParts() {
    EditedNote& edited = m_parts->edited;
    std::vector<Connection>& connections = m_parts->connections;
    connections.push_back(edited.stateChanged.connect([this] { m_parts->tools.followText(); }));
    connections.push_back(edited.noteChanged.connect([this] { noteChanged(); }));
    connections.push_back(edited.settled.connect([this] {
        m_parts->leftDrafts.offer();
        m_parts->find.markHits();
    }));
    connections.push_back(m_parts->find.toggled.connect([this] { m_parts->layout.arrange(); }));
}

void frmMain::connectToolbar() {
    Toolbar& toolbar = m_parts->controls.atbMain;
    std::vector<Connection>& connections = m_parts->connections;
    connections.push_back(toolbar.Click.connect([this](ITool& tool) { atbMain_Click(tool); }));
    connections.push_back(
        toolbar.ComboSelChange.connect([this](ITool& tool) { atbMain_ComboSelChange(tool); }));
    connections.push_back(
        toolbar.ComboDrop.connect([this](ITool& tool) { atbMain_ComboDrop(tool); }));
    connections.push_back(toolbar.BandMove.connect([this](IBand&) { atbMain_BandMove(); }));
    connections.push_back(
        toolbar.BandOpen.connect([this](IBand& band) { atbMain_BandOpen(band); }));
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    // A form sees every event of the program, also while it is being made.
    if (!m_parts) {
        return Form::eventFilter(watched, event);
    }
    const RichTextBox& text = m_parts->controls.rtxMain;
    if (watched == text.viewport() && event->type() == QEvent::MouseButtonPress &&
        static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) {
        rtxMain_MouseDown(static_cast<QMouseEvent*>(event)->position().toPoint());
        return true;
    }
    if ((watched == &text || watched == text.viewport()) && event->type() == QEvent::ContextMenu) {
        // The right button has opened the menu already; what comes here comes from the keyboard.
        if (static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Keyboard) {
            rtxMain_MouseDown(text.cursorRect().center());
        }
        return true;
    }
    return Form::eventFilter(watched, event);
}

// The window's life.

void frmMain::Initialise(const Ref<INotesParent>& Parent, const Ref<IRecord>& Owner,
                         qint64 NoteID) {
    WindowContext& context = m_parts->context;
    context.report(QStringLiteral("Initialise"),
                   QStringLiteral("Could not Initialise for Notes Form"), [&] {
                       context.setParent(Parent);
                       m_parts->list.setOwner(Owner);
                       load();
                       fillWindow(NoteID);
                   });
    context.prompt().setMousePointer(MousePointer::Default);
}

void frmMain::fillWindow(qint64 noteID) {
    ApplyDefaultFont();
    m_parts->contents.build(false);
    ListView& list = m_parts->controls.lsvMain;
    const QString wanted = noteID == 0 ? firstItem() : noteItemKey(noteID);
    if (list.items().rowOf(wanted) >= 0) {
        list.selectKey(wanted);
    }
    if (!list.selectedKey().isEmpty()) {
        ShowNote(list.selectedKey());
    }
    m_parts->contents.setTitle(QStringLiteral("YRW Notes"));
    if (m_parts->list.owner()) {
        SetOwnerCaption();
    } else {
        m_parts->context.setCaption(QStringLiteral("YRW System Notes"));
    }
}

/// The first note of the list; but text that a crash left behind comes first.
QString frmMain::firstItem() const {
    const ListView& list = m_parts->controls.lsvMain;
    QString first = list.items().keyAt(0);
    for (const qint64 id : m_parts->drafts.noteIDs()) {
        if (list.items().rowOf(noteItemKey(id)) >= 0) {
            first = noteItemKey(id);
        }
    }
    return first;
}

void frmMain::Form_Load() {
    Toolbar& toolbar = m_parts->controls.atbMain;
    loadToolbar(toolbar, m_parts->context);
    connectToolbar();
    toolbar.setArrangement(m_parts->context.settings().get(setting::kToolbarBands));
    m_parts->textOptions.apply();
    m_parts->layout.restoreSize();
    m_parts->list.columns().restore();
    UpdateToolStates();
    m_parts->controls.lsvMain.setFocus();
    m_parts->waiting.start();
    m_parts->drafts.removeHalfWritten(m_parts->context.clock().now());
}

void frmMain::showEvent(QShowEvent* event) {
    Form::showEvent(event);
    // Questions about text that was left come over the window, not before it.
    QTimer::singleShot(0, this,
                       [this] { ignoreErrors([this] { m_parts->leftDrafts.offerAll(); }); });
}

void frmMain::Form_Resize() {
    if (windowStateCode() == WindowStateCode::Minimised) {
        return;
    }
    ShowStatus(QStringLiteral("Resizing..."));
    m_parts->layout.windowResized();
    ShowStatus(QStringLiteral("Done"));
}

void frmMain::Form_QueryUnload(bool& cancel) {
    ignoreErrors([&] { cancel = !m_parts->edited.mayLeave(); });
}

void frmMain::Form_EndSession() {
    m_parts->edited.keepDraft();
}

void frmMain::Form_Unload() {
    ignoreErrors([this] {
        SaveNote();
        m_parts->layout.storeSize();
        m_parts->list.columns().store();
    });
    m_parts->edited.stop();
    m_parts->waiting.stop();
}

// Keys.

void frmMain::Form_KeyDown(FormKey& key) {
    if (key.is(Qt::Key_Escape)) {
        key.consumed = true;
        if (m_parts->find.hasKeyboard()) {
            m_parts->find.close();
        } else if (!m_parts->controls.atbMain.leave()) {
            unload();
        }
    } else if (key.is(Qt::Key_F6)) {
        key.consumed = true;
        swapFocus();
    } else if (m_parts->commands.press(key)) {
        key.consumed = true;
    } else if (m_parts->controls.lsvMain.hasFocus()) {
        lsvMain_KeyDown(key);
    }
}

/// The tabulator belongs to the text: this is the way out of it.
void frmMain::swapFocus() {
    ListView& list = m_parts->controls.lsvMain;
    QWidget& other = list.hasFocus() ? static_cast<QWidget&>(m_parts->controls.rtxMain) : list;
    other.activateWindow(); // a floating band may have the keyboard
    other.setFocus();
}

void frmMain::Form_KeyUp(FormKey& key) {
    if (key.is(Qt::Key_F1)) {
        key.consumed = true;
        ignoreErrors([this] { showHelp(m_parts->context); });
    }
}

// The toolbar.

void frmMain::atbMain_Click(ITool& tool) {
    m_parts->commands.run(tool);
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

void frmMain::atbMain_BandMove() {
    m_parts->context.settings().set(setting::kToolbarBands,
                                    m_parts->controls.atbMain.arrangement());
    m_parts->layout.arrange();
}

void frmMain::atbMain_BandOpen(IBand& band) {
    m_parts->menu.prepare(band);
}

// The list.

void frmMain::lsvMain_ColumnClick(int column) {
    m_parts->list.sortBy(column);
}

void frmMain::lsvMain_ItemClick(const QString& item) {
    ShowNote(item);
}

void frmMain::lsvMain_SourceFailed() {
    m_parts->context.report(QStringLiteral("BuildNotesList"),
                            QStringLiteral("Could not Build the Notes List"),
                            [this] { m_parts->list.endReading(); });
}

void frmMain::lsvMain_DblClick() {
    m_parts->changes.EditNote();
}

void frmMain::lsvMain_KeyDown(FormKey& key) {
    if (key.is(Qt::Key_Delete)) {
        key.consumed = true;
        m_parts->controls.atbMain.activate(QStringLiteral("tooDelete"));
    } else if (key.is(Qt::Key_Return) || key.is(Qt::Key_Enter)) {
        key.consumed = true;
        m_parts->controls.atbMain.activate(QStringLiteral("tooEdit"));
    }
}

void frmMain::lsvMain_MouseUp(const QPoint& globalPosition) {
    m_parts->controls.atbMain.popupAt(QStringLiteral("bndNotePopup"), globalPosition);
}

// The splitter.

void frmMain::picHSplit_MouseDown() {
    SplitBar& split = m_parts->controls.picHSplit;
    split.setDragged(true);
    split.raise();
}

void frmMain::picHSplit_MouseMove(int top) {
    m_parts->context.prompt().setMousePointer(MousePointer::SizeNS);
    if (m_parts->layout.allowsSplitAt(top)) {
        SplitBar& split = m_parts->controls.picHSplit;
        split.move(split.x(), top);
    }
}

void frmMain::picHSplit_MouseUp() {
    SplitBar& split = m_parts->controls.picHSplit;
    split.setDragged(false);
    m_parts->context.prompt().setMousePointer(MousePointer::Default);
    m_parts->layout.moveSplit(split.y());
}

void frmMain::picHSplit_DblClick() {
    m_parts->layout.centreSplit();
}

// The text.

void frmMain::rtxMain_Change() {
    m_parts->edited.textChanged();
}

void frmMain::rtxMain_SelChange() {
    if (!m_parts->edited.isLoading()) {
        m_parts->tools.followSelection();
    }
}

void frmMain::rtxMain_MouseDown(const QPoint& at) {
    if (m_parts->controls.rtxMain.isEnabled()) { // the form sees the button also where it is off
        m_parts->menu.popUp(at);
    }
}

void frmMain::rtxMain_ObjectActivated(int index) {
    m_parts->menu.openObject(index);
}

void frmMain::noteChanged() {
    UpdateToolStates();
    if (m_parts->edited.note()) {
        rtxMain_SelChange();
    }
}

// Named operations.

void frmMain::BuildNotesList() {
    m_parts->contents.build();
}

void frmMain::ShowNote(const QString& item) {
    m_parts->edited.show(noteIdOf(item));
}

void frmMain::ShowStatus(const QString& text) {
    m_parts->context.showStatus(text);
}

bool frmMain::SetUserColumn() {
    return m_parts->contents.setUserColumn();
}

void frmMain::SetOwnerCaption() {
    m_parts->context.setCaption(QStringLiteral("YRW Notes - (") +
                                ownerText(*m_parts->list.owner(), m_parts->context.notes()) + u')');
}

bool frmMain::SaveNote() {
    return m_parts->edited.save();
}

void frmMain::AppendText(const QString& text, bool bold, bool newParagraph) {
    appendText(m_parts->controls.rtxMain, text, bold, newParagraph);
}

void frmMain::InsertStamp() {
    m_parts->text.insertStamp();
}

void frmMain::ApplyDefaultFont() {
    m_parts->text.applyDefaultFont();
}

void frmMain::ChooseFont() {
    m_parts->text.chooseFont();
}

void frmMain::SetDefaultFont() {
    m_parts->text.setDefaultFont();
}

void frmMain::UpdateToolStates() {
    m_parts->tools.update();
}

} // namespace yrw
