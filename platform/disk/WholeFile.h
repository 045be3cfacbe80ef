#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <optional>

namespace yrw {

/// A file that is written whole or not at all.
///
/// What is written goes into a file without a name, where the file system can do that, else into
/// one of another name beside it (`makeUnfinished`). `commit` sees to it that every byte has
/// reached the disk before that one takes the place of the old; until then, and whenever anything
/// fails or the program is killed, the old file stays as it was. A link is followed; a device or a
/// pipe is written to directly.
/// Lifetime: one file, written once. Thread: any, one at a time.
class WholeFile {
public:
    explicit WholeFile(const QString& path);
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;
    ~WholeFile();

    /// False when no file can be made there. It takes the mode of the one that is there; a new one
    /// that of the user's mask. With `isPrivate` it is for its user alone.
    bool open(bool isPrivate = false);
    /// False, now and from then on, when the disk did not take the bytes.
    bool write(const QByteArray& bytes);
    /// Puts the file in its place; false when it is not whole, and then the old one is there.
    bool commit();
    /// What went wrong, in the system's words.
    [[nodiscard]] const QString& problem() const noexcept { return m_problem; }

private:
    bool openFor(mode_t mode);
    bool giveName();
    bool fail();
    bool fail(const QString& problem);
    void discard();

    QString m_path;       ///< links resolved
    QString m_unfinished; ///< name of the file that is written; empty while it has none
    QFile m_file;
    bool m_isDirect = false;
    QString m_problem;
};

/// Writes a file whole or not at all; what went wrong, or nothing when it is there.
[[nodiscard]] std::optional<QString> writeWholeFile(const QString& path, const QByteArray& bytes,
                                                    bool isPrivate = false);

/// True when so many more bytes can be written beside a file now. For writers that replace the file
/// themselves and do not look whether their last bytes arrived.
[[nodiscard]] bool hasRoomBeside(const QString& path, qint64 bytes);

} // namespace yrw
