#pragma once

#include <QByteArray>

#include <vector>

namespace yrw::test {

/// A note that asks for more than it is worth: small ones that unfold, and ones of 10 MB.
struct HostileNote {
    const char* name;
    QByteArray (*make)();
};

[[nodiscard]] const std::vector<HostileNote>& hostileNotes();

/// How the opening of one of them went, in a process of its own.
struct Opening {
    int longestMs = 0;     ///< the longest time without a look at the user's Stop
    int wholeMs = 0;       ///< until it was painted for the first time
    int peakMegabytes = 0; ///< of the whole process, whatever was laid out later included
    bool finished = false; ///< false for one that hung or died
};
[[nodiscard]] Opening openInChild(const char* name);

/// True when this process is such a child.
[[nodiscard]] bool isHostileChild();
int runHostileChild();

} // namespace yrw::test
