// The window's life, its size and the arrangement of its controls.
#include "notes_window/frmMain.h"

#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "notes_window/FindBar.h"
#include "notes_window/NoteAttachments.h"
#include "notes_window/NotesList.h"
#include "notes_window/SplitBar.h"
#include "notes_window/frmInsertAttachment.h"
#include "platform/clock/Clock.h"
#include "platform/controls/StatusBar.h"
#include "platform/files/FileSystem.h"
#include "platform/forms/ScreenMetrics.h"
#include "platform/forms/Twips.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"

#include <QFile>
#include <QScreen>
#include <QTextDocument>

#include <algorithm>

namespace yrw {

namespace {

constexpr int kMinListHeight = 60;   ///< header and two rows, in pixels
constexpr int kMinEditorHeight = 50; ///< between the splitter's top and the inner bottom
constexpr int kSplitHeight = 7;
constexpr int kMinWidth = 420; ///< of the window, in pixels
constexpr int kReminderCountMs = 60000;

const QString kToolbarBands = QStringLiteral("ToolbarBands");

/// A stored size in pixels; the present one for a size that is absent, no number, 0, negative or
/// larger than the screen.
int storedPixels(const QString& text, int present, int screen) {
    bool isNumber = false;
    const int pixels = twipsToPixels(text.toInt(&isNumber));
    return isNumber && pixels > 0 && pixels <= screen ? pixels : present;
}

} // namespace

frmMain::frmMain(INotesAddIn& addIn, StoreContext& context)
    : Form(QStringLiteral("frmMain")), m_stbMain(new StatusBar(this)),
      m_context(*this, *m_stbMain, addIn, context), m_names(context),
      m_drafts(NoteDrafts::userFolder(), addIn.DatabaseDirectory()) {
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                   Qt::WindowSystemMenuHint | Qt::WindowMaximizeButtonHint |
                   Qt::WindowCloseButtonHint);
    createControls();
    connectEvents();
}

frmMain::~frmMain() = default;

void frmMain::Form_Load() {
    loadToolbar();
    m_atbMain->setArrangement(settings().text(kToolbarBands));
    setUpEditor();
    restoreSize();
    m_list->columns().restore();
    UpdateToolStates();
    m_lsvMain->setFocus();
    m_waitingTimer.start(kReminderCountMs);
    m_drafts.removeHalfWritten(services().clock.now());
}

void frmMain::Form_Resize() {
    if (windowStateCode() == WindowStateCode::Minimised) {
        return;
    }
    ShowStatus(QStringLiteral("Resizing..."));
    if (m_splitTop != 0) { // a smaller window takes from the list before it takes from the text
        m_splitTop = std::max(m_lsvMain->y() + kMinListHeight,
                              std::min(m_splitTop, height() - leastTextHeight()));
    }
    arrange();
    ShowStatus(QStringLiteral("Done"));
}

void frmMain::Form_QueryUnload(bool& cancel) {
    ignoreErrors([&] { cancel = !mayLeaveText(); });
}

void frmMain::Form_EndSession() {
    writeDraft();
}

void frmMain::Form_Unload() {
    ignoreErrors([this] {
        SaveNote();
        storeSize();
        m_list->columns().store();
    });
    m_draftTimer.stop();
    m_waitingTimer.stop();
}

void frmMain::atbMain_BandMove() {
    settings().setText(kToolbarBands, m_atbMain->arrangement());
    arrange();
}

void frmMain::picHSplit_MouseDown() {
    m_picHSplit->setDragged(true);
    m_picHSplit->raise();
}

void frmMain::picHSplit_MouseMove(int top) {
    prompt().setMousePointer(MousePointer::SizeNS);
    if (clampedSplit(top) == top) {
        m_picHSplit->move(m_picHSplit->x(), top);
    }
}

void frmMain::picHSplit_MouseUp() {
    m_picHSplit->setDragged(false);
    prompt().setMousePointer(MousePointer::Default);
    moveSplit(m_picHSplit->y());
}

void frmMain::picHSplit_DblClick() {
    const int top = m_lsvMain->y();
    moveSplit(top + (m_stbMain->y() - top) / 2);
}

void frmMain::loadToolbar() {
    const QString inFolder = QStringLiteral("\\support\\notes\\Menus.tb");
    QStringList problems;
    QStringList missing;
    for (const QString& folder :
         {m_context.addIn().DatabaseDirectory(), m_context.addIn().TemplateDirectory()}) {
        const QString path = folder + inFolder;
        if (!services().files.fileExists(path)) {
            missing.append(QStringLiteral("%1 is not there.").arg(services().files.resolve(path)));
            continue;
        }
        try {
            m_atbMain->loadLayout(services().files, path);
            break;
        } catch (const AutomationError& error) {
            problems.append(error.description());
        }
    }
    if (m_atbMain->bandCount() == 0) {
        problems = problems.isEmpty() ? missing : problems;
        QFile builtIn(QStringLiteral(":/notes_window/Menus.tb"));
        builtIn.open(QIODevice::ReadOnly);
        m_atbMain->loadLayoutText(builtIn.readAll(), builtIn.fileName());
    }
    connectToolbar();
    if (!problems.isEmpty()) {
        prompt().message(
            QStringLiteral("The toolbar layout cannot be used; another one is shown.") +
                QStringLiteral("\r\r") + problems.join(QLatin1Char('\r')),
            QStringLiteral("Notes Problem"), PromptIcon::Exclamation);
    }
}

void frmMain::restoreSize() {
    const auto state =
        static_cast<WindowStateCode>(settings().text(QStringLiteral("WindowState")).toInt());
    const QSize screenSize = screen()->size();
    if (state != WindowStateCode::Maximised) {
        const int height = storedPixels(settings().text(QStringLiteral("Height")), this->height(),
                                        screenSize.height());
        const int width = storedPixels(settings().text(QStringLiteral("Width")), this->width(),
                                       screenSize.width());
        resize(width, height);
    }
    setWindowStateCode(state);
}

void frmMain::storeSize() {
    const WindowStateCode state = windowStateCode();
    NotesSettings store = settings();
    store.setText(QStringLiteral("WindowState"), QString::number(int(state)));
    if (state != WindowStateCode::Maximised) {
        store.setText(QStringLiteral("Height"), QString::number(pixelsToTwips(height())));
        store.setText(QStringLiteral("Width"), QString::number(pixelsToTwips(width())));
    }
}

void frmMain::arrange() {
    const int width = this->width();
    int top = 0;
    const auto place = [&](QWidget* control, int height) {
        control->setGeometry(0, top, width, height);
        top += height;
    };
    place(m_atbMain, m_atbMain->heightForWidth(width));
    if (!m_findBar->isHidden()) {
        place(m_findBar, m_findBar->sizeHint().height());
    }
    // May make the window higher at once, also while it is not shown yet.
    setMinimumSize(
        QSize(kMinWidth, top + kMinListHeight + leastTextHeight()).boundedTo(roomFor(*this)));
    m_lsvMain->move(0, top);
    const int statusHeight = m_stbMain->sizeHint().height();
    m_stbMain->setGeometry(0, height() - statusHeight, width, statusHeight);
    if (m_splitTop == 0) {
        m_splitTop = top + (m_stbMain->y() - top) * 2 / 5;
    }
    const int split = clampedSplit(m_splitTop);
    m_lsvMain->setGeometry(0, top, width, std::max(0, split - top));
    m_picHSplit->setGeometry(0, split, width, kSplitHeight);
    const int editorTop = split + kSplitHeight;
    m_rtxMain->setGeometry(0, editorTop, width, std::max(0, m_stbMain->y() - editorTop));
}

/// What stands from the splitter down when the text shows three lines, in pixels.
int frmMain::leastTextHeight() const {
    const int aroundText =
        2 * (m_rtxMain->frameWidth() + int(m_rtxMain->document()->documentMargin()));
    return kSplitHeight + aroundText + 3 * m_rtxMain->fontMetrics().lineSpacing() +
           m_stbMain->sizeHint().height();
}

int frmMain::clampedSplit(int top) const {
    const int lowest = m_lsvMain->y() + kMinListHeight;
    return std::max(lowest, std::min(top, height() - kMinEditorHeight));
}

void frmMain::moveSplit(int top) {
    m_splitTop = clampedSplit(top);
    arrange();
}

void frmMain::ShowStatus(const QString& text) {
    m_context.showStatus(text);
}

} // namespace yrw
