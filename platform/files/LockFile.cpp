#include "platform/files/LockFile.h"

#include "platform/component/AutomationError.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace yrw {

namespace {

constexpr mode_t kEverybody = 0666; // whoever shares the folder may have to take over what is left

/// False when another program holds it. Where the file system knows no locks, nobody does.
bool lock(int file) {
    struct flock whole {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    return ::fcntl(file, F_OFD_SETLK, &whole) == 0 || (errno != EAGAIN && errno != EACCES);
}

/// True when a name still leads to the open file: who held it last has removed it else.
bool isStillNamed(int file, const QByteArray& name) {
    struct stat open {};
    struct stat named {};
    return ::fstat(file, &open) == 0 && ::lstat(name.constData(), &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

} // namespace

LockFile::~LockFile() {
    if (m_file >= 0) {
        ::unlink(QFile::encodeName(m_path).constData());
        ::close(m_file);
    }
}

bool LockFile::take() {
    const QByteArray name = QFile::encodeName(m_path);
    while (m_file < 0) {
        const int file =
            ::open(name.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, kEverybody);
        if (file < 0) {
            throw AutomationError(
                kErrorFileWrite, QStringLiteral("YRW.LockFile"),
                QStringLiteral("%1 could not be made: %2").arg(m_path, qt_error_string(errno)));
        }
        if (!lock(file)) {
            ::close(file);
            return false;
        }
        if (isStillNamed(file, name)) {
            m_file = file;
            ::fchmod(file, kEverybody); // whatever the user's mask leaves
        } else {
            ::close(file);
        }
    }
    return true;
}

} // namespace yrw
