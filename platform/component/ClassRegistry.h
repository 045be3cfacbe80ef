#pragma once

#include "platform/component/ClassFactory.h"

#include <QString>

namespace yrw {

/// What the registry knows about a program id.
struct ClassRegistration {
    QString programId;   ///< e.g. "YRWNOTES.AddIn"
    QString classId;     ///< "{...}", unique to the class
    QString libraryFile; ///< absolute path of the component
};

/// The per-user class registry: program id → class id → library file.
///
/// Kept in `$XDG_DATA_HOME/yarrowen/classes.ini`; written atomically, read afresh at each call, so
/// that a registration made by another process is seen.
/// Thread: the user-interface thread.
class ClassRegistry {
public:
    /// Uses the registry file of the current user.
    ClassRegistry();
    /// Uses the given registry file.
    explicit ClassRegistry(QString file);

    [[nodiscard]] const QString& file() const noexcept { return m_file; }

    /// Writes a registration, replacing an earlier one. Raises `kErrorCannotCreateObject` when the
    /// library's path is not absolute or the file cannot be written.
    void registerClass(const ClassRegistration& registration) const;
    /// Removes a registration; no error when there is none. Raises like `registerClass`.
    void unregisterClass(const QString& programId) const;
    /// Looks a program id up. Raises `kErrorCannotCreateObject` when it is not registered, is
    /// registered with a relative path, or the file cannot be read.
    [[nodiscard]] ClassRegistration find(const QString& programId) const;

    /// Makes an object of the registered class: loads its library (for the life of the process)
    /// unless somebody else could have changed it or a folder on the way to it, asks
    /// `DllGetClassObject` for the factory, checks the contract version, makes one instance. Every
    /// failure raises `kErrorCannotCreateObject` with one sentence that says what is wrong and
    /// names the program id and the file.
    [[nodiscard]] Ref<Counted> createObject(const QString& programId) const;

private:
    QString m_file;
};

} // namespace yrw
