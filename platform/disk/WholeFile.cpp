#include "platform/disk/WholeFile.h"

#include "platform/disk/Unfinished.h"

#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace yrw {

namespace {

constexpr int kMostLinks = 40; ///< as the system has it
constexpr mode_t kForUser = S_IRUSR | S_IWUSR;
constexpr mode_t kForEverybody = 0666;
constexpr mode_t kRights = 0777;

/// True when what was written lies on the disk, or where the disk knows no such promise.
bool reachedDisk(int handle) {
    return ::fsync(handle) == 0 || errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
}

/// Where a path leads in the end; that file need not be there.
QString withoutLinks(QString path) {
    for (int links = 0; links < kMostLinks && QFileInfo(path).isSymLink(); ++links) {
        path = QFileInfo(path).symLinkTarget();
    }
    return path;
}

QByteArray nameOf(int descriptor) {
    return "/proc/self/fd/" + QByteArray::number(descriptor);
}

/// A file without a name in the folder of a path; -1 where that cannot be, or could not be named.
int openNameless(const QString& path, mode_t mode) {
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    const int file = ::open(folder.constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, mode);
    if (file >= 0 && ::access(nameOf(file).constData(), F_OK) != 0) {
        ::close(file);
        return -1;
    }
    return file;
}

} // namespace

WholeFile::WholeFile(const QString& path) : m_path(withoutLinks(path)) {}

WholeFile::~WholeFile() {
    discard();
}

bool WholeFile::open(bool isPrivate) {
    const QByteArray name = QFile::encodeName(m_path);
    struct stat there {};
    if (::stat(name.constData(), &there) != 0) {
        return openFor(isPrivate ? kForUser : kForEverybody);
    }
    if (S_ISDIR(there.st_mode)) {
        return fail(qt_error_string(EISDIR));
    }
    if (::access(name.constData(), W_OK) != 0) {
        return fail(qt_error_string(errno));
    }
    m_isDirect = !S_ISREG(there.st_mode);
    if (m_isDirect) {
        m_file.setFileName(m_path);
        return m_file.open(QIODevice::WriteOnly) || fail();
    }
    const mode_t mode = isPrivate ? kForUser : there.st_mode & kRights;
    // Until it has the right mode nobody else may open it.
    return openFor(kForUser) &&
           (::fchmod(m_file.handle(), mode) == 0 || fail(qt_error_string(errno)));
}

bool WholeFile::openFor(mode_t mode) {
    int file = openNameless(m_path, mode);
    if (file < 0) {
        file = makeUnfinished(m_path, m_unfinished, mode);
    }
    if (file < 0) {
        m_unfinished.clear();
        return fail(qt_error_string(errno));
    }
    return m_file.open(file, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle) || fail();
}

bool WholeFile::write(const QByteArray& bytes) {
    return m_problem.isEmpty() && (m_file.write(bytes) == bytes.size() || fail());
}

bool WholeFile::commit() {
    if (!m_problem.isEmpty()) {
        return false;
    }
    if (!m_file.flush()) {
        return fail();
    }
    if (!reachedDisk(m_file.handle())) {
        return fail(qt_error_string(errno));
    }
    if (!m_isDirect && !giveName()) {
        return fail(qt_error_string(errno));
    }
    m_unfinished.clear();
    m_file.close();
    return true;
}

bool WholeFile::giveName() {
    if (m_unfinished.isEmpty()) {
        // A link cannot take the place of a file, only a rename can.
        m_unfinished = unfinishedName(m_path);
        if (::linkat(AT_FDCWD, nameOf(m_file.handle()).constData(), AT_FDCWD,
                     QFile::encodeName(m_unfinished).constData(), AT_SYMLINK_FOLLOW) != 0) {
            return false;
        }
    }
    return ::rename(QFile::encodeName(m_unfinished).constData(),
                    QFile::encodeName(m_path).constData()) == 0;
}

bool WholeFile::fail() {
    return fail(m_file.errorString());
}

bool WholeFile::fail(const QString& problem) {
    m_problem = problem;
    discard();
    return false;
}

void WholeFile::discard() {
    m_file.close();
    if (!m_unfinished.isEmpty()) {
        ::unlink(QFile::encodeName(m_unfinished).constData());
        m_unfinished.clear();
    }
}

std::optional<QString> writeWholeFile(const QString& path, const QByteArray& bytes,
                                      bool isPrivate) {
    WholeFile file(path);
    if (file.open(isPrivate) && file.write(bytes) && file.commit()) {
        return std::nullopt;
    }
    return file.problem();
}

bool hasRoomBeside(const QString& path, qint64 bytes) {
    QTemporaryFile file(QFileInfo(path).absolutePath() + QStringLiteral("/.room-XXXXXX"));
    return file.open() && file.write(QByteArray(qsizetype(bytes), '\0')) == bytes && file.flush();
}

} // namespace yrw
