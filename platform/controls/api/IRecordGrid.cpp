#include "platform/controls/api/IRecordGrid.h"

namespace yrw {

IGridSplits::~IGridSplits() = default;
IRecordGrid::~IRecordGrid() = default;
IStatusBar::~IStatusBar() = default;

} // namespace yrw
