#include "platform/dao/sqlite/ReaderFiles.h"

#include <sqlite3.h>

namespace yrw::dao {

namespace {

/// The layer that talks to the disk, whatever was put before it.
sqlite3_vfs* standard() {
    return sqlite3_vfs_find("unix");
}

int openToRead(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    constexpr int kOthersFiles = SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_WAL |
                                 SQLITE_OPEN_SUPER_JOURNAL;
    constexpr int kWriting = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_DELETEONCLOSE;
    const int reading =
        (flags & kOthersFiles) != 0 ? (flags & ~kWriting) | SQLITE_OPEN_READONLY : flags;
    return standard()->xOpen(standard(), name, file, reading, outFlags);
}

int refuseToDelete(sqlite3_vfs*, const char*, int) {
    return SQLITE_IOERR_DELETE;
}

} // namespace

const char* readerFileLayer() {
    static constexpr const char* kName = "yrw-reader";
    static sqlite3_vfs layer;
    if (layer.zName == nullptr) {
        layer = *standard();
        layer.zName = kName;
        layer.pNext = nullptr;
        layer.xOpen = &openToRead;
        layer.xDelete = &refuseToDelete;
        sqlite3_vfs_register(&layer, 0);
    }
    return kName;
}

} // namespace yrw::dao
