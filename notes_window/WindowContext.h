#pragma once

#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "framework/Settings.h"
#include "store/NotesContext.h"

#include <QString>

#include <utility>

class QWidget;

namespace yrw {

class Clock;
class Prompt;
class StatusBar;

/// What every part of the notes window works with: the notes, the window that boxes belong to, and
/// its status bar.
///
/// Lifetime: all that it is given outlives it, and it outlives the parts.
/// Thread: the user-interface thread.
class WindowContext {
public:
    WindowContext(QWidget& window, StatusBar& status, NotesContext& notes);

    [[nodiscard]] QWidget& window() const { return m_window; }
    /// The add-in that opened the window, kept while that is there; nothing before it is given.
    [[nodiscard]] const Ref<INotesParent>& parent() const { return m_parent; }
    void setParent(const Ref<INotesParent>& parent) { m_parent = parent; }

    [[nodiscard]] NotesContext& notes() const { return m_notes; }
    [[nodiscard]] Services& services() const { return m_notes.services(); }
    [[nodiscard]] Clock& clock() const { return services().clock; }
    [[nodiscard]] Prompt& prompt() const { return services().prompt; }
    [[nodiscard]] NotesSettings settings() const { return NotesSettings(services().settings); }
    /// Raises `kErrorObjectRequired` while there is none.
    [[nodiscard]] Application& application() const { return m_notes.application(); }
    /// The user may read the notes, but not write them.
    [[nodiscard]] bool isReadOnly() const;

    /// Gives the window its caption, which also says when notes can only be read.
    void setCaption(const QString& text) const;
    /// Writes into the status bar and paints it at once.
    void showStatus(const QString& text) const;
    /// Runs a procedure that the user started; a failure is reported as the window's own, with the
    /// procedure's name. True when there was none.
    template <class Action>
    bool report(const QString& procedure, const QString& message, Action&& action) const {
        return reportErrors(services().utility, QStringLiteral("YRWNOTES.frmMain.") + procedure,
                            message, QStringLiteral("Notes Problem"), std::forward<Action>(action));
    }

private:
    QWidget& m_window;
    StatusBar& m_status;
    NotesContext& m_notes;
    Ref<INotesParent> m_parent;
};

} // namespace yrw
