#include "store/DailyCopy.h"

#include "store/NotesDatabase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace yrw {

namespace {

constexpr int kKept = 7;
constexpr mode_t kFolderBits = 02777;

/// Makes a folder with mode and group of the one that it lies in. Raises when it is a link or
/// cannot be made.
void makeFolder(const QString& parent, const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    struct stat around {};
    if (::mkdir(name.constData(), 0700) == 0 &&
        ::stat(QFile::encodeName(parent).constData(), &around) == 0) {
        mode_t mode = around.st_mode & kFolderBits;
        if (::chown(name.constData(), uid_t(-1), around.st_gid) != 0) {
            mode &= ~mode_t(S_IRWXG);
        }
        ::chmod(name.constData(), mode);
    }
    struct stat made {};
    if (::lstat(name.constData(), &made) != 0 || !S_ISDIR(made.st_mode)) {
        throw AutomationError(
            kErrorFileWrite, QStringLiteral("YRWNOTES.DailyCopy"),
            QStringLiteral("%1 is no folder, and the day's copy of the notes lies in none.")
                .arg(path));
    }
}

} // namespace

DailyCopy::DailyCopy(const Ref<dao::Database>& database, const QDate& today)
    : m_database(database), m_folder(FileSystem::join(FileSystem::folderOf(database->Name()),
                                                      QStringLiteral("Backups/Notes"))),
      m_path(m_folder + QStringLiteral("/Notes %1.mdb").arg(today.toString(Qt::ISODate))) {}

DailyCopy::~DailyCopy() {
    m_backup.reset();
    unlock();
}

bool DailyCopy::step(int milliseconds) {
    if (!std::exchange(m_hasBegun, true)) {
        const Ref<dao::Database> database = std::exchange(m_database, nullptr);
        if (database->isReadOnly() || QFileInfo::exists(m_path)) {
            return false;
        }
        const QString folder = FileSystem::folderOf(database->Name());
        makeFolder(folder, FileSystem::folderOf(m_folder));
        makeFolder(FileSystem::folderOf(m_folder), m_folder);
        if (!lock() || QFileInfo::exists(m_path)) {
            return false; // another program was faster
        }
        removeLeftOvers();
        m_backup = database->beginBackup(m_path, dao::ExistingCopy::Keep);
        return true;
    }
    if (!m_backup || m_backup->step(milliseconds)) {
        return m_backup != nullptr;
    }
    m_backup.reset();
    m_isMade = true;
    removeOld();
    unlock();
    return false;
}

bool DailyCopy::lock() {
    const QByteArray name = QFile::encodeName(m_folder + QStringLiteral("/.making"));
    constexpr int flags = O_NOFOLLOW | O_CLOEXEC | O_CREAT | O_RDWR;
    m_lock = ::open(name.constData(), flags, 0666);
    return m_lock >= 0 && ::flock(m_lock, LOCK_EX | LOCK_NB) == 0;
}

void DailyCopy::unlock() noexcept {
    if (m_lock >= 0) {
        ::close(m_lock);
        m_lock = -1;
    }
}

void DailyCopy::removeLeftOvers() const {
    // The lock is held: whoever began one of these has ended.
    static const QRegularExpression unfinished(
        QStringLiteral("^Notes \\d{4}-\\d\\d-\\d\\d\\.mdb\\.unfinished-\\w+$"));
    const QDir folder(m_folder);
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden).filter(unfinished);
    for (const QString& name : names) {
        QFile::remove(folder.filePath(name));
    }
}

void DailyCopy::removeOld() const {
    static const QRegularExpression ofADay(QStringLiteral("^Notes \\d{4}-\\d\\d-\\d\\d\\.mdb$"));
    const QDir folder(m_folder);
    QStringList days = folder.entryList(QDir::Files, QDir::Name).filter(ofADay);
    while (days.size() > kKept) {
        QFile::remove(folder.filePath(days.takeFirst()));
    }
}

} // namespace yrw
