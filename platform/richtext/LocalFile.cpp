#include "platform/richtext/LocalFile.h"

#include "platform/component/AutomationError.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

namespace yrw::richtext {

namespace {

[[noreturn]] void cannotEmbed(const QString& reason) {
    throw AutomationError(kErrorCannotCreateObject, QStringLiteral("RichTextBox"), reason);
}

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

} // namespace yrw::richtext
