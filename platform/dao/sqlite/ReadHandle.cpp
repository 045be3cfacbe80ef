#include "platform/dao/sqlite/ReadHandle.h"

#include "platform/dao/sqlite/FilePlace.h"
#include "platform/dao/sqlite/Journal.h"
#include "platform/dao/sqlite/ReaderFiles.h"
#include "platform/dao/sqlite/Statement.h"
#include "platform/files/FileSystem.h"

#include <QFile>
#include <QUrl>

#include <sqlite3.h>
#include <sys/stat.h>

namespace yrw::dao {

namespace {

timespec changeOf(const QString& path) {
    struct stat status {};
    ::stat(QFile::encodeName(path).constData(), &status);
    return status.st_mtim;
}

} // namespace

void ReadHandle::Closer::operator()(sqlite3* handle) const noexcept {
    sqlite3_close_v2(handle);
}

ReadHandle::ReadHandle(const QString& path) : m_path(path) {
    const bool isOwner = mayWrite(path) && mayWrite(FileSystem::folderOf(path));
    int code = open(isOwner ? Way::Owner : Way::Reader);
    const bool cannotJoin = (code & 0xff) == SQLITE_CANTOPEN || (code & 0xff) == SQLITE_READONLY;
    if (cannotJoin && !hasJournalBeside(path)) {
        m_changed = changeOf(path);
        m_isAlone = true;
        code = open(Way::Alone);
    }
    if (code != SQLITE_OK) {
        raiseEngineError(m_handle.get(), code);
    }
}

/// Opens and reads a first page; the engine's code. A damaged file opens.
int ReadHandle::open(Way way) {
    QByteArray name = "file:" + QUrl::toPercentEncoding(m_path, "/");
    if (way != Way::Owner) {
        name += way == Way::Alone ? "?immutable=1" : "?readonly_shm=1";
    }
    sqlite3* handle = nullptr;
    int code = sqlite3_open_v2(name.constData(), &handle,
                               SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_URI,
                               way == Way::Owner ? nullptr : readerFileLayer());
    m_handle.reset(handle);
    if (code == SQLITE_OK) {
        sqlite3_extended_result_codes(handle, 1);
        code = sqlite3_exec(handle, "PRAGMA user_version", nullptr, nullptr, nullptr);
    }
    return (code & 0xff) == SQLITE_CORRUPT ? SQLITE_OK : code;
}

void ReadHandle::readDamagedSchema() noexcept {
    sqlite3_exec(m_handle.get(), "PRAGMA writable_schema = ON", nullptr, nullptr, nullptr);
}

bool ReadHandle::isOfOneState() const {
    const timespec now = changeOf(m_path);
    return !m_isAlone || (!hasFullJournalBeside(m_path) && now.tv_sec == m_changed.tv_sec &&
                          now.tv_nsec == m_changed.tv_nsec);
}

} // namespace yrw::dao
