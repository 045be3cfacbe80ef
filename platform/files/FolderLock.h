#pragma once

#include <QString>

namespace yrw {

/// Keeps other processes that want the same folder's lock waiting, for five seconds at the most and
/// as far as the file system knows locks.
/// Lifetime: as long as the folder is to be kept. Thread: any.
class FolderLock {
public:
    explicit FolderLock(const QString& folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    int m_folder;
};

} // namespace yrw
