#pragma once

#include <QString>

namespace yrw {

/// Keeps other processes that want the same folder's lock waiting, for a second at the most and as
/// far as the file system knows locks.
/// Lifetime: as long as the folder is to be kept. Thread: any.
class FolderLock {
public:
    explicit FolderLock(const QString& folder);
    /// False when another process has kept the lock for all that time.
    [[nodiscard]] bool isHeld() const noexcept { return m_isHeld; }
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    int m_folder;
    bool m_isHeld = true;
};

} // namespace yrw
