#pragma once

// The texts behind the typed settings, as another program reads and writes them.

#include "framework/Settings.h"

namespace yrw::test {

/// The setting of that key, which must be one of the table's.
inline const SettingKey& settingNamed(QStringView key) {
    for (const SettingKey* each : NotesSettings::table()) {
        if (key == QStringView(each->key)) {
            return *each;
        }
    }
    qFatal("no setting of that name");
}

inline QString sectionOf(const SettingKey& which) {
    return which.section == SettingSection::Own ? QStringLiteral("YRWNotes Options")
                                                : QStringLiteral("YRWNotes Settings");
}

/// The stored text, or the given one where there is none.
inline QString storedText(const SettingsStore& store, const QString& key,
                          const QString& absent = {}) {
    return store.get(QStringLiteral("Yarrowen"), sectionOf(settingNamed(key)), key, absent);
}

inline void storeText(SettingsStore& store, const QString& key, const QString& text) {
    store.save(QStringLiteral("Yarrowen"), sectionOf(settingNamed(key)), key, text);
}

} // namespace yrw::test
