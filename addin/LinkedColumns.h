#pragma once

#include "framework/HostDataHelper.h"
#include "platform/controls/api/IRecordGrid.h"

namespace yrw {

/// The column of a grid in which the flag of a record with notes is drawn: the first visible one
/// that the notes database defines as linked in this layout, else the visible one bound to
/// "RecordID", else none (-1). One query per visible column: never call it while painting.
[[nodiscard]] int findFlagColumn(const HostDataHelper& helper, const IRecordGrid& grid,
                                 const QString& layoutName);

/// A column that may be the current one in place of the flag column: the current column itself
/// where it is not the flag column, else the first visible other one; -1 for none.
[[nodiscard]] int columnBeside(const IRecordGrid& grid, int flagColumn);

} // namespace yrw
