#include "platform/component/Counted.h"

namespace yrw {

Counted::~Counted() = default;

void Counted::release() const noexcept {
    if (--m_count == 0) {
        delete this;
    }
}

} // namespace yrw
