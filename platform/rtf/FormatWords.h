#pragma once

#include "platform/rtf/ColourTable.h"
#include "platform/rtf/GroupStack.h"
#include "platform/rtf/Tokenizer.h"

#include <algorithm>

namespace yrw::rtf {

/// What the control words of formats change in the present group. `value` is the second column of
/// the word table.
/// Lifetime: its parser's, as is what it is given. Thread: any, one at a time.
class FormatWords {
public:
    static constexpr int kLongestLength = 31680; ///< 22 inches in twips, the most a length can be

    FormatWords(GroupState& state, const ColourTable& colours)
        : m_state(state), m_colours(colours) {}

    /// A word without a number, or with one that is not 0, turns on.
    template <bool CharFormat::*part>
    void toggle(const Token& token, int) {
        m_state.chars.*part = !token.hasNumber || token.number != 0;
    }
    void noUnderline(const Token&, int) { m_state.chars.underline = false; }
    void script(const Token& token, int value) {
        const bool on = !token.hasNumber || token.number != 0;
        m_state.chars.script = on ? static_cast<Script>(value) : Script::Normal;
    }
    void fontSize(const Token& token, int) {
        if (token.number > 0) {
            m_state.chars.halfPoints = std::min(token.number, kLargestSize);
        }
    }
    template <int CharFormat::*part>
    void colour(const Token& token, int) {
        m_state.chars.*part = m_colours.at(token.number);
    }
    /// A length in twips, of which `value` is the least.
    template <int ParFormat::*part>
    void length(const Token& token, int value) {
        m_state.pars.*part = std::clamp(token.number, value, kLongestLength);
    }
    void lineMultiple(const Token& token, int) { m_state.pars.lineMultiple = token.number != 0; }
    void style(const Token& token, int) { m_state.pars.style = std::max(0, token.number); }
    void direction(const Token&, int value) { m_state.pars.rightToLeft = value != 0; }
    void tabStop(const Token& token, int) {
        if (m_state.pars.tabs.size() < kMostTabs) {
            m_state.pars.tabs.append(std::clamp(token.number, -kLongestLength, kLongestLength));
        }
    }
    void inTable(const Token&, int) { m_state.tableLevel = std::max(m_state.tableLevel, 1); }
    void tableLevel(const Token& token, int) {
        m_state.tableLevel = std::clamp(token.number, 0, kMostNested);
    }
    void alignment(const Token&, int value) {
        m_state.pars.alignment = static_cast<Alignment>(value);
    }

private:
    static constexpr int kLargestSize = 3276; ///< half points
    static constexpr qsizetype kMostTabs = 64;

    GroupState& m_state;
    const ColourTable& m_colours;
};

} // namespace yrw::rtf
