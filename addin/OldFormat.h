#pragma once

#include <QString>

namespace yrw {

class AddInHost;
class FormatSwap;
class Module1;
struct ConvertedNotes;

/// A notes database of the older format where the host's should be: asks whether it is to be
/// converted, and does it with progress. Asks no second time while it is at it, for whichever
/// add-in of the process.
/// Lifetime: a member of its `NotesOpening`. Thread: the user-interface thread.
class OldFormat {
public:
    OldFormat(Module1& module, AddInHost& host) : m_module(module), m_host(host) {}
    OldFormat(const OldFormat&) = delete;
    OldFormat& operator=(const OldFormat&) = delete;

    /// Completes a conversion that was ended half way. Raises when that cannot be done.
    void finish(const QString& folder);
    /// True when the notes database of a folder is of the older format; ask it of one that is none
    /// of this version.
    [[nodiscard]] bool isAt(const QString& folder) const;
    /// Asks, and converts on Yes; a failure is told. True when none of the older format is there
    /// afterwards, converted here or by somebody else meanwhile.
    [[nodiscard]] bool convert(const QString& folder);

private:
    [[nodiscard]] bool isWanted(const FormatSwap& swap) const;
    [[nodiscard]] bool run(const FormatSwap& swap);
    void tellOf(const ConvertedNotes& converted) const;

    Module1& m_module;
    AddInHost& m_host;
};

} // namespace yrw
