#include "store/StoreContext.h"

namespace yrw {

StoreContext::~StoreContext() = default;

} // namespace yrw
