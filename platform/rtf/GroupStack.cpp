#include "platform/rtf/GroupStack.h"

#include <algorithm>
#include <utility>

namespace yrw::rtf {

namespace {

constexpr std::size_t kDeepest = 1 << 17;

} // namespace

bool GroupStack::open(qsizetype begin) {
    m_now.fresh = false;
    if (m_around.size() >= kDeepest) {
        ++m_counted;
        return false;
    }
    m_around.push_back(m_now);
    m_now.begin = begin;
    m_now.starred = false;
    m_now.fresh = true;
    m_now.isField = false;
    m_now.ownsField = false;
    return true;
}

bool GroupStack::closeCounted() {
    if (m_counted == 0) {
        return false;
    }
    --m_counted;
    return true;
}

GroupState GroupStack::leave() {
    GroupState left = std::exchange(m_now, std::move(m_around.back()));
    m_around.pop_back();
    return left;
}

void GroupStack::setFont(int font, int codePage) {
    const auto set = [&](GroupState& state) {
        state.chars.font = font;
        state.codePage = codePage;
    };
    set(m_now);
    std::for_each(m_around.begin(), m_around.end(), set);
}

} // namespace yrw::rtf
