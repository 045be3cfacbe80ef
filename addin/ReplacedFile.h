#pragma once

#include <QObject>
#include <QTimer>

#include <vector>

namespace yrw {

class AutomationError;
class INeighbour;
class NotesContext;

/// Notices that another file, or none, has come to lie where the open notes database was: keeps
/// what was typed, tells the user, and offers what is there now.
///
/// Looks each minute, whether or not reminders are checked, and when a write was refused. With a
/// notes window open, that window closes when the user agrees, its text kept as a draft, and opens
/// again over what is there. While a dialog or box lies over it nothing can be closed: the user is
/// told, and asked once that is gone.
///
/// Lifetime: a member of `Module1`; works between `start` and `stop`. Thread: the user-interface
/// thread.
class ReplacedFile final : public QObject {
    Q_OBJECT

public:
    /// `active` are the add-ins at work, in the order in which they began.
    ReplacedFile(NotesContext& context, const std::vector<INeighbour*>& active);

    /// An add-in works with the database.
    void start();
    /// None does any more.
    void stop();
    /// A database was opened.
    void forget() noexcept;

    /// Looks now. Who has said no is asked again only with `again`.
    void look(bool again = false);
    /// True when an error that is about to be reported is told by this object instead.
    [[nodiscard]] bool tellsOf(const AutomationError& error);
    /// An add-in's notes window was closed: goes on with what is there when the user has agreed to
    /// that, and else looks. True when the window is to open again.
    [[nodiscard]] bool windowClosed(INeighbour& addIn);

private:
    [[nodiscard]] bool isReplaced() const;
    [[nodiscard]] bool isWindowOpen() const;
    [[nodiscard]] INeighbour* whoCanAsk() const;
    void wait();
    void ask(INeighbour& addIn);

    NotesContext& m_context;
    const std::vector<INeighbour*>& m_active;
    QTimer m_minute;
    QTimer m_soon; ///< once what lies over the notes window may have gone
    bool m_isTold = false;
    bool m_hasDeclined = false;
    bool m_hasAgreed = false; ///< and a notes window is still to close
};

} // namespace yrw
