#pragma once

#include "addin/Module1.h"

namespace yrw {

/// Where one add-in stands in its process: at work or not, and behind another one or not.
/// Lifetime: a member of its `AddIn`. Thread: the user-interface thread.
class Standing {
public:
    Standing(Module1& module, const INeighbour& addIn) : m_module(module), m_addIn(addIn) {}

    /// From a successful `Activate` until what it did is taken back.
    [[nodiscard]] bool isAtWork() const noexcept { return m_atWork; }
    void setAtWork(bool atWork) noexcept { m_atWork = atWork; }
    /// True while it is at work and the shared database is open.
    [[nodiscard]] bool isDatabaseOpen() const { return m_atWork && m_module.isDatabaseOpen(); }
    /// True while another add-in, activated before it, serves the same host.
    [[nodiscard]] bool isBehind() const noexcept { return m_module.isBehind(m_addIn); }

private:
    Module1& m_module;
    const INeighbour& m_addIn;
    bool m_atWork = false;
};

} // namespace yrw
