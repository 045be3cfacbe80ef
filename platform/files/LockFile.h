#pragma once

#include <QString>

namespace yrw {

/// A file that only one program at a time can hold, on this machine or, where the file system has
/// locks for all who share it, on any. There while it is held; what a killed program left of it
/// locks nobody out.
/// Lifetime: one block of code; let go and removed at its end. Thread: any, one at a time.
class LockFile {
public:
    explicit LockFile(QString path) : m_path(std::move(path)) {}
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;
    ~LockFile();

    /// Takes it unless another program has it; waits for nobody. True when it is held now. Raises
    /// `kErrorFileWrite` naming the file when it cannot be made.
    [[nodiscard]] bool take();

private:
    QString m_path;
    int m_file = -1; ///< while it is held
};

} // namespace yrw
