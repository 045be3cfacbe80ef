#include "platform/settings/SettingsStore.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>

#include <utility>

namespace yrw {

SettingsStore::SettingsStore()
    : SettingsStore(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)) {}

SettingsStore::SettingsStore(QString folder) : m_folder(std::move(folder)) {}

SettingsStore::~SettingsStore() = default;

QString SettingsStore::fileOf(const QString& application) const {
    return m_folder + u'/' + application + u".ini";
}

QString SettingsStore::get(const QString& application, const QString& section, const QString& key,
                           const QString& defaultText) const {
    // A QSettings object per call: it shares its cache with the others of the same file and
    // re-reads the file only when its time stamp moved.
    QSettings file(fileOf(application), QSettings::IniFormat);
    file.sync();
    if (file.status() != QSettings::NoError) {
        noteProblem(application, false);
        return defaultText;
    }
    return file.value(section + u'/' + key, defaultText).toString();
}

bool SettingsStore::save(const QString& application, const QString& section, const QString& key,
                         const QString& text) {
    QDir().mkpath(m_folder);
    QSettings file(fileOf(application), QSettings::IniFormat);
    file.setValue(section + u'/' + key, text);
    file.sync();
    if (file.status() != QSettings::NoError) {
        noteProblem(application, true);
        return false;
    }
    return true;
}

bool SettingsStore::remove(const QString& application, const QString& section, const QString& key) {
    QSettings file(fileOf(application), QSettings::IniFormat);
    file.remove(section + u'/' + key);
    file.sync();
    if (file.status() != QSettings::NoError) {
        noteProblem(application, true);
        return false;
    }
    return true;
}

void SettingsStore::noteProblem(const QString& application, bool writing) const {
    if (m_problemTold) {
        return;
    }
    m_problemTold = true;
    m_problem = (writing ? QStringLiteral("The settings file could not be written: %1")
                         : QStringLiteral("The settings file could not be read, so the defaults "
                                          "are used: %1"))
                    .arg(fileOf(application));
}

QString SettingsStore::takeProblem() {
    return std::exchange(m_problem, QString());
}

} // namespace yrw
