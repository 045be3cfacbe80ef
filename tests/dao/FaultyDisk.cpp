#include "tests/dao/FaultyDisk.h"

#include <cstring>

#include <sqlite3.h>

namespace yrw::dao {

namespace {

struct State {
    sqlite3_vfs* below = nullptr;
    sqlite3_vfs shim{};
    FaultyDisk::Fault fault = FaultyDisk::Fault::None;
    int left = 0;
    bool failed = false;
    long calls = 0;
};
State& state() {
    static State instance;
    return instance;
}

/// Counts a call; true when it is to fail.
bool fails(FaultyDisk::Fault kind) {
    State& now = state();
    ++now.calls;
    const bool mine = now.fault == kind ||
                      (now.fault == FaultyDisk::Fault::Space && kind == FaultyDisk::Fault::Write);
    if (!mine || now.left-- > 0) {
        return false;
    }
    now.failed = true;
    return true;
}

/// An open file: our methods first, the file below right behind.
struct File {
    sqlite3_file base;
    sqlite3_file* below() { return reinterpret_cast<sqlite3_file*>(this + 1); }
    static File* of(sqlite3_file* file) { return reinterpret_cast<File*>(file); }
};

template <auto Method, class... Args>
int forward(sqlite3_file* file, Args... args) {
    fails(FaultyDisk::Fault::None);
    sqlite3_file* below = File::of(file)->below();
    return (below->pMethods->*Method)(below, args...);
}

int write(sqlite3_file* file, const void* data, int size, sqlite3_int64 at) {
    if (fails(FaultyDisk::Fault::Write)) {
        return state().fault == FaultyDisk::Fault::Space ? SQLITE_FULL : SQLITE_IOERR_WRITE;
    }
    sqlite3_file* below = File::of(file)->below();
    return below->pMethods->xWrite(below, data, size, at);
}

int sync(sqlite3_file* file, int flags) {
    if (fails(FaultyDisk::Fault::Sync)) {
        return SQLITE_IOERR_FSYNC;
    }
    sqlite3_file* below = File::of(file)->below();
    return below->pMethods->xSync(below, flags);
}

void barrier(sqlite3_file* file) {
    sqlite3_file* below = File::of(file)->below();
    below->pMethods->xShmBarrier(below);
}

using Io = sqlite3_io_methods;
const Io kMethods{
    3,
    &forward<&Io::xClose>,
    &forward<&Io::xRead, void*, int, sqlite3_int64>,
    &write,
    &forward<&Io::xTruncate, sqlite3_int64>,
    &sync,
    &forward<&Io::xFileSize, sqlite3_int64*>,
    &forward<&Io::xLock, int>,
    &forward<&Io::xUnlock, int>,
    &forward<&Io::xCheckReservedLock, int*>,
    &forward<&Io::xFileControl, int, void*>,
    &forward<&Io::xSectorSize>,
    &forward<&Io::xDeviceCharacteristics>,
    &forward<&Io::xShmMap, int, int, int, void volatile**>,
    &forward<&Io::xShmLock, int, int, int>,
    &barrier,
    &forward<&Io::xShmUnmap, int>,
    &forward<&Io::xFetch, sqlite3_int64, int, void**>,
    &forward<&Io::xUnfetch, sqlite3_int64, void*>,
};

int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    File* mine = File::of(file);
    mine->base.pMethods = nullptr;
    const int code = state().below->xOpen(state().below, name, mine->below(), flags, outFlags);
    if (mine->below()->pMethods != nullptr) {
        mine->base.pMethods = &kMethods;
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
    now.shim.szOsFile = int(sizeof(File)) + now.below->szOsFile;
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

long FaultyDisk::calls() const {
    return state().calls;
}

} // namespace yrw::dao
