#pragma once

#include "framework/Services.h"
#include "host/core/DeskApplication.h"
#include "host/desk/AddInLoader.h"
#include "host/desk/DeskCommands.h"
#include "host/desk/DeskHost.h"
#include "host/desk/GridPanel.h"
#include "host/desk/IDesk.h"
#include "host/desk/WindowMemory.h"
#include "platform/controls/StatusBar.h"
#include "platform/toolbar/Toolbar.h"

#include <QMainWindow>

#include <memory>

class QSplitter;

namespace yrw {

class DeskFindBar;

/// What a desk's window is opened with.
struct DeskOptions {
    DeskStart start;
    QString addInProgID = QStringLiteral("YRWNOTES.AddIn"); ///< empty: none is loaded
    /// How the add-in is made; empty: through the class registry of the user.
    CreateObject createObject;
};

/// The desk: customers above, the selected customer's orders below, two toolbars, a status bar.
///
/// `open` opens the database, shows the window and loads the add-in. Closing the window lets the
/// add-in go and closes the database; the window is not opened again.
/// Objects: `atbComponent`, `atbInterface`, `dbgUpper`, `dbgLower`, `stbMain`, `txtFind`; the menu
/// entries are named after their commands' keys.
/// Lifetime: a window without owner; needs `services` as long as it lives.
/// Thread: the user-interface thread.
class DeskWindow final : public QMainWindow, public IDesk {
    Q_OBJECT

public:
    DeskWindow(const Services& services, DeskOptions options);
    ~DeskWindow() override;

    /// Raises what `DeskApplication::open` raises; the window is not shown then.
    void open();
    /// Lets the add-in go and closes the database; twice without an error.
    void shutDown();
    /// Closes without asking: a cell that cannot be written keeps what is stored.
    void endSession();

    [[nodiscard]] DeskGridController& upper() const override { return m_upper->controller(); }
    [[nodiscard]] DeskGridController& lower() const override { return m_lower->controller(); }
    [[nodiscard]] DeskGridController& current() const override { return *m_current; }
    [[nodiscard]] Toolbar& componentToolbar() const override { return *m_componentToolbar; }
    [[nodiscard]] Toolbar& interfaceToolbar() const override { return *m_interfaceToolbar; }
    [[nodiscard]] StatusBar& mainStatusBar() const override { return *m_statusBar; }
    [[nodiscard]] Ref<DeskApplication> application() const { return m_application; }
    [[nodiscard]] IHostComponent& component() { return m_component; }
    [[nodiscard]] AddInLoader& addIns() { return m_addIns; }
    [[nodiscard]] QWidget& widget() override { return *this; }
    [[nodiscard]] Ref<IHostApplication> hostApplication() const override { return m_application; }
    [[nodiscard]] bool canCheckNotes() const override;
    void showProgress(const QString& text) override;
    void run(DeskCommand command);

Q_SIGNALS:
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    // Building.
    void build();
    void connectEvents();
    void connectPanel(GridPanel& panel);
    [[nodiscard]] Ref<ICollection> ordersToShow(bool everyRecord);

    // What the user asks for.
    void quit();
    void newRecord();
    void editRecord();
    void deleteRecord();
    void openFind();
    void findNext();
    void openFilter();
    void refreshRows();
    void splitGrid();
    void otherGrid();
    void goToCustomer();
    void switchBands();
    void loadAddIn();
    void activateAddIn();
    void deactivateAddIn();
    void releaseAddIn();
    void showKeys();
    void showAbout();

    // What happens.
    void focusMoved(QWidget* focused);
    void makeCurrent(GridPanel& panel);
    void customerChanged();
    void showOrdersTitle();
    void updateCommands();
    void recordAdded(GridPanel& panel);
    void reloadLayouts();
    bool showHelp(int topic);
    void showUser();

    void remember();
    void restore();
    [[nodiscard]] GridPanel& currentPanel() const;

    const Services m_services;
    DeskOptions m_options;
    WindowMemory m_memory;
    Ref<DeskApplication> m_application;
    DeskInterface m_interface;
    DeskComponent m_component;
    AddInLoader m_addIns;
    std::unique_ptr<DeskCommands> m_commands;
    Toolbar* m_componentToolbar = nullptr;
    Toolbar* m_interfaceToolbar = nullptr;
    StatusBar* m_statusBar = nullptr;
    QLabel* m_progress = nullptr;
    QLabel* m_user = nullptr;
    QSplitter* m_splitter = nullptr;
    GridPanel* m_upper = nullptr;
    GridPanel* m_lower = nullptr;
    DeskFindBar* m_findBar = nullptr;
    DeskGridController* m_current = nullptr;
    QTimer m_ordersDelay;
    Connection m_toolClicks[2];
    bool m_open = false;
};

} // namespace yrw
