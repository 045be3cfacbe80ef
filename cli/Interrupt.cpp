#include "cli/Interrupt.h"

#include <csignal>

namespace yrw {

namespace {

volatile std::sig_atomic_t wished = 0;

void wish(int) {
    wished = 1;
}

} // namespace

Interrupt::Interrupt() {
    wished = 0;
    std::signal(SIGINT, wish);
    std::signal(SIGTERM, wish);
}

Interrupt::~Interrupt() {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
}

bool Interrupt::isWished() const noexcept {
    return wished != 0;
}

} // namespace yrw
