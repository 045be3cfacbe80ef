#include "platform/dao/sqlite/FilePlace.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace yrw::dao {

namespace {

bool hasContent(const QString& file) {
    struct stat status {};
    return ::lstat(QFile::encodeName(file).constData(), &status) == 0 && status.st_size > 0;
}

} // namespace

bool isThere(const QString& path) {
    struct stat status {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0;
}

std::optional<FilePlace> placeOf(const QString& file) {
    struct statx status {};
    // On a network mount what was asked a while ago may tell of a file that is there no more.
    if (::statx(AT_FDCWD, QFile::encodeName(file).constData(), AT_STATX_FORCE_SYNC,
                STATX_INO | STATX_BTIME, &status) != 0) {
        return std::nullopt;
    }
    FilePlace place;
    place.device = makedev(status.stx_dev_major, status.stx_dev_minor);
    place.inode = status.stx_ino;
    if ((status.stx_mask & STATX_BTIME) != 0) {
        place.bornNs = status.stx_btime.tv_sec * 1'000'000'000LL + status.stx_btime.tv_nsec;
    }
    return place;
}

bool isGone(const QString& file) {
    struct stat status {};
    return ::stat(QFile::encodeName(file).constData(), &status) != 0 &&
           (errno == ENOENT || errno == ENOTDIR);
}

bool hasJournalBeside(const QString& file) {
    return isThere(file + u"-wal") || isThere(file + u"-journal");
}

bool hasFullJournalBeside(const QString& file) {
    return hasContent(file + u"-wal") || hasContent(file + u"-journal");
}

} // namespace yrw::dao
