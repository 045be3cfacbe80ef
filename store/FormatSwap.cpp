#include "store/FormatSwap.h"

#include "platform/component/AutomationError.h"
#include "platform/disk/Unfinished.h"
#include "platform/disk/WholeFile.h"
#include "platform/files/LockFile.h"
#include "platform/jet/JetFile.h"
#include "store/NotesDatabase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QThread>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace yrw {

namespace {

constexpr unsigned long kBetweenTriesMs = 50;
constexpr mode_t kReadAndWrite = 0666;
constexpr mode_t kOwner = 0600;

[[noreturn]] void fail(const QString& words) {
    throw AutomationError(kErrorFileWrite, QStringLiteral("YRWNOTES.FormatSwap"), words);
}

bool isThere(const QString& path) {
    return QFileInfo::exists(path) || QFileInfo(path).isSymLink();
}

void remove(const QString& path) {
    ::unlink(QFile::encodeName(path).constData());
}

/// What tells whether somebody has written to a file.
struct FileState {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    timespec written{};
    bool operator==(const FileState& other) const {
        return isSameFile(other) && size == other.size && written.tv_sec == other.written.tv_sec &&
               written.tv_nsec == other.written.tv_nsec;
    }
    [[nodiscard]] bool isSameFile(const FileState& other) const {
        return inode != 0 && device == other.device && inode == other.inode;
    }
};

FileState stateOf(const QString& path) {
    struct stat status {};
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0) {
        return {};
    }
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

/// Lets whoever may use the old file use the new one.
void takeRightsOf(const QString& old, const QString& made) {
    struct stat status {};
    const QByteArray name = QFile::encodeName(made);
    if (::stat(QFile::encodeName(old).constData(), &status) == 0 &&
        ::chown(name.constData(), uid_t(-1), status.st_gid) == 0) {
        ::chmod(name.constData(), (status.st_mode & kReadAndWrite) | kOwner);
    }
}

/// "Notes (old format)", and with a number from the second on.
QString oldName(int number) {
    return number == 1 ? QStringLiteral("Notes (old format)")
                       : QStringLiteral("Notes (old format %1)").arg(number);
}

/// The last number that a file has among the old ones; 0 when there is none. `ending` is a pattern.
int lastNumber(const QString& folder, const QString& ending) {
    static const QString first = QStringLiteral("Notes \\(old format( [0-9]{1,6})?\\)");
    const QRegularExpression pattern(QRegularExpression::anchoredPattern(first + ending));
    const QStringList names =
        QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
    int last = 0;
    for (const QString& name : names) {
        const QRegularExpressionMatch match = pattern.match(name);
        if (match.hasMatch()) {
            const QString number = match.captured(1);
            last = qMax(last, number.isEmpty() ? 1 : number.toInt());
        }
    }
    return last;
}

QString reportOf(const QString& oldFile) {
    return oldFile.chopped(4) + QStringLiteral(".txt");
}

bool waitFor(LockFile& lock, const FormatSwap::Waiting& waiting) {
    while (!lock.take()) {
        if (!waiting()) {
            return false;
        }
        QThread::msleep(kBetweenTriesMs);
    }
    return true;
}

} // namespace

FormatSwap::FormatSwap(const FileSystem& files, const QString& folder)
    : m_files(files), m_folder(folder), m_name(FileSystem::join(folder, kNotesDatabaseName)),
      m_working(m_name + QStringLiteral(".converted")),
      m_report(m_working + QStringLiteral(".txt")), m_lock(m_name + QStringLiteral(".converting")) {
}

/// The notes database as the disk spells it.
QString FormatSwap::place() const {
    return m_files.resolve(m_name);
}

bool FormatSwap::isOldFormat() const {
    return jet::isJetFile(place());
}

std::optional<QStringList> FormatSwap::openElsewhere() const {
    constexpr qsizetype kMostPrograms = 255;
    constexpr qsizetype kEntry = 64; // the computer and the user, 32 bytes each
    static const QRegularExpression name(QStringLiteral("^[A-Za-z0-9_.-]{1,32}"));
    QFile file(m_files.resolve(FileSystem::join(m_folder, QStringLiteral("Notes.ldb"))));
    if (!isThere(file.fileName())) {
        return std::nullopt;
    }
    QStringList computers;
    const QByteArray bytes =
        file.open(QIODevice::ReadOnly) ? file.read(kMostPrograms * kEntry) : QByteArray();
    for (qsizetype at = 0; at < bytes.size(); at += kEntry) {
        const QString entry = QString::fromLatin1(bytes.mid(at, kEntry / 2));
        computers += name.match(entry).captured();
    }
    computers.removeAll(QString());
    computers.removeDuplicates();
    return computers;
}

std::optional<ConvertedNotes> FormatSwap::finish(const Waiting& waiting) const {
    if (!isThere(m_working) && !isThere(m_lock)) {
        return std::nullopt;
    }
    const bool isMissing = !isThere(place());
    LockFile lock(m_lock);
    try {
        // Whoever holds it while the file is there has only just begun.
        if (isMissing ? !waitFor(lock, waiting) : !lock.take()) {
            return std::nullopt;
        }
    } catch (const AutomationError&) {
        if (isMissing && isThere(m_working)) {
            throw;
        }
        return std::nullopt; // who may only read leaves it to others
    }
    return settle();
}

/// Does what is left to do in the folder, while nobody else does.
std::optional<ConvertedNotes> FormatSwap::settle() const {
    const QString there = place();
    if (isThere(there)) {
        if (stateOf(there).isSameFile(stateOf(m_working))) {
            remove(m_working); // it has got its name as a second one
        } else if (jet::isJetFile(there)) {
            removeLeftOvers();
        }
        return std::nullopt;
    }
    const int last = lastNumber(m_folder, QStringLiteral("\\.mdb"));
    const QString oldFile = FileSystem::join(m_folder, oldName(last) + QStringLiteral(".mdb"));
    if (!isThere(m_working) || !jet::isJetFile(oldFile)) {
        return std::nullopt;
    }
    return placeNew(oldFile);
}

/// Removes what was made of an old file that still has its name: that one may have changed since.
void FormatSwap::removeLeftOvers() const {
    static const QString name = QRegularExpression::escape(QFileInfo(m_working).fileName());
    static const QRegularExpression pattern(QRegularExpression::anchoredPattern(
        name + QStringLiteral("(\\.txt)?(\\.unfinished-[0-9a-z]{1,13})?(-journal|-wal|-shm)?")));
    const QDir folder(m_folder);
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString& each : names.filter(pattern)) {
        remove(folder.filePath(each));
    }
}

FormatSwap::End FormatSwap::convert(const MakeNotesFile& make, const Waiting& waiting,
                                    ConvertedNotes& converted) const {
    LockFile lock(m_lock);
    if (!waitFor(lock, waiting)) {
        return End::Stopped;
    }
    if (const auto finished = settle()) {
        converted = *finished;
        return End::Converted;
    }
    const QString old = place();
    if (!jet::isJetFile(old)) {
        return End::NothingOld;
    }
    try {
        const FileState before = stateOf(old);
        const std::optional<QStringList> lost = make(old, m_working);
        if (!lost) {
            removeLeftOvers();
            return End::Stopped;
        }
        makeReady(old, *lost);
        if (!(stateOf(old) == before)) {
            fail(QStringLiteral("%1 was changed by another program while it was converted. Close "
                                "it on every computer and try again.")
                     .arg(old));
        }
        converted.oldFile = renameOld(old);
    } catch (...) {
        removeLeftOvers();
        throw;
    }
    converted = placeNew(converted.oldFile);
    return End::Converted;
}

/// Gives the new file its rights, and puts the report beside it.
void FormatSwap::makeReady(const QString& old, const QStringList& lost) const {
    takeRightsOf(old, m_working);
    if (!lost.isEmpty()) {
        const QString text = QStringLiteral("Not everything in the notes database of the older "
                                            "format arrived in the new one:\n\n") +
                             lost.join(u'\n') + u'\n';
        if (const auto problem = writeWholeFile(m_report, text.toUtf8())) {
            fail(QStringLiteral("%1 could not be written: %2").arg(m_report, *problem));
        }
    }
    syncFolderOf(m_working);
}

/// Gives the old file the first name that is free; which one.
QString FormatSwap::renameOld(const QString& old) const {
    const auto nameOf = [this](int number) {
        return FileSystem::join(m_folder, oldName(number) + QStringLiteral(".mdb"));
    };
    const QString last = nameOf(lastNumber(m_folder, QStringLiteral("\\.mdb")));
    if (stateOf(last).isSameFile(stateOf(old))) {
        remove(old); // it has got its name as a second one
        syncFolderOf(old);
        return last;
    }
    int number = lastNumber(m_folder, QStringLiteral("\\.(mdb|txt)")) + 1;
    while (!renameWithoutReplacing(old, nameOf(number))) {
        if (errno != EEXIST) {
            fail(QStringLiteral("%1 could not be renamed: %2").arg(old, qt_error_string(errno)));
        }
        ++number;
    }
    syncFolderOf(old);
    return nameOf(number);
}

/// The old file has its new name: names the report and the new file.
ConvertedNotes FormatSwap::placeNew(const QString& oldFile) const {
    ConvertedNotes converted{oldFile, reportOf(oldFile)};
    if (isThere(m_report)) {
        if (!renameWithoutReplacing(m_report, converted.report)) {
            converted.report = m_report;
        }
        syncFolderOf(m_report);
    } else if (!isThere(converted.report)) {
        converted.report.clear();
    }
    if (!placeNotesDatabase(m_files, m_working, m_name)) {
        fail(QStringLiteral("%1 was converted, but another file has taken its place. The new file "
                            "is %2, the old one %3.")
                 .arg(m_name, m_working, oldFile));
    }
    return converted;
}

} // namespace yrw
