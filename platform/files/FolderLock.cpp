#include "platform/files/FolderLock.h"

#include <QFile>
#include <QThread>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace yrw {

namespace {

constexpr int kTries = 100;
constexpr unsigned long kPauseMs = 10;

} // namespace

FolderLock::FolderLock(const QString& folder)
    : m_folder(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    for (int i = 0; m_folder >= 0; ++i) {
        m_isHeld = ::flock(m_folder, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
        if (m_isHeld || i == kTries) {
            return;
        }
        QThread::msleep(kPauseMs);
    }
}

FolderLock::~FolderLock() {
    if (m_folder >= 0) {
        ::close(m_folder);
    }
}

} // namespace yrw
