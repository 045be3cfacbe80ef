#pragma once

// The add-in as its windows see it, over a test store: writes down what it was told.

#include "framework/HostUtility.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/PromptScript.h"
#include "tests/support/StoredSettings.h"

namespace yrw::test {

class FakeAddIn final : public INotesParent {
public:
    FakeAddIn(TestStore& store, Prompt& prompt)
        : m_store(store), m_utility(prompt),
          m_settings(store.folder() + QStringLiteral("/config")) {
        m_store.setServices({store.clock(), m_settings, store.files(), prompt, m_utility});
    }

    QStringList calls; ///< what the window told the add-in, in order

    [[nodiscard]] SettingsStore& settings() { return m_settings; }

    void ShowNotes(const Ref<IRecord>&, qint64) override { calls += QStringLiteral("ShowNotes"); }
    void ShowStatus(const QString&) override {}
    [[nodiscard]] Ref<IHostApplication> hostApplication() override {
        return m_store.hostApplication();
    }

private:
    TestStore& m_store;
    HostUtility m_utility;
    SettingsStore m_settings;
};

} // namespace yrw::test
