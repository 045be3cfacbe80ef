#pragma once

// The add-in as its windows see it, over a test store: writes down what it was told.

#include "framework/HostUtility.h"
#include "framework/INotesAddIn.h"
#include "framework/Services.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/PromptScript.h"
#include "tests/support/StoredSettings.h"

#include <QObject>

#include <map>

namespace yrw::test {

/// A host component that has an application and nothing on the screen.
class FakeComponent final : public QObject, public IHostComponent {
public:
    explicit FakeComponent(TestStore& store) : m_store(store) {}
    [[nodiscard]] QObject* asQObject() override { return this; }
    [[nodiscard]] IHostInterface* Interface() override { return nullptr; }
    [[nodiscard]] IGridController* UpperController() override { return nullptr; }
    [[nodiscard]] IGridController* LowerController() override { return nullptr; }
    [[nodiscard]] Ref<IHostApplication> Application() override { return m_store.hostApplication(); }
    [[nodiscard]] IToolbar* Toolbar() override { return nullptr; }
    [[nodiscard]] IStatusBar* StatusBar() override { return nullptr; }

private:
    TestStore& m_store;
};

class FakeAddIn final : public INotesAddIn {
public:
    FakeAddIn(TestStore& store, Prompt& prompt)
        : m_store(store), m_component(store), m_utility(prompt),
          m_settings(store.folder() + QStringLiteral("/config")), m_services{
                                                                      store.clock(), m_settings,
                                                                      store.files(), m_utility} {}

    QStringList calls; ///< what the window told the add-in, in order
    std::map<NotesSwitch, bool> switches;
    QString templateDirectory; ///< where it is not the shipped one

    [[nodiscard]] SettingsStore& settings() { return m_settings; }

    void ShowNotes(const Ref<IRecord>&, qint64) override { calls += QStringLiteral("ShowNotes"); }
    [[nodiscard]] QString HostProgID() const override { return m_store.hostProgID(); }
    [[nodiscard]] Services& services() override { return m_services; }
    [[nodiscard]] Ref<IApplication> NotesApplication() const override {
        return m_store.applicationRef();
    }
    [[nodiscard]] QString DatabaseDirectory() const override { return m_store.folder(); }
    [[nodiscard]] QString TemplateDirectory() const override {
        return templateDirectory.isEmpty() ? m_store.templateFolder() : templateDirectory;
    }
    [[nodiscard]] bool switchOn(NotesSwitch which) const override { return switches.at(which); }
    void setSwitch(NotesSwitch which, bool on) override { switches[which] = on; }
    void setReminderTimerEnabled(bool enabled) override { note("reminder timer", enabled); }
    void setAutoNoteTimerEnabled(bool enabled) override { note("auto note timer", enabled); }
    void repaintGrids() override { calls += QStringLiteral("repaintGrids"); }

    [[nodiscard]] IHostComponent* Component() const override { return &m_component; }
    void setComponent(IHostComponent*) override {}
    [[nodiscard]] IHostInterface* IInterface() const override { return nullptr; }
    void setIInterface(IHostInterface*) override {}
    [[nodiscard]] Ref<IApplication> Application() override { return nullptr; }
    [[nodiscard]] QString Name() override { return QStringLiteral("Test add-in"); }
    [[nodiscard]] QString Version() override { return QStringLiteral("1.0.0"); }
    void AttachControls() override {}
    void DetachControls() override {}
    bool Activate() override { return true; }
    [[nodiscard]] bool Activated() override { return false; }
    void DeActivate() override {}
    [[nodiscard]] bool Initialised() override { return false; }

private:
    void note(const char* what, bool on) {
        calls += QLatin1String(what) + (on ? QStringLiteral(" on") : QStringLiteral(" off"));
    }

    TestStore& m_store;
    mutable FakeComponent m_component;
    HostUtility m_utility;
    SettingsStore m_settings;
    Services m_services;
};

} // namespace yrw::test
