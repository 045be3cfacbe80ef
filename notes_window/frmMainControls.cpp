// The controls of the window and their events.
#include "notes_window/frmMain.h"

#include "framework/ErrorGuards.h"
#include "notes_window/FindBar.h"
#include "notes_window/NoteFinder.h"
#include "notes_window/SplitBar.h"
#include "notes_window/TextTools.h"
#include "platform/controls/StatusBar.h"
#include "platform/forms/ScreenMetrics.h"
#include "platform/forms/Twips.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/ToolIcons.h"
#include "platform/toolbar/Toolbar.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QLabel>
#include <QMouseEvent>
#include <QScopedValueRollback>

#include <algorithm>

namespace yrw {

namespace {

constexpr QSize kDesignedSize(860, 620);
constexpr int kDraftMs = 1800; ///< with the writing less than the two seconds promised
constexpr int kSubjectColumn = 1;
constexpr int kUserPlace = 4;         ///< of the user column, when it is there
constexpr int kMinSubjectWidth = 120; ///< pixels
const QString kColumnWidths = QStringLiteral("ColumnWidths");

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
    m_finder = new NoteFinder(m_context, this);
    m_lsvMain = named(new ListView(this), "lsvMain", "Notes list");
    m_lsvMain->addColumn(QStringLiteral("Date"), QStringLiteral("date"), 1950);
    m_lsvMain->addColumn(QStringLiteral("Subject"), QStringLiteral("subject"), 6600);
    m_lsvMain->addColumn(QStringLiteral("Status"), QStringLiteral("status"), 975);
    m_lsvMain->addColumn(QStringLiteral("Popup?"), QStringLiteral("popup"), 900);
    m_lsvMain->setMark(kSubjectColumn, toolIcon(QStringLiteral("alarm")),
                       QStringLiteral("has reminders"));
    m_lsvMain->setSource([this](const QStringList& keys) { return itemsFor(keys); });
    m_lsvMain->setWorkWatch([this] { return sortingWatch(); });
    m_picHSplit = named(new SplitBar(this), "picHSplit", "Height of list and text");
    m_rtxMain = named(new RichTextBox(this), "rtxMain", "Note text");
    m_rtxMain->setTabChangesFocus(false);
    m_rtxMain->setEnabled(false);
    m_textTools = new TextTools(*m_rtxMain, *m_atbMain, this);
    m_stbMain = named(new StatusBar(this), "stbMain", "Status");
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
    connect(m_lsvMain->header(), &QHeaderView::sectionResized, this,
            [this](int column) { columnResized(column); });
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
    if (watched == m_lsvMain->viewport() && event->type() == QEvent::Resize) {
        fitSubject();
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

QStringList frmMain::storedColumns() const {
    return settings().text(kColumnWidths, QString()).split(QLatin1Char(';'), Qt::SkipEmptyParts);
}

/// Gives the columns from one on the widths that the user gave them.
void frmMain::restoreColumns(int first) {
    const QStringList widths = storedColumns();
    const QScopedValueRollback<bool> fitting(m_fitting, true);
    for (int i = first; i < widths.size() && i < m_lsvMain->columns(); ++i) {
        if (const int pixels = twipsToPixels(widths[i].toInt()); pixels > 0) {
            m_lsvMain->setColumnWidth(i, pixels);
            m_subjectFits = m_subjectFits && i != kSubjectColumn;
        }
    }
}

void frmMain::storeColumns() {
    // A subject column that takes what is left has no width of its own.
    QStringList widths;
    for (int i = 0; i < m_lsvMain->columns(); ++i) {
        const bool fits = i == kSubjectColumn && m_subjectFits;
        widths.append(QString::number(fits ? 0 : pixelsToTwips(m_lsvMain->columnWidth(i))));
    }
    // The last column is not there while only the user's own notes are shown.
    if (m_lsvMain->columns() == kUserPlace) {
        widths.append(storedColumns().mid(kUserPlace, 1));
    }
    settings().setText(kColumnWidths, widths.join(QLatin1Char(';')));
}

void frmMain::fitSubject() {
    if (!m_subjectFits || m_fitting) {
        return;
    }
    const QScopedValueRollback<bool> fitting(m_fitting, true);
    const int spare = m_lsvMain->viewport()->width() - m_lsvMain->header()->length();
    m_lsvMain->setColumnWidth(
        kSubjectColumn, std::max(kMinSubjectWidth, m_lsvMain->columnWidth(kSubjectColumn) + spare));
}

void frmMain::columnResized(int column) {
    if (m_fitting) {
        return;
    }
    if (column == kSubjectColumn) {
        m_subjectFits = false; // from now on it keeps the width that the user gave it
    }
    fitSubject();
}

} // namespace yrw
