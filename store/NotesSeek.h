#pragma once

#include "platform/dao/Database.h"

#include <array>

namespace yrw {

/// The keys of the owner index: program id of the host, object key, record id, status.
using OwnerKeys = std::array<QVariant, 4>;

/// Answers whether a host record has an active note, by one index seek in the notes table.
///
/// The table is opened once, on first need, and kept until `close`; both grids share it.
/// Thread: the user-interface thread.
class NotesSeek {
public:
    /// Opens the table of a database unless it is open already. Raises what opening raises.
    void open(const Ref<dao::Database>& database);
    void close() noexcept;
    [[nodiscard]] bool isOpen() const { return m_recordset && m_recordset->isOpen(); }
    /// True when a note with these keys exists; false when the table is not open. Raises what the
    /// seek raises.
    [[nodiscard]] bool hasNote(const OwnerKeys& keys);

private:
    Ref<dao::Recordset> m_recordset;
};

} // namespace yrw
