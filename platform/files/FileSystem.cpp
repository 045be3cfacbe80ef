#include "platform/files/FileSystem.h"

#include "platform/component/AutomationError.h"
#include "platform/disk/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

namespace yrw {

namespace {

constexpr qint64 kCopyBlock = 1 << 20; // bytes read at a time

[[noreturn]] void fail(const QString& description) {
    throw AutomationError(kErrorFileCopy, QStringLiteral("YRW.FileSystem"), description);
}

QString withSlashes(QString path) {
    return path.replace(u'\\', u'/');
}

/// The spelling on disk of one name in a folder; the name itself when there is none.
QString spellingOf(const QString& folder, const QString& name) {
    if (name.isEmpty() || name == u"." || name == u".." ||
        QFileInfo::exists(FileSystem::join(folder, name))) {
        return name;
    }
    const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    const QStringList names = QDir(folder).entryList(all, QDir::Name);
    for (const QString& candidate : names) {
        if (candidate.compare(name, Qt::CaseInsensitive) == 0) {
            return candidate;
        }
    }
    return name;
}

bool isWithin(const QString& path, const QString& folder) {
    const QString inner = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    return inner.startsWith(QDir::cleanPath(QFileInfo(folder).absoluteFilePath()) + u'/');
}

void makeWritable(const QString& path) {
    const QFile::Permissions permissions = QFile::permissions(path);
    QFile::setPermissions(path, permissions | QFile::WriteOwner | QFile::ReadOwner);
}

} // namespace

FileSystem::~FileSystem() = default;

QString FileSystem::resolve(const QString& path) const {
    QString wanted = withSlashes(path);
    if (QFileInfo::exists(wanted)) {
        return wanted;
    }
    const bool absolute = wanted.startsWith(u'/');
    QString found = absolute ? QStringLiteral("/") : QString();
    const QStringList parts = wanted.split(u'/', Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        const QString folder = found.isEmpty() ? QStringLiteral(".") : found;
        const QString spelled = spellingOf(folder, part);
        found = found.isEmpty() ? spelled : join(found, spelled);
    }
    return found;
}

bool FileSystem::fileExists(const QString& path) const {
    return QFileInfo(resolve(path)).isFile();
}

void FileSystem::copyFile(const QString& source, const QString& target) const {
    QFile from(resolve(source));
    if (!from.open(QIODevice::ReadOnly)) {
        fail(QStringLiteral("%1 could not be read: %2").arg(from.fileName(), from.errorString()));
    }
    const QString path = resolve(target);
    WholeFile to(path);
    const auto cannotWrite = [&] {
        fail(QStringLiteral("%1 could not be written: %2").arg(path, to.problem()));
    };
    if (!to.open()) {
        cannotWrite();
    }
    QByteArray buffer;
    do {
        buffer = from.read(kCopyBlock);
        if (from.error() != QFileDevice::NoError) {
            fail(QStringLiteral("%1 could not be read: %2")
                     .arg(from.fileName(), from.errorString()));
        }
        if (!to.write(buffer)) {
            cannotWrite();
        }
    } while (!buffer.isEmpty());
    if (!to.commit()) {
        cannotWrite();
    }
    makeWritable(path);
}

void FileSystem::copyFolder(const QString& source, const QString& target) const {
    const QString from = resolve(source);
    const QString to = resolve(target);
    if (!QFileInfo(from).isDir()) {
        fail(QStringLiteral("The folder %1 is not there.").arg(from));
    }
    if (isWithin(to, from)) {
        fail(
            QStringLiteral("The folder %1 lies in %2 and cannot take a copy of it.").arg(to, from));
    }
    if (!QDir().mkpath(to)) {
        fail(QStringLiteral("The folder %1 could not be made.").arg(to));
    }
    const QFileInfoList entries =
        QDir(from).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QFileInfo& entry : entries) {
        const QString copy = join(to, entry.fileName());
        if (entry.isDir()) {
            copyFolder(entry.filePath(), copy);
        } else {
            copyFile(entry.filePath(), copy);
        }
    }
}

QString FileSystem::moveAside(const QString& path) const {
    const QString from = resolve(path);
    if (!QFileInfo::exists(from)) {
        return {};
    }
    QString to = from + u".old";
    for (int number = 2; QFileInfo::exists(to) || QFileInfo(to).isSymLink(); ++number) {
        to = from + u".old" + QString::number(number);
    }
    if (!QFile::rename(from, to)) {
        fail(QStringLiteral("%1 could not be moved aside.").arg(from));
    }
    return to;
}

void FileSystem::takeGroupOfFolder(const QString& file) {
    struct stat folder {};
    if (::stat(QFile::encodeName(folderOf(file)).constData(), &folder) == 0 &&
        ::lchown(QFile::encodeName(file).constData(), uid_t(-1), folder.st_gid) != 0) {
        return; // the user's own group it is
    }
}

bool FileSystem::makePrivateFolder(const QString& folder) {
    if (QFileInfo(folder).isDir()) {
        return true;
    }
    return QDir().mkpath(QFileInfo(folder).absolutePath()) &&
           ::mkdir(QFile::encodeName(folder).constData(), S_IRWXU) == 0;
}

QString FileSystem::folderOf(const QString& path) {
    const QString plain = withSlashes(path);
    const qsizetype last = plain.lastIndexOf(u'/');
    return last > 0 ? plain.left(last) : plain.left(last + 1);
}

QString FileSystem::join(const QString& folder, const QString& name) {
    if (folder.isEmpty()) {
        return withSlashes(name);
    }
    QString left = withSlashes(folder);
    while (left.size() > 1 && left.endsWith(u'/')) {
        left.chop(1);
    }
    QString right = withSlashes(name);
    while (right.startsWith(u'/')) {
        right.remove(0, 1);
    }
    return left.endsWith(u'/') ? QString(left + right) : QString(left + u'/' + right);
}

} // namespace yrw
