#include "platform/rtf/Lists.h"

#include "platform/rtf/WordValues.h"

#include <algorithm>

namespace yrw::rtf {

namespace {

ListKind kindOfNumber(int number) {
    switch (number) {
    case 1:
        return ListKind::UpperRoman;
    case 2:
        return ListKind::LowerRoman;
    case 3:
        return ListKind::UpperLetter;
    case 4:
        return ListKind::LowerLetter;
    case 23:
        return ListKind::Bullet;
    case 255:
        return ListKind::None;
    default:
        return ListKind::Decimal;
    }
}

/// The text behind the last number of a level: "\2\0.;" gives ".".
QString textAfterNumber(const QByteArray& level) {
    qsizetype last = -1;
    for (qsizetype i = 1; i < level.size(); ++i) {
        last = static_cast<unsigned char>(level[i]) < 9 ? i : last;
    }
    QByteArray after = last < 0 ? QByteArray() : level.mid(last + 1);
    after.truncate(std::max<qsizetype>(after.indexOf(';'), 0));
    return QString::fromLatin1(after);
}

} // namespace

void Lists::word(const Token& token, int value, bool inTable) {
    if (value == kListId) {
        m_listId = token.number;
        if (inTable) {
            m_lists[m_listId] = m_levels;
        }
        return;
    }
    if (!inTable) {
        return;
    }
    if (value == kListStart) {
        m_levels.clear();
    } else if (value == kLevelStart) {
        m_levels.resize(std::min<std::size_t>(m_levels.size() + 1, 9));
    } else if (!m_levels.empty()) {
        if (value == kLevelKind) {
            m_levels.back().kind = kindOfNumber(token.number);
        } else {
            m_levels.back().start = std::clamp(token.number, 0, 32767);
        }
    }
}

void Lists::levelText(QStringView text) {
    if (hasLevel()) { // a list table inside the text begins anew
        m_levels.back().text += text.toLatin1();
    }
}

void Lists::apply(ParFormat& format, int number, int level) const {
    const auto override = m_overrides.find(number);
    const auto list =
        override == m_overrides.end() ? m_lists.end() : m_lists.find(override->second);
    if (list == m_lists.end() || list->second.empty()) {
        format.list = ListKind::None;
        return;
    }
    const int last = static_cast<int>(list->second.size()) - 1;
    const Level& found = at(list->second, std::clamp(level, 0, last));
    format.list = found.kind;
    format.listStart = found.start;
    format.listBefore.clear();
    const bool numbered = found.kind != ListKind::Bullet && found.kind != ListKind::None;
    format.listAfter = numbered ? textAfterNumber(found.text) : QString();
}

void Lists::itemWord(const Token& token, int value) {
    if (value == kPnStart) {
        m_item.listStart = std::clamp(token.number, 0, 32767);
    } else {
        m_item.list = static_cast<ListKind>(value);
    }
}

void Lists::itemText(QStringView text, bool before) {
    (before ? m_item.listBefore : m_item.listAfter) += text;
}

void Lists::endItem(ParFormat& format) const {
    const bool bullet = m_item.list == ListKind::Bullet;
    format.list = m_item.list;
    format.listStart = m_item.listStart;
    format.listBefore = bullet ? QString() : m_item.listBefore;
    format.listAfter = bullet ? QString() : m_item.listAfter;
}

} // namespace yrw::rtf
