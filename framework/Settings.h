#pragma once

#include "platform/settings/SettingsStore.h"

#include <QString>

#include <span>

namespace yrw {

/// Section of the per-user settings that a key lies in.
enum class SettingSection {
    Notes, ///< "YRWNotes Settings", shared with other programs that know these keys
    Own,   ///< "YRWNotes Options", what this add-in alone knows
};

/// One key of the per-user settings.
struct SettingKey {
    const char16_t* key;
    const char16_t* defaultText;
    const char* meaning;
    SettingSection section = SettingSection::Notes;
};

/// The per-user settings of the notes add-in: application "Yarrowen", two sections. A key that the
/// table does not have lies in the first. Booleans are stored as "True" or "False".
class NotesSettings {
public:
    explicit NotesSettings(SettingsStore& store) : m_store(store) {}

    /// Every key with its default, meaning and section.
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
