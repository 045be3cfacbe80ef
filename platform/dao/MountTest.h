#pragma once

#include <QString>

namespace yrw::dao {

/// Tells whether a file lies on another machine, where the engine's write-ahead journal cannot be
/// shared.
///
/// Thread: any; the standard one has no state.
class MountTest {
public:
    virtual ~MountTest();
    /// True for network file systems and for those of which nothing is known but that a program
    /// serves them; false when the file system cannot be asked.
    [[nodiscard]] virtual bool isNetwork(const QString& path) const;
};

} // namespace yrw::dao
