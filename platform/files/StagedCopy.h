#pragma once

#include <QString>

namespace yrw {

/// A complete copy of a file, on the disk under a name of its own (`makeUnfinished`) beside the
/// place it is meant for.
/// Lifetime: one block of code; what was not placed is removed at its end. Thread: any.
class StagedCopy {
public:
    /// Ways to give a file a name that nobody else has meanwhile; not every file system has each.
    enum Way : unsigned { Link = 1, Rename = 2, Claim = 4, Any = 7 };

    /// Copies `source` to the folder of `target`; both as the disk spells them. Raises
    /// `kErrorFileCopy` naming the file.
    StagedCopy(const QString& source, const QString& target);
    StagedCopy(const StagedCopy&) = delete;
    StagedCopy& operator=(const StagedCopy&) = delete;
    ~StagedCopy();

    /// Gives the copy the target's name, by the first of the ways that works. False, and nothing
    /// is changed, when something of that name is there. Raises as the constructor does.
    [[nodiscard]] bool place(unsigned ways = Any);

private:
    void copy(const QString& source);
    [[nodiscard]] bool claim() const;

    QString m_target;
    QByteArray m_targetName; ///< as the system takes it
    QByteArray m_name;       ///< of the copy, while it waits
};

} // namespace yrw
