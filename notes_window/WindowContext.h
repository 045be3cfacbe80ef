#pragma once

#include "framework/ErrorGuards.h"
#include "framework/INotesAddIn.h"
#include "framework/Services.h"
#include "framework/Settings.h"
#include "store/Application.h"

#include <QString>

#include <utility>

class QWidget;

namespace yrw {

class Clock;
class Prompt;
class StatusBar;

/// What every part of the notes window works with: the add-in and the store, the window that boxes
/// belong to, and its status bar.
///
/// Lifetime: all that it is given outlives it, and it outlives the parts.
/// Thread: the user-interface thread.
class WindowContext {
public:
    WindowContext(QWidget& window, StatusBar& status, INotesAddIn& addIn, StoreContext& store);

    [[nodiscard]] QWidget& window() const { return m_window; }
    [[nodiscard]] INotesAddIn& addIn() const { return m_addIn; }
    [[nodiscard]] StoreContext& store() const { return m_store; }
    [[nodiscard]] Services& services() const { return m_addIn.services(); }
    [[nodiscard]] Clock& clock() const { return services().clock; }
    [[nodiscard]] Prompt& prompt() const { return services().utility.prompt(); }
    [[nodiscard]] NotesSettings settings() const { return NotesSettings(services().settings); }
    /// Raises `kErrorObjectRequired` while there is none.
    [[nodiscard]] Application& application() const;
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
    INotesAddIn& m_addIn;
    StoreContext& m_store;
    Ref<Application> m_application;
};

} // namespace yrw
