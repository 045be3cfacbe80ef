#include "notes_window/WindowLayout.h"

#include "notes_window/FindBar.h"
#include "notes_window/MainControls.h"
#include "notes_window/SplitBar.h"
#include "notes_window/WindowContext.h"
#include "platform/controls/ListView.h"
#include "platform/controls/StatusBar.h"
#include "platform/forms/Form.h"
#include "platform/forms/ScreenMetrics.h"
#include "platform/forms/Twips.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"

#include <QScreen>
#include <QTextDocument>

#include <algorithm>

namespace yrw {

namespace {

constexpr QSize kDesignedSize(860, 620);
constexpr int kMinListHeight = 60;   ///< header and two rows, in pixels
constexpr int kMinEditorHeight = 50; ///< between the splitter's top and the inner bottom
constexpr int kSplitHeight = 7;
constexpr int kMinWidth = 420; ///< of the window, in pixels

/// A stored size in pixels; the present one for a size that is absent, no number, 0, negative or
/// larger than the screen.
int storedPixels(std::optional<double> twips, int present, int screen) {
    if (!twips || !(*twips > 0) || *twips > pixelsToTwips(screen)) {
        return present;
    }
    const int pixels = twipsToPixels(static_cast<int>(*twips));
    return pixels > 0 ? pixels : present;
}

} // namespace

WindowLayout::WindowLayout(Form& window, const MainControls& controls, WindowContext& context)
    : m_window(window), m_controls(controls), m_context(context) {
    m_window.resize(kDesignedSize.boundedTo(roomFor(m_window)));
    m_window.setSizeGripEnabled(false);
}

void WindowLayout::windowResized() {
    if (m_splitTop != 0) { // a smaller window takes from the list before it takes from the text
        m_splitTop = std::max(m_controls.lsvMain.y() + kMinListHeight,
                              std::min(m_splitTop, m_window.height() - leastTextHeight()));
    }
    arrange();
}

void WindowLayout::arrange() {
    const int width = m_window.width();
    int top = 0;
    const auto place = [&](QWidget& control, int height) {
        control.setGeometry(0, top, width, height);
        top += height;
    };
    place(m_controls.atbMain, m_controls.atbMain.heightForWidth(width));
    if (!m_controls.picFind.isHidden()) {
        place(m_controls.picFind, m_controls.picFind.sizeHint().height());
    }
    // May make the window higher at once, also while it is not shown yet.
    m_window.setMinimumSize(
        QSize(kMinWidth, top + kMinListHeight + leastTextHeight()).boundedTo(roomFor(m_window)));
    m_controls.lsvMain.move(0, top);
    StatusBar& status = m_controls.stbMain;
    const int statusHeight = status.sizeHint().height();
    status.setGeometry(0, m_window.height() - statusHeight, width, statusHeight);
    if (m_splitTop == 0) {
        m_splitTop = top + (status.y() - top) * 2 / 5;
    }
    const int split = clampedSplit(m_splitTop);
    m_controls.lsvMain.setGeometry(0, top, width, std::max(0, split - top));
    m_controls.picHSplit.setGeometry(0, split, width, kSplitHeight);
    const int editorTop = split + kSplitHeight;
    m_controls.rtxMain.setGeometry(0, editorTop, width, std::max(0, status.y() - editorTop));
}

/// What stands from the splitter down when the text shows three lines.
int WindowLayout::leastTextHeight() const {
    const RichTextBox& text = m_controls.rtxMain;
    const int aroundText = 2 * (text.frameWidth() + int(text.document()->documentMargin()));
    return kSplitHeight + aroundText + 3 * text.fontMetrics().lineSpacing() +
           m_controls.stbMain.sizeHint().height();
}

int WindowLayout::clampedSplit(int top) const {
    const int lowest = m_controls.lsvMain.y() + kMinListHeight;
    return std::max(lowest, std::min(top, m_window.height() - kMinEditorHeight));
}

void WindowLayout::moveSplit(int top) {
    m_splitTop = clampedSplit(top);
    arrange();
}

void WindowLayout::centreSplit() {
    const int top = m_controls.lsvMain.y();
    moveSplit(top + (m_controls.stbMain.y() - top) / 2);
}

void WindowLayout::restoreSize() {
    const NotesSettings settings = m_context.settings();
    const auto state = static_cast<WindowStateCode>(settings.get(setting::kWindowState));
    const QSize screenSize = m_window.screen()->size();
    if (state != WindowStateCode::Maximised) {
        const int height =
            storedPixels(settings.get(setting::kHeight), m_window.height(), screenSize.height());
        const int width =
            storedPixels(settings.get(setting::kWidth), m_window.width(), screenSize.width());
        m_window.resize(width, height);
    }
    m_window.setWindowStateCode(state);
}

void WindowLayout::storeSize() {
    const WindowStateCode state = m_window.windowStateCode();
    NotesSettings settings = m_context.settings();
    settings.set(setting::kWindowState, qint64(state));
    if (state != WindowStateCode::Maximised) {
        settings.set(setting::kHeight, pixelsToTwips(m_window.height()));
        settings.set(setting::kWidth, pixelsToTwips(m_window.width()));
    }
}

} // namespace yrw
