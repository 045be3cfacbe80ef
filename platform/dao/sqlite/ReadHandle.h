#pragma once

#include <QString>

#include <memory>

struct sqlite3;

namespace yrw::dao {

/// A handle of its own on a database file, for work that only reads and stands apart from every
/// `Connection`: it waits for no lock, and nothing limits what a statement takes.
///
/// Lifetime: closes the handle at its end; every statement must be gone by then.
class ReadHandle {
public:
    /// Raises what the engine raises, naming the file. Where nobody can be writing, since a
    /// write-ahead journal can neither be found nor made, the file is read as it is.
    explicit ReadHandle(const QString& path);

    [[nodiscard]] sqlite3* get() const noexcept { return m_handle.get(); }

private:
    struct Closer {
        void operator()(sqlite3* handle) const noexcept;
    };
    int open(const QString& path, bool isImmutable);

    std::unique_ptr<sqlite3, Closer> m_handle;
};

} // namespace yrw::dao
