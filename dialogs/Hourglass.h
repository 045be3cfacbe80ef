#pragma once

#include "platform/prompt/Prompt.h"

namespace yrw {

/// Shows the hourglass pointer from its making to its end.
class Hourglass {
public:
    explicit Hourglass(Prompt& prompt) : m_prompt(prompt) {
        m_prompt.setMousePointer(MousePointer::Hourglass);
    }
    ~Hourglass() { m_prompt.setMousePointer(MousePointer::Default); }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;

private:
    Prompt& m_prompt;
};

} // namespace yrw
