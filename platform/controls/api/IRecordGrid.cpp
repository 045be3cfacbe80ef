#include "platform/controls/api/IRecordGrid.h"

namespace yrw {

IRecordGrid::~IRecordGrid() = default;
IStatusBar::~IStatusBar() = default;

} // namespace yrw
