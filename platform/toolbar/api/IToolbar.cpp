#include "platform/toolbar/api/IToolbar.h"

namespace yrw {

ITool::~ITool() = default;
IBand::~IBand() = default;
IToolbar::~IToolbar() = default;

} // namespace yrw
