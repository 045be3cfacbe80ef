#pragma once

#include <QByteArray>
#include <QSaveFile>
#include <QString>

#include <optional>

namespace yrw {

/// A file that is written whole or not at all.
///
/// What is written goes into a file of another name beside it. `commit` sees to it that every byte
/// has reached the disk before that one takes the place of the old; until then, and whenever
/// anything fails, the old file stays as it was and nothing is left beside it. A link is followed.
/// Lifetime: one file, written once. Thread: any, one at a time.
class WholeFile {
public:
    explicit WholeFile(const QString& path);

    /// False when no file can be made there. A new file is for its user alone where `isPrivate`.
    bool open(bool isPrivate = false);
    /// False, now and from then on, when the disk did not take the bytes.
    bool write(const QByteArray& bytes);
    /// Puts the file in its place; false when it is not whole, and then the old one is there.
    bool commit();
    /// What went wrong, in the system's words.
    [[nodiscard]] const QString& problem() const noexcept { return m_problem; }

private:
    bool fail();

    QSaveFile m_file;
    QString m_problem;
};

/// Writes a file whole or not at all; what went wrong, or nothing when it is there.
[[nodiscard]] std::optional<QString> writeWholeFile(const QString& path, const QByteArray& bytes,
                                                    bool isPrivate = false);

/// True when so many more bytes can be written beside a file now. For writers that replace the file
/// themselves and do not look whether their last bytes arrived.
[[nodiscard]] bool hasRoomBeside(const QString& path, qint64 bytes);

} // namespace yrw
