#pragma once

#include "addin/Module1.h"
#include "addin/OldFormat.h"
#include "store/Schema.h"

namespace yrw {

/// Opens the notes database of one add-in's host, and offers to make one where there is none
/// and to convert one of the older format.
/// Lifetime: a member of its `AddIn`, as is the host. Thread: the user-interface thread.
class NotesOpening {
public:
    NotesOpening(Module1& module, AddInHost& host) : m_module(module), m_host(host) {}
    NotesOpening(const NotesOpening&) = delete;
    NotesOpening& operator=(const NotesOpening&) = delete;

    /// Opens the database in the folder of the host's own unless it is open already. A failure is
    /// reported.
    void OpenDatabase();
    /// False when another add-in, the first at work, works with the notes of another folder; the
    /// user is told which.
    [[nodiscard]] bool mayOpen(const INeighbour* first);
    /// Background of marked rows, &H00BBGGRR, as it was when the database was opened.
    [[nodiscard]] int highlightColour() const noexcept { return m_highlightColour; }

private:
    void openDatabaseOfHost();
    [[nodiscard]] bool openUnlessOld(const Ref<dao::Workspace>& workspace, const QString& folder,
                                     const QString& path);
    bool CreateNotesDatabase(const QString& path);
    void takeUserNames();

    Module1& m_module;
    AddInHost& m_host;
    OldFormat m_oldFormat{m_module, m_host};
    int m_highlightColour = schema::kDefaultHighlight;
};

} // namespace yrw
