// The controls of the window and their events.
#include "notes_window/frmMain.h"

#include "framework/ErrorGuards.h"
#include "notes_window/FindBar.h"
#include "notes_window/NoteFinder.h"
#include "notes_window/NotesList.h"
#include "notes_window/SplitBar.h"
#include "notes_window/TextTools.h"
#include "platform/controls/StatusBar.h"
#include "platform/forms/ScreenMetrics.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"

#include <QContextMenuEvent>
#include <QLabel>
#include <QMouseEvent>

namespace yrw {

namespace {

constexpr QSize kDesignedSize(860, 620);
constexpr int kDraftMs = 1800; ///< with the writing less than the two seconds promised

template <class Control>
Control* named(Control* control, const char* name, const char* accessibleName) {
    control->setObjectName(QLatin1String(name));
    control->setAccessibleName(QLatin1String(accessibleName));
    return control;
}

} // namespace

void frmMain::createControls() {
    resize(kDesignedSize.boundedTo(roomFor(*this)));
    setSizeGripEnabled(false);
    m_atbMain = named(new Toolbar(this), "atbMain", "Notes toolbar");
    m_findBar = named(new FindBar(this), "picFind", "Find");
    m_findBar->hide();
    m_finder = new NoteFinder(m_context.store(), this);
    m_lsvMain = named(new ListView(this), "lsvMain", "Notes list");
    m_list = std::make_unique<NotesList>(*m_lsvMain, m_context, m_names);
    m_picHSplit = named(new SplitBar(this), "picHSplit", "Height of list and text");
    m_rtxMain = named(new RichTextBox(this), "rtxMain", "Note text");
    m_rtxMain->setTabChangesFocus(false);
    m_rtxMain->setEnabled(false);
    m_textTools = new TextTools(*m_rtxMain, *m_atbMain, this);
    named(m_stbMain, "stbMain", "Status");
    m_lblReminders = named(new QLabel, "lblReminders", "Waiting reminders");
    m_lblReminders->hide();
    m_stbMain->addPermanentWidget(m_lblReminders);
    m_draftTimer.setSingleShot(true);
    m_draftTimer.setInterval(kDraftMs);
}

void frmMain::connectEvents() {
    connect(m_lsvMain, &ListView::columnClick, this, &frmMain::lsvMain_ColumnClick);
    connect(m_lsvMain, &ListView::itemClick, this, &frmMain::lsvMain_ItemClick);
    connect(m_lsvMain, &ListView::sourceFailed, this, &frmMain::lsvMain_SourceFailed);
    connect(m_lsvMain, &ListView::itemDblClick, this, [this] { lsvMain_DblClick(); });
    connect(m_lsvMain, &ListView::rightClick, this, &frmMain::lsvMain_MouseUp);
    connect(m_picHSplit, &SplitBar::mouseDown, this, &frmMain::picHSplit_MouseDown);
    connect(m_picHSplit, &SplitBar::mouseMove, this, &frmMain::picHSplit_MouseMove);
    connect(m_picHSplit, &SplitBar::mouseUp, this, &frmMain::picHSplit_MouseUp);
    connect(m_picHSplit, &SplitBar::dblClick, this, &frmMain::picHSplit_DblClick);
    connect(m_picHSplit, &SplitBar::stepped, this,
            [this](int pixels) { moveSplit(m_picHSplit->y() + pixels); });
    connect(m_rtxMain, &RichTextBox::contentChanged, this, &frmMain::rtxMain_Change);
    connect(m_rtxMain, &RichTextBox::selectionStateChanged, this, &frmMain::rtxMain_SelChange);
    connect(m_findBar, &FindBar::textChanged, this, [this] { applyFind(); });
    connect(m_finder, &NoteFinder::progressed, this, [this] { narrowList(); });
    connect(m_finder, &NoteFinder::indexed, m_findBar, &FindBar::showIndexed);
    connect(m_findBar, &FindBar::closeRequested, this, [this] { closeFind(); });
    connect(&m_draftTimer, &QTimer::timeout, this, [this] { writeDraft(); });
    connect(&m_waitingTimer, &QTimer::timeout, this, [this] { countWaitingReminders(); });
}

void frmMain::connectToolbar() {
    m_connections.push_back(m_atbMain->Click.connect([this](ITool& tool) { atbMain_Click(tool); }));
    m_connections.push_back(
        m_atbMain->ComboSelChange.connect([this](ITool& tool) { atbMain_ComboSelChange(tool); }));
    m_connections.push_back(
        m_atbMain->ComboDrop.connect([this](ITool& tool) { atbMain_ComboDrop(tool); }));
    m_connections.push_back(m_atbMain->BandMove.connect([this](IBand&) { atbMain_BandMove(); }));
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    // A form sees every event of the program, also while it is being made.
    if (m_rtxMain == nullptr) {
        return Form::eventFilter(watched, event);
    }
    if (watched == m_rtxMain->viewport() && event->type() == QEvent::MouseButtonPress &&
        static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) {
        rtxMain_MouseDown(static_cast<QMouseEvent*>(event)->position().toPoint());
        return true;
    }
    if ((watched == m_rtxMain || watched == m_rtxMain->viewport()) &&
        event->type() == QEvent::ContextMenu) {
        // The right button has opened the menu already; what comes here comes from the keyboard.
        if (static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Keyboard) {
            rtxMain_MouseDown(m_rtxMain->cursorRect().center());
        }
        return true;
    }
    return Form::eventFilter(watched, event);
}

} // namespace yrw
