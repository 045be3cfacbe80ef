#include "platform/disk/Unfinished.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace yrw {

namespace {

constexpr time_t kLongAgo = 3600; // seconds without a write: whoever began it has ended
const QString kMark = QStringLiteral(".unfinished-");

} // namespace

QString unfinishedName(const QString& path) {
    return path + kMark + QString::number(QRandomGenerator::system()->generate64(), 36);
}

int makeUnfinished(const QString& path, QString& name, mode_t mode) {
    name = unfinishedName(path);
    const int file = ::open(QFile::encodeName(name).constData(),
                            O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    if (file >= 0) {
        removeUnfinished(path, name);
    }
    return file;
}

void removeUnfinished(const QString& path, const QString& own) {
    struct stat now {};
    if (::lstat(QFile::encodeName(own).constData(), &now) != 0) {
        return;
    }
    const QFileInfo place(path);
    const QRegularExpression leftOver(
        QRegularExpression::anchoredPattern(QRegularExpression::escape(place.fileName() + kMark) +
                                            QStringLiteral("[0-9a-z]{1,13}(-journal|-wal|-shm)?")));
    const QDir folder(place.absolutePath());
    const QStringList names =
        folder.entryList(QDir::Files | QDir::Hidden | QDir::System).filter(leftOver);
    for (const QString& name : names) {
        const QByteArray file = QFile::encodeName(folder.filePath(name));
        struct stat status {};
        // Both times are the file system's own.
        if (::lstat(file.constData(), &status) == 0 && S_ISREG(status.st_mode) &&
            now.st_mtime - status.st_mtime > kLongAgo) {
            ::unlink(file.constData());
        }
    }
}

bool renameWithoutReplacing(const QString& from, const QString& to) {
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) ==
        0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return false;
    }
    // Not every file system can do both at once.
    if (::link(source.constData(), target.constData()) == 0) {
        ::unlink(source.constData());
        return true;
    }
    struct stat status {};
    if (errno == EEXIST || ::lstat(target.constData(), &status) == 0) {
        errno = EEXIST;
        return false;
    }
    return ::rename(source.constData(), target.constData()) == 0;
}

void syncFolderOf(const QString& path) {
    const QByteArray name = QFile::encodeName(QFileInfo(path).absolutePath());
    const int folder = ::open(name.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
}

} // namespace yrw
