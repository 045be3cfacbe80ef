#pragma once

#include "platform/dao/sqlite/FilePlace.h"
#include "platform/dao/sqlite/LockWaits.h"
#include "platform/dao/sqlite/SqlLimits.h"

#include <QString>
#include <QVariant>

#include <memory>
#include <optional>

struct sqlite3;

namespace yrw::dao {

/// A file that is open in the embedded engine.
///
/// Lifetime: closes the file at its end; every statement must be gone by then.
/// Thread: the user-interface thread.
class SqliteFile {
public:
    /// A reader makes and changes no file. An immutable one reads the file alone, past a journal
    /// beside it, and takes no locks.
    enum class Access { ReadWrite, Reader, Immutable };

    /// Opens a file and sets up what belongs to a connection, but reads nothing yet.
    SqliteFile(const QString& path, Access access, Clock& clock);
    ~SqliteFile();
    SqliteFile(const SqliteFile&) = delete;
    SqliteFile& operator=(const SqliteFile&) = delete;

    [[nodiscard]] sqlite3* handle() const noexcept { return m_handle.get(); }
    [[nodiscard]] const QString& path() const noexcept { return m_path; }
    [[nodiscard]] Clock& clock() const noexcept { return m_clock; }
    [[nodiscard]] LockWaits& lockWaits() noexcept { return m_waits; }

    /// Runs one statement that returns nothing.
    void execute(const QString& sql) const;
    /// First column of the first row; Null when there is none.
    [[nodiscard]] QVariant scalar(const QString& sql) const;

    /// False once another file lies at the path, or none, so that nobody else sees what is written.
    [[nodiscard]] bool isInPlace() const;
    /// Raises `kErrorFileReplaced` then.
    void requireInPlace() const;

    /// For an immutable file: notices when a journal appears beside it. One that lies there already
    /// belongs to another file and is passed over.
    void watchForJournal();
    /// True once that happened, until the file is opened anew: others may begin to write at any
    /// time, and then the file alone does not tell what is committed.
    [[nodiscard]] bool hasNewJournal() const;
    /// Goes on as a reader. Every statement must be gone.
    void reopenAsReader();

private:
    struct Closer {
        void operator()(sqlite3* connection) const noexcept;
    };
    void open(Access access);

    Clock& m_clock;
    QString m_path;
    SqlLimits m_limits;
    LockWaits m_waits;
    std::unique_ptr<sqlite3, Closer> m_handle;
    std::optional<FilePlace> m_place; ///< of the file that is open
    bool m_watchesJournal = false;
    std::optional<FilePlace> m_foreignJournal;
};

} // namespace yrw::dao
