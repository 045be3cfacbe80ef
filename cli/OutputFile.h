#pragma once

#include "platform/disk/WholeFile.h"

#include <QStringList>

namespace yrw {

/// True when two paths name one file, through links of either kind too; also where it is not there
/// yet.
[[nodiscard]] bool isSameFile(const QString& a, const QString& b);

/// Raises `kErrorInvalidOperation` naming the path when it is one of those that must not be
/// overwritten.
void requireOther(const QString& path, const QStringList& untouchable);

/// A file that a command writes: it appears under its name when it is complete and on the disk.
///
/// Lifetime: one command; without `finish` the file that was there stays.
class OutputFile {
public:
    /// Raises as `requireOther`, and `kErrorFileWrite` naming the path when it cannot be written.
    OutputFile(const QString& path, const QStringList& untouchable);

    void write(const QByteArray& bytes);
    void finish();

private:
    [[noreturn]] void fail() const;

    QString m_path;
    WholeFile m_file;
};

} // namespace yrw
