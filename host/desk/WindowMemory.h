#pragma once

#include <QByteArray>
#include <QString>

namespace yrw {

class SettingsStore;

/// What the desk remembers from one run to the next, in a settings file of its own
/// (application "YarrowenDesk", section "Window").
/// Lifetime: as long as the store. Thread: the user-interface thread.
class WindowMemory {
public:
    explicit WindowMemory(SettingsStore& store) : m_store(store) {}

    [[nodiscard]] QString text(const QString& key) const;
    void setText(const QString& key, const QString& text);
    /// A window's or splitter's saved state; empty when there is none.
    [[nodiscard]] QByteArray state(const QString& key) const;
    void setState(const QString& key, const QByteArray& state);

private:
    SettingsStore& m_store;
};

} // namespace yrw
