#include "tests/dao/FaultyDisk.h"

#include <map>

#include <sqlite3.h>

namespace yrw::dao {

namespace {

struct State {
    sqlite3_vfs* below = nullptr;
    sqlite3_vfs shim{};
    sqlite3_io_methods real{}; ///< whose writing and syncing is ours
    /// The methods of files, by those that they would have, with ours among them.
    std::map<const sqlite3_io_methods*, sqlite3_io_methods> methods;
    FaultyDisk::Fault fault = FaultyDisk::Fault::None;
    int left = 0;
    bool failed = false;
};
State& state() {
    static State instance;
    return instance;
}

/// True when a call is to fail.
bool fails(FaultyDisk::Fault kind) {
    State& now = state();
    const bool mine = now.fault == kind ||
                      (now.fault == FaultyDisk::Fault::Space && kind == FaultyDisk::Fault::Write);
    if (!mine || now.left-- > 0) {
        return false;
    }
    now.failed = true;
    return true;
}

int write(sqlite3_file* file, const void* data, int size, sqlite3_int64 at) {
    if (fails(FaultyDisk::Fault::Write)) {
        return state().fault == FaultyDisk::Fault::Space ? SQLITE_FULL : SQLITE_IOERR_WRITE;
    }
    return state().real.xWrite(file, data, size, at);
}

int sync(sqlite3_file* file, int flags) {
    return fails(FaultyDisk::Fault::Sync) ? SQLITE_IOERR_FSYNC : state().real.xSync(file, flags);
}

int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    State& now = state();
    const int code = now.below->xOpen(now.below, name, file, flags, outFlags);
    if (file->pMethods != nullptr) {
        now.real = *file->pMethods;
        sqlite3_io_methods& mine = now.methods.try_emplace(file->pMethods, now.real).first->second;
        mine.xWrite = &write;
        mine.xSync = &sync;
        file->pMethods = &mine;
    }
    return code;
}

} // namespace

FaultyDisk::FaultyDisk() {
    State& now = state();
    now = State();
    now.below = sqlite3_vfs_find("unix");
    now.shim = *now.below;
    now.shim.pNext = nullptr;
    now.shim.zName = "faulty";
    now.shim.xOpen = &open;
    sqlite3_vfs_register(&now.shim, 1);
}

FaultyDisk::~FaultyDisk() {
    sqlite3_vfs_unregister(&state().shim);
    sqlite3_vfs_register(sqlite3_vfs_find("unix"), 1);
}

void FaultyDisk::failAfter(Fault fault, int calls) {
    state().fault = fault;
    state().left = calls;
    state().failed = false;
}

bool FaultyDisk::hasFailed() const {
    return state().failed;
}

} // namespace yrw::dao
