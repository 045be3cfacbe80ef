#pragma once

#include "platform/component/Event.h"

#include <QString>

#include <functional>

class QSettings;

namespace yrw {

/// The per-user settings store: texts addressed by application, section and key.
///
/// One INI file per application below `$XDG_CONFIG_HOME` (application "Yarrowen" is
/// `Yarrowen.ini`), one group per section. Each read looks at the file afresh when another program
/// has changed it. Nothing here raises: a broken file gives the defaults and is left as it is;
/// that, or that a file cannot be written, is a problem told of once, to the problem handler and by
/// `takeProblem()`.
/// Thread: the user-interface thread.
class SettingsStore {
public:
    /// Uses the current user's configuration folder.
    SettingsStore();
    /// Uses the given folder, which need not be there yet.
    explicit SettingsStore(QString folder);

    /// The stored text, or the given default when the key is absent or the file unreadable.
    [[nodiscard]] QString get(const QString& application, const QString& section,
                              const QString& key, const QString& defaultText) const;
    /// Stores a text. Returns false when it could not be written.
    bool save(const QString& application, const QString& section, const QString& key,
              const QString& text);
    /// Removes a key; no error when it is absent. Returns false when the file cannot be written.
    bool remove(const QString& application, const QString& section, const QString& key);

    /// A setting was set in this process, also one that the file cannot keep: its application,
    /// section, key and text.
    Event<const QString&, const QString&, const QString&, const QString&> Changed;

    /// One sentence that names the file when it could not be read or written, once; then empty.
    [[nodiscard]] QString takeProblem();
    /// Is called with such a sentence at the moment when it is found out; it must not raise.
    void setProblemHandler(std::function<void(const QString&)> handler);
    /// The file that holds an application's settings.
    [[nodiscard]] QString fileOf(const QString& application) const;

private:
    bool write(const QString& application, const std::function<void(QSettings&)>& change);
    void noteProblem(const QString& application, bool writing) const;

    QString m_folder;
    mutable QString m_problem;
    mutable bool m_problemTold = false;
    std::function<void(const QString&)> m_handler;
};

} // namespace yrw
