#include "platform/files/StagedCopy.h"

#include "platform/component/AutomationError.h"
#include "platform/disk/Unfinished.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace yrw {

namespace {

constexpr qint64 kCopyBlock = 1 << 20; // bytes read at a time
constexpr mode_t kEverybody = 0666;

[[noreturn]] void fail(const QString& file, const QString& reason) {
    throw AutomationError(kErrorFileCopy, QStringLiteral("YRW.StagedCopy"),
                          file + QStringLiteral(" could not be written: ") + reason);
}

QString systemReason() {
    return qt_error_string(errno);
}

} // namespace

StagedCopy::StagedCopy(const QString& source, const QString& target)
    : m_target(target), m_targetName(QFile::encodeName(target)) {
    try {
        copy(source);
    } catch (...) {
        ::unlink(m_name.constData());
        throw;
    }
}

StagedCopy::~StagedCopy() {
    if (!m_name.isEmpty()) {
        ::unlink(m_name.constData());
    }
}

/// Copies all of the source and has it on the disk, not only on its way there.
void StagedCopy::copy(const QString& source) {
    QFile from(source);
    if (!from.open(QIODevice::ReadOnly)) {
        throw AutomationError(
            kErrorFileCopy, QStringLiteral("YRW.StagedCopy"),
            QStringLiteral("%1 could not be read: %2").arg(source, from.errorString()));
    }
    QString name;
    const int descriptor = makeUnfinished(m_target, name, kEverybody);
    m_name = QFile::encodeName(name);
    QFile to;
    if (descriptor < 0 || !to.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered,
                                   QFileDevice::AutoCloseHandle)) {
        fail(m_target, systemReason());
    }
    QByteArray buffer;
    do {
        buffer = from.read(kCopyBlock);
        if (from.error() != QFileDevice::NoError || to.write(buffer) != buffer.size()) {
            fail(m_target,
                 from.error() != QFileDevice::NoError ? from.errorString() : to.errorString());
        }
    } while (!buffer.isEmpty());
    if (::fsync(descriptor) != 0) {
        fail(m_target, systemReason());
    }
}

bool StagedCopy::place(unsigned ways) {
    const char* const name = m_name.constData();
    const char* const target = m_targetName.constData();
    bool placed = false;
    errno = ENOSYS;
    if ((ways & Link) != 0) {
        placed = ::link(name, target) == 0;
    }
    if (!placed && errno != EEXIST && (ways & Rename) != 0) {
        placed = ::renameat2(AT_FDCWD, name, AT_FDCWD, target, RENAME_NOREPLACE) == 0;
    }
    if (!placed && errno != EEXIST && (ways & Claim) != 0) {
        placed = claim();
    }
    if (!placed) {
        if (errno == EEXIST) {
            return false;
        }
        fail(m_target, systemReason());
    }
    ::unlink(name);
    m_name.clear();
    syncFolderOf(m_target);
    return true;
}

/// Takes the name with an empty file, and replaces that. Who looks in between finds it empty.
bool StagedCopy::claim() const {
    const int claimed =
        ::open(m_targetName.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kEverybody);
    if (claimed < 0) {
        return false;
    }
    ::close(claimed);
    return ::rename(m_name.constData(), m_targetName.constData()) == 0;
}

} // namespace yrw
