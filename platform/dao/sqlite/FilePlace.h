#pragma once

#include <QString>

#include <optional>

namespace yrw::dao {

/// Which file a path leads to.
struct FilePlace {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 bornNs = 0; ///< when the file was made; 0 where the file system does not tell

    /// The same file as far as a running program can tell.
    [[nodiscard]] bool isSameOpenFile(const FilePlace& other) const noexcept {
        return device == other.device && inode == other.inode;
    }
};

/// The file at a path; nothing when there is none or it cannot be asked.
[[nodiscard]] std::optional<FilePlace> placeOf(const QString& file);
/// True when something lies at a path, be it a link to nothing.
[[nodiscard]] bool isThere(const QString& path);
/// True when there is surely no file at a path.
[[nodiscard]] bool isGone(const QString& file);
/// True when a journal lies beside a database file.
[[nodiscard]] bool hasJournalBeside(const QString& file);
/// True when one lies there that holds anything: who has opened a file but not written yet keeps an
/// empty one.
[[nodiscard]] bool hasFullJournalBeside(const QString& file);

} // namespace yrw::dao
