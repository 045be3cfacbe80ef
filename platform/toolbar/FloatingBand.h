#pragma once

#include "platform/toolbar/BandBar.h"

class QToolButton;

namespace yrw {

class BandGrip;

/// The small window of a band that floats: a title with a button that docks it, and its tools.
///
/// A click in it leaves the keyboard where it is, in the text that the tool acts on. It takes the
/// keyboard when the toolbar's keys lead to one of its tools, and gives it back on Tab.
/// Lifetime: belongs to the toolbar and lies over its window; its band outlives it.
/// Thread: the user-interface thread.
class FloatingBand final : public QWidget {
    Q_OBJECT

public:
    FloatingBand(ToolBand& band, BandEvents& events, QWidget* toolbar);

    [[nodiscard]] const ToolBand& band() const noexcept { return m_band; }
    /// Takes the band's bar into the window, which gets its size from it.
    void setBar(BandBar& bar);
    /// Moves the window to a place on the screen; one off the screen is brought onto it.
    void placeAt(const QPoint& place);
    /// Shows the window, or hides it; while a modal window is open over the toolbar's it stays
    /// hidden, since it would lie over that one too.
    void setShown(bool wanted);
    void takeKeyboard();
    /// Hides the window and deletes it later: it may be one of its controls that is acting.
    void end();
    /// Size of the window of a band with that bar.
    [[nodiscard]] static QSize sizeFor(const BandBar& bar);

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void closeEvent(QCloseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void acceptKeyboard(bool accept);
    /// Keeps the window over a toolbar's window that is modal.
    void stayOver();

    ToolBand& m_band;
    BandEvents& m_events;
    BandGrip* m_title;
    QToolButton* m_close;
    bool m_ended = false;
    bool m_keyboard = false; ///< it was asked to take the keyboard
    bool m_blocked = false;  ///< a modal window is open over the toolbar's
    bool m_wanted = false;   ///< it shows while nothing blocks it
};

} // namespace yrw
