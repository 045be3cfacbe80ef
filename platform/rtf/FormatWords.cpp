#include "platform/rtf/FormatWords.h"

#include "platform/rtf/WordValues.h"

#include <algorithm>

namespace yrw::rtf {

namespace {

constexpr int kLongestLength = 31680; ///< 22 inches in twips, the most a length can be
constexpr int kLargestSize = 3276;    ///< half points
constexpr qsizetype kMostTabs = 64;

int length(int twips) {
    return std::clamp(twips, -kLongestLength, kLongestLength);
}

} // namespace

void toggle(CharFormat& chars, const Token& token, int value) {
    const bool on = !token.hasNumber || token.number != 0;
    switch (value) {
    case kBold:
        chars.bold = on;
        break;
    case kItalic:
        chars.italic = on;
        break;
    case kUnderline:
        chars.underline = on;
        break;
    case kNoUnderline:
        chars.underline = false;
        break;
    case kStrike:
        chars.strike = on;
        break;
    case kHidden:
        chars.hidden = on;
        break;
    case kSuper:
        chars.script = on ? Script::Super : Script::Normal;
        break;
    case kSub:
        chars.script = on ? Script::Sub : Script::Normal;
        break;
    default:
        chars.script = Script::Normal;
        break;
    }
}

void setCharValue(CharFormat& chars, const Token& token, int value, const ColourTable& colours) {
    switch (value) {
    case kSuper:
    case kSub: {
        const bool raised = !token.hasNumber || token.number != 0;
        const Script script = value == kSuper ? Script::Super : Script::Sub;
        chars.script = raised ? script : Script::Normal;
        break;
    }
    case kSize:
        if (token.number > 0) {
            chars.halfPoints = std::min(token.number, kLargestSize);
        }
        break;
    case kColour:
        chars.colour = colours.at(token.number);
        break;
    default:
        chars.background = colours.at(token.number);
        break;
    }
}

void setParValue(GroupState& state, const Token& token, int value) {
    ParFormat& pars = state.pars;
    switch (value) {
    case kLeftIndent:
        pars.left = length(token.number);
        break;
    case kRightIndent:
        pars.right = length(token.number);
        break;
    case kFirstIndent:
        pars.first = length(token.number);
        break;
    case kSpaceBefore:
        pars.before = std::max(0, length(token.number));
        break;
    case kSpaceAfter:
        pars.after = std::max(0, length(token.number));
        break;
    case kLineSpacing:
        pars.lineSpacing = length(token.number);
        break;
    case kLineMultiple:
        pars.lineMultiple = token.number != 0;
        break;
    case kStyle:
        pars.style = std::max(0, token.number);
        break;
    case kInTable:
        state.tableLevel = std::max(state.tableLevel, 1);
        break;
    case kTabStop:
        if (pars.tabs.size() < kMostTabs) {
            pars.tabs.append(length(token.number));
        }
        break;
    case kTableLevel:
        state.tableLevel = std::clamp(token.number, 0, kMostNested);
        break;
    default:
        pars.rightToLeft = value == kRightToLeft;
        break;
    }
}

} // namespace yrw::rtf
