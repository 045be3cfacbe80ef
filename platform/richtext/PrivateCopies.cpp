#include "platform/richtext/PrivateCopies.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace yrw::richtext {

namespace {

const QString kPattern = QStringLiteral("yarrowen-XXXXXX");
const QString kAnyFolder = QStringLiteral("yarrowen-??????");
const QString kOwner = QStringLiteral("/owner");

/// A file whose lock tells that its program lives; the lock goes with the program, however it ends.
class OwnerLock {
public:
    explicit OwnerLock(const QString& folder, int flags = 0)
        : m_file(::open(QFile::encodeName(folder + kOwner).constData(),
                        O_RDWR | O_CLOEXEC | O_NOFOLLOW | flags, S_IRUSR | S_IWUSR)),
          m_locked(m_file >= 0 && ::flock(m_file, LOCK_EX | LOCK_NB) == 0) {}
    ~OwnerLock() {
        if (m_file >= 0) {
            ::close(m_file);
        }
    }
    OwnerLock(const OwnerLock&) = delete;
    OwnerLock& operator=(const OwnerLock&) = delete;
    [[nodiscard]] bool isLocked() const noexcept { return m_locked; }

private:
    int m_file;
    bool m_locked;
};

} // namespace

QString makePrivateFolder() {
    static const QTemporaryDir root(QDir::tempPath() + u'/' + kPattern);
    static const OwnerLock owner(root.path(), O_CREAT | O_EXCL);
    static int number = 0;
    const QString folder = root.filePath(QString::number(++number));
    return root.isValid() && QDir().mkpath(folder) ? folder : QString();
}

QString writePrivateCopy(const QString& name, const QByteArray& data) {
    // Two objects of one name, or one whose copy is still open, do not meet.
    const QString folder = makePrivateFolder();
    if (folder.isEmpty()) {
        return {};
    }
    QFile file(folder + u'/' + name);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.flush()) {
        return {};
    }
    file.setPermissions(QFileDevice::ReadOwner);
    return file.fileName();
}

void removeLeftCopies() {
    const QFileInfoList folders =
        QDir(QDir::tempPath()).entryInfoList({kAnyFolder}, QDir::Dirs | QDir::NoSymLinks);
    for (const QFileInfo& folder : folders) {
        // One without an owner is being made.
        if (folder.ownerId() == ::getuid() && OwnerLock(folder.filePath()).isLocked()) {
            QDir(folder.filePath()).removeRecursively();
        }
    }
}

} // namespace yrw::richtext
