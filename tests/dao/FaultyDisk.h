#pragma once

#include <ostream>

namespace yrw::dao {

/// A file layer between the engine and the disk that can fail on purpose.
///
/// While it lives it serves every database that is opened; one at a time.
class FaultyDisk {
public:
    enum class Fault { None, Write, Sync, Space };

    FaultyDisk();
    ~FaultyDisk();
    FaultyDisk(const FaultyDisk&) = delete;
    FaultyDisk& operator=(const FaultyDisk&) = delete;

    /// From the n-th call of its kind on (0 for the next), every one fails.
    void failAfter(Fault fault, int calls);
    void heal() { failAfter(Fault::None, 0); }
    /// True when a call has failed since `failAfter`.
    [[nodiscard]] bool hasFailed() const;
};

/// What the names of tests call a fault.
inline void PrintTo(FaultyDisk::Fault fault, std::ostream* stream) {
    static const char* const kNames[] = {"none", "write", "sync", "space"};
    *stream << kNames[int(fault)];
}

} // namespace yrw::dao
