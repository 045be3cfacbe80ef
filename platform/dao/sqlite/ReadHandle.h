#pragma once

#include <QString>

#include <ctime>
#include <memory>

struct sqlite3;

namespace yrw::dao {

/// A handle of its own on a database file, for work that only reads and stands apart from every
/// `Connection`: it waits for no lock, and nothing limits what a statement takes. It makes no file
/// where the user may not write the database.
///
/// Lifetime: closes the handle at its end; every statement must be gone by then.
class ReadHandle {
public:
    /// Raises what the engine raises, naming the file. Where nobody can be writing, since a
    /// write-ahead journal can neither be found nor made, the file is read as it is.
    explicit ReadHandle(const QString& path);

    [[nodiscard]] sqlite3* get() const noexcept { return m_handle.get(); }
    /// False when a file that is read as it is was written to since it was opened: what was read
    /// need not be of one state.
    [[nodiscard]] bool isOfOneState() const;

    /// Has a file whose description of itself is damaged in part tell the rest.
    void readDamagedSchema() noexcept;

private:
    struct Closer {
        void operator()(sqlite3* handle) const noexcept;
    };
    enum class Way { Owner, Reader, Alone };
    int open(Way way);

    QString m_path;
    std::unique_ptr<sqlite3, Closer> m_handle;
    timespec m_changed{}; ///< when the file was, before it was read alone
    bool m_isAlone = false;
};

} // namespace yrw::dao
