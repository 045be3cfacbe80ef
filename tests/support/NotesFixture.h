#pragma once

// A notes database in a temporary folder, the store over it and a fake host: what tests of the
// store and of all that stands on it begin with.

#include "framework/Services.h"
#include "platform/files/FileSystem.h"
#include "store/NotesContext.h"
#include "store/NotesDatabase.h"
#include "store/Operations.h"
#include "tests/support/FakeHost.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>
#include <optional>

namespace yrw::test {

/// The template folder of the source tree, found from the test program upwards.
inline QString sourceTemplateFolder() {
    const QString wanted = QStringLiteral("template/DB/YRWNOTES");
    QDir folder(QCoreApplication::applicationDirPath());
    while (!folder.exists(wanted + QStringLiteral("/Notes.sql")) && folder.cdUp()) {
    }
    return folder.filePath(wanted);
}

/// A template folder as it ships, made once per process: the database from its script, and the
/// toolbar layout.
inline QString shippedTemplateFolder() {
    static const QTemporaryDir folder;
    static const QString path = [] {
        QFile script(sourceTemplateFolder() + QStringLiteral("/Notes.sql"));
        if (!script.open(QIODevice::ReadOnly)) {
            throw AutomationError(kErrorCannotOpenDatabase, QStringLiteral("test"),
                                  script.fileName() + QStringLiteral(" is not there"));
        }
        FileSystem files;
        const Ref<dao::Workspace> workspace = dao::createWorkspace({Clock::instance(), files});
        workspace->CreateDatabase(folder.filePath(kNotesDatabaseName))
            ->RunScript(QString::fromUtf8(script.readAll()));
        workspace->Close();
        const QString layout = QStringLiteral("support/Notes/Menus.tb");
        QDir(folder.path()).mkpath(QStringLiteral("support/Notes"));
        if (!QFile::copy(sourceTemplateFolder() + u'/' + layout, folder.filePath(layout))) {
            QFile empty(folder.filePath(layout));
            empty.open(QIODevice::WriteOnly);
            empty.write("{}");
        }
        return folder.path();
    }();
    return path;
}

/// The store's world in a test: its own folder, clock, host and open notes database.
///
/// Works as user ANNA (1). Everything that the test takes from it must end before it.
class TestStore final : public NotesContext {
public:
    TestStore() : TestStore(QString()) {}
    /// Works on the notes database in a folder of another store, as a second program does.
    /// With a clock, that one is used instead of one that the test advances.
    explicit TestStore(const QString& others, Clock* running = nullptr)
        : m_others(others), m_running(running) {
        if (m_others.isEmpty()) {
            createNotesDatabase(m_files, shippedTemplateFolder(), folder());
        }
        m_host = make<FakeHostApplication>(engine(), m_folder.path());
        openNotes();
        actAs(1);
        m_application = make<Application>(*this);
    }
    ~TestStore() override { m_application->Terminate(); }

    [[nodiscard]] QString folder() const { return m_others.isEmpty() ? m_folder.path() : m_others; }
    [[nodiscard]] QString notesPath() const {
        return FileSystem::join(folder(), kNotesDatabaseName);
    }
    [[nodiscard]] dao::EngineServices engine() { return {clock(), m_files}; }
    [[nodiscard]] ManualClock& manualClock() { return m_clock; }
    [[nodiscard]] FileSystem& files() { return m_files; }
    [[nodiscard]] FakeHostApplication& host() { return *m_host; }
    [[nodiscard]] Application& application() override { return *m_application; }
    [[nodiscard]] Ref<Application> applicationRef() { return m_application; }

    /// (Re)opens the notes database, as activating the add-in does.
    void openNotes() {
        m_workspace = m_host->DAOWorkspace();
        m_database = openNotesDatabase(m_helper, m_workspace, notesPath());
        refreshUserNames(*m_database, userNamesOf(m_host->Users()));
    }
    void actAs(qint64 userID) {
        m_host->actAs(userID);
        m_helper.setCurrentUserID(userID);
        m_helper.setCurrentUserCode(currentUser()->value(QStringLiteral("Code")).toString());
    }
    /// The record with that key of the host: "cu" customers 1 to 3, "or" orders 1 to 4.
    [[nodiscard]] Ref<IRecord> hostRecord(const QString& objectKey, qint64 id) {
        return m_host->record(objectKey, id);
    }
    /// Adds an active note; nothing as owner makes a note on no record.
    Ref<Note> addNote(const QString& subject, const Ref<IRecord>& owner = nullptr) {
        NoteChoices choices;
        choices.Subject = subject;
        choices.Date = m_clock.now();
        return createNote(*m_application, *this, ownerOf(owner, *this), choices);
    }
    /// The notes of a host record; of no record for nothing.
    [[nodiscard]] Ref<Notes> notesOf(const Ref<IRecord>& owner) {
        Ref<Notes> notes = m_application->Notes();
        if (owner) {
            notes->setParent(owner);
        }
        return notes;
    }

    [[nodiscard]] Ref<dao::Workspace> workspace() override { return m_workspace; }
    [[nodiscard]] Ref<dao::Database> database() override { return m_database; }
    [[nodiscard]] bool isDatabaseOpen() override { return m_database != nullptr; }
    [[nodiscard]] Ref<IHostApplication> hostApplication() override { return m_host; }
    [[nodiscard]] QString hostProgID() override { return m_host->ProgID(); }
    [[nodiscard]] Ref<IUser> currentUser() override { return m_host->CurrentUser(); }
    [[nodiscard]] HostDataHelper& dataHelper() override { return m_helper; }
    [[nodiscard]] Clock& clock() override { return m_running != nullptr ? *m_running : m_clock; }
    [[nodiscard]] QString version() override { return QStringLiteral("2.0.195"); }
    [[nodiscard]] QString databaseFolder() override { return folder(); }
    [[nodiscard]] QString templateFolder() override {
        return templateDirectory.isEmpty() ? shippedTemplateFolder() : templateDirectory;
    }
    [[nodiscard]] Services& services() override { return m_services.value(); }
    [[nodiscard]] bool switchOn(NotesSwitch /*which*/) const override { return true; }
    /// What windows over the store work with.
    void setServices(const Services& services) { m_services.emplace(services); }
    void closeDatabase() override {
        ++closings;
        if (m_database) {
            m_database->Close();
        }
        if (m_workspace) {
            m_workspace->Close();
        }
        m_database.reset();
        m_workspace.reset();
    }

    QString templateDirectory; ///< where it is not the shipped one
    int closings = 0;          ///< how often the database was asked to close

private:
    QTemporaryDir m_folder;
    QString m_others;
    Clock* m_running;
    ManualClock m_clock{QDateTime(QDate(2026, 3, 10), QTime(9, 0))};
    FileSystem m_files;
    Ref<FakeHostApplication> m_host;
    Ref<dao::Workspace> m_workspace;
    Ref<dao::Database> m_database;
    HostDataHelper m_helper;
    std::optional<Services> m_services;
    Ref<Application> m_application;
};

/// Base of test suites over a store.
class NotesFixture : public testing::Test {
protected:
    TestStore store;
};

} // namespace yrw::test
