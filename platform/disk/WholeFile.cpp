#include "platform/disk/WholeFile.h"

#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <unistd.h>

namespace yrw {

namespace {

/// True when what was written lies on the disk, or where the disk knows no such promise.
bool reachedDisk(int handle) {
    return ::fsync(handle) == 0 || errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
}

} // namespace

WholeFile::WholeFile(const QString& path) : m_file(path) {}

bool WholeFile::open(bool isPrivate) {
    if (!m_file.open(QIODevice::WriteOnly)) {
        return fail();
    }
    if (isPrivate) {
        m_file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }
    return true;
}

bool WholeFile::write(const QByteArray& bytes) {
    return m_problem.isEmpty() && (m_file.write(bytes) == bytes.size() || fail());
}

bool WholeFile::commit() {
    if (!m_problem.isEmpty()) {
        return false;
    }
    // Committing alone does not tell whether the last bytes, still held back, were written.
    if (!m_file.flush()) {
        return fail();
    }
    if (!reachedDisk(m_file.handle())) {
        m_problem = qt_error_string(errno);
        m_file.cancelWriting();
        return false;
    }
    return m_file.commit() || fail();
}

bool WholeFile::fail() {
    m_problem = m_file.errorString();
    m_file.cancelWriting();
    return false;
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
