#pragma once

#include "platform/settings/SettingsStore.h"

#include <QString>

#include <span>

namespace yrw {

/// One key of the per-user settings.
struct SettingKey {
    const char16_t* key;
    const char16_t* defaultText;
    const char* meaning;
};

/// The per-user settings of the notes add-in: application "Yarrowen", section "YRWNotes Settings".
/// Booleans are stored as "True" or "False".
class NotesSettings {
public:
    explicit NotesSettings(SettingsStore& store) : m_store(store) {}

    /// Every key of the section with its default and meaning.
    [[nodiscard]] static std::span<const SettingKey> table();

    /// The stored text; the table's default when absent.
    [[nodiscard]] QString text(const QString& key) const;
    /// The stored text; the given default when absent.
    [[nodiscard]] QString text(const QString& key, const QString& defaultText) const;
    /// The stored text as a Boolean; what is not Boolean text gives the table's default.
    [[nodiscard]] bool boolean(const QString& key) const;
    void setText(const QString& key, const QString& text);
    void setBoolean(const QString& key, bool value);
    void remove(const QString& key);

private:
    SettingsStore& m_store;
};

} // namespace yrw
