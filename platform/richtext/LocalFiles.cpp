#include "platform/richtext/LocalFiles.h"

#include "platform/component/AutomationError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace yrw::richtext {

namespace {

[[noreturn]] void cannotEmbed(const QString& reason) {
    throw AutomationError(kErrorCannotCreateObject, QStringLiteral("RichTextBox"), reason);
}

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

QString sizeText(qint64 bytes) {
    constexpr qint64 kKilobyte = 1024;
    constexpr qint64 kMegabyte = kKilobyte * kKilobyte;
    return bytes >= kMegabyte ? QStringLiteral("%1 MB").arg(bytes / kMegabyte)
                              : QStringLiteral("%1 KB").arg((bytes + kKilobyte - 1) / kKilobyte);
}

QByteArray contentOfFile(const QString& path, qint64 largest) {
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists()) {
        cannotEmbed(QStringLiteral("The file \"%1\" does not exist.").arg(path));
    }
    // Another program may put a pipe in a file's place at any time: what was opened is looked at,
    // and opening does not wait for it.
    const int handle = ::open(QFile::encodeName(path).constData(), // NOLINT: as the system has it
                              O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    struct stat opened {};
    QFile file;
    if (handle < 0 || ::fstat(handle, &opened) != 0 ||
        !file.open(handle, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        cannotEmbed(QStringLiteral("The file \"%1\" cannot be read: %2")
                        .arg(path, QString::fromLocal8Bit(std::strerror(errno))));
    }
    if (!S_ISREG(opened.st_mode)) {
        cannotEmbed(QStringLiteral("\"%1\" is not a file.").arg(path));
    }
    if (opened.st_size > largest) {
        cannotEmbed(QStringLiteral("The file \"%1\" has %2; at most %3 can be embedded.")
                        .arg(path, sizeText(opened.st_size), sizeText(largest)));
    }
    const QByteArray content = file.read(largest + 1);
    if (file.error() != QFileDevice::NoError || content.size() > largest) {
        cannotEmbed(QStringLiteral("The file \"%1\" could not be read whole.").arg(path));
    }
    return content;
}

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
