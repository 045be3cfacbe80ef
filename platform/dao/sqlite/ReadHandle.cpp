#include "platform/dao/sqlite/ReadHandle.h"

#include "platform/dao/sqlite/Statement.h"

#include <QFileInfo>
#include <QUrl>

#include <sqlite3.h>

namespace yrw::dao {

void ReadHandle::Closer::operator()(sqlite3* handle) const noexcept {
    sqlite3_close_v2(handle);
}

ReadHandle::ReadHandle(const QString& path) {
    int code = open(path, false);
    const bool cannotJoin = (code & 0xff) == SQLITE_CANTOPEN || (code & 0xff) == SQLITE_READONLY;
    if (cannotJoin && !QFileInfo::exists(path + QStringLiteral("-wal"))) {
        code = open(path, true);
    }
    if (code != SQLITE_OK) {
        raiseEngineError(m_handle.get(), code);
    }
}

/// Opens and reads a first page; the engine's code. A damaged file opens.
int ReadHandle::open(const QString& path, bool isImmutable) {
    const QByteArray name =
        isImmutable ? "file:" + QUrl::toPercentEncoding(path, "/") + "?immutable=1" : path.toUtf8();
    sqlite3* handle = nullptr;
    int code = sqlite3_open_v2(
        name.constData(), &handle,
        SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX | (isImmutable ? SQLITE_OPEN_URI : 0), nullptr);
    m_handle.reset(handle);
    if (code == SQLITE_OK) {
        sqlite3_extended_result_codes(handle, 1);
        code = sqlite3_exec(handle, "PRAGMA user_version", nullptr, nullptr, nullptr);
    }
    return (code & 0xff) == SQLITE_CORRUPT ? SQLITE_OK : code;
}

} // namespace yrw::dao
