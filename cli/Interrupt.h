#pragma once

namespace yrw {

/// Takes the wish to end the program (Ctrl+C, a plain kill) as a wish to stop what it does, so that
/// nothing half-done stays.
/// Lifetime: as long as there is something to stop; one at a time. Thread: the main thread.
class Interrupt {
public:
    Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;
    /// Signals end the program again.
    ~Interrupt();
    [[nodiscard]] bool isWished() const noexcept;
};

} // namespace yrw
