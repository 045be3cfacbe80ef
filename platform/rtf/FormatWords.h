#pragma once

#include "platform/rtf/ColourTable.h"
#include "platform/rtf/GroupStack.h"
#include "platform/rtf/Tokenizer.h"

namespace yrw::rtf {

// What the control words of formats change; `value` tells which word it is.

void toggle(CharFormat& chars, const Token& token, int value);
void setCharValue(CharFormat& chars, const Token& token, int value, const ColourTable& colours);
void setParValue(GroupState& state, const Token& token, int value);

} // namespace yrw::rtf
