#pragma once

#include <QString>

#include <functional>
#include <map>

class QAction;
class QMenuBar;

namespace yrw {

class Toolbar;

/// What the user can ask of the desk; also the ids of its tools.
enum class DeskCommand : int {
    Quit = 100,
    NewRecord,
    EditRecord,
    DeleteRecord,
    Find,
    FindNext,
    Filter,
    Refresh,
    Split,
    OtherGrid,
    GoToCustomer,
    BandMain,
    BandPlain,
    BandAddins,
    NotesChecking,
    ActivateAddIn,
    DeactivateAddIn,
    LoadAddIn,
    ReleaseAddIn,
    Contents,
    About,
};

/// The desk's menus and toolbars, made from one table of commands.
///
/// Each menu entry is a `QAction` whose object name is the command's key, as the tool's key is.
/// Lifetime: owned by the window, after the widgets that it fills. Thread: the user-interface
/// thread.
class DeskCommands {
public:
    using Run = std::function<void(DeskCommand)>;

    /// Fills the menu bar; `run` is called for each command chosen.
    DeskCommands(QMenuBar& menus, Run run);

    /// Fills the component window's toolbar: the bands that the developer menu has on.
    void fillComponentToolbar(Toolbar& toolbar) const;
    /// Fills the interface toolbar: a docked band, and the grid's pop-up band "bndGrid".
    static void fillInterfaceToolbar(Toolbar& toolbar);
    /// Runs a tool's command by its id; false for a tool that is not the desk's.
    bool runTool(int id) const;

    [[nodiscard]] bool isChecked(DeskCommand command) const;
    void setChecked(DeskCommand command, bool checked);
    void setEnabled(DeskCommand command, bool enabled);

private:
    Run m_run;
    std::map<DeskCommand, QAction*> m_actions;
};

/// Key of the band that a developer command switches; empty for the other commands.
[[nodiscard]] QString bandOf(DeskCommand command);

} // namespace yrw
