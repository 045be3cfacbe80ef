// A host in a hundred lines: a window, a database with customers and users, and the notes add-in.
#pragma once

#include "framework/CollectionBase.h"
#include "framework/HostApplicationBase.h"
#include "framework/IAddIn.h"
#include "platform/component/ClassRegistry.h"

#include <QWidget>

namespace example {

using namespace yrw;

inline const TableDifferences kUsers{.TableName = "Users",
                                     .ObjectKey = "us",
                                     .CollectionName = "Users",
                                     .StoredQuery = "Users",
                                     .UseName = "User"};

class User : public RecordBase, public IUser {
public:
    User() : RecordBase(kUsers) {}
    Ref<IRecord> Group() override { return nullptr; } // this host has no groups
};

class Users : public CollectionBase {
public:
    Users() : CollectionBase(kUsers) {}

protected:
    Ref<IRecord> newRecord() const override { return make<User>(); }
};

/// The application: a database, its users, a name. The base class answers all the rest.
class Application : public HostApplicationBase {
public:
    Application(const dao::EngineServices& engine, const QString& folder)
        : m_engine(engine), m_workspace(dao::createWorkspace(engine)),
          m_database(m_workspace->CreateDatabase(folder + "/Example.mdb")) {
        m_database->RunScript("CREATE TABLE Users (RecordID INTEGER PRIMARY KEY, Code TEXT(255), "
                              "FirstName TEXT(255), LastName TEXT(255), UseName TEXT(255), "
                              "GroupID LONG, GroupCode TEXT(255), GroupName TEXT(255));"
                              "INSERT INTO Users (Code, UseName) VALUES ('IDA', 'Ida Iris')");
        m_helper.setDatabase(m_database);
        m_helper.setCurrentUserID(1);
        m_helper.setCurrentUserCode("IDA");
    }
    QString Name() override { return "Example"; }
    QString Version() override { return "1.0.0"; }
    QString ProgID() override { return "Example.Application"; }
    Ref<dao::Database> DAODatabase() override { return m_database; }
    Ref<dao::Workspace> DAOWorkspace() override { return dao::createWorkspace(m_engine); }
    HostDataHelper* DB() override { return &m_helper; }
    Ref<yrw::ICollection> Users() override {
        const Ref<yrw::ICollection> users = make<example::Users>();
        users->setApplication(Ref<IApplication>(this));
        return users;
    }
    Ref<IUser> CurrentUser() override { return query<IUser>(Users()->Item(1)); }
    void setCurrentUser(const Ref<IUser>& /*user*/) override {}
    void Terminate() override { m_workspace->Close(); }

private:
    dao::EngineServices m_engine;
    Ref<dao::Workspace> m_workspace;
    Ref<dao::Database> m_database;
    HostDataHelper m_helper;
};

/// The window, as the add-in sees it. This host has no grids; a host that has some answers with
/// their controllers, and then rows with notes are marked.
class HostWindow : public QWidget, public IHostInterface, public IHostComponent {
public:
    HostWindow(Ref<example::Application> application, IToolbar& toolbar)
        : m_application(std::move(application)), m_toolbar(toolbar) {
        m_toolbar.addBand("Addins", false); // where the add-in puts its tool
    }
    /// Loads the add-in and activates it; true when it is ready to work.
    bool loadAddIn() {
        m_addIn = query<IAddIn>(ClassRegistry().createObject("YRWNOTES.AddIn"));
        m_addIn->setComponent(this);
        return m_addIn->Activate();
    }
    /// Before the window goes: the add-in saves what is open and lets go of everything.
    void unloadAddIn() {
        m_addIn->DeActivate();
        m_addIn.reset();
    }

    QObject* asQObject() override { return this; }
    IHostInterface* Interface() override { return this; }
    IGridController* UpperController() override { return nullptr; }
    IGridController* LowerController() override { return nullptr; }
    IGridController* CurrentController() override { return nullptr; }
    Ref<IHostApplication> Application() override { return m_application; }
    IToolbar* Toolbar() override { return &m_toolbar; }
    IStatusBar* StatusBar() override { return nullptr; }
    void ShowStatus(const QString& text) override { setWindowTitle("Example " + text); }
    QWidget* Window() override { return this; }
    bool IsWindowActive() override { return isActiveWindow(); }
    bool CanCheckNotes() override { return true; }
    QRect WindowRect() override { return frameGeometry(); }

private:
    Ref<example::Application> m_application;
    IToolbar& m_toolbar;
    Ref<IAddIn> m_addIn;
};

} // namespace example
