#pragma once

#include "platform/rtf/Model.h"
#include "platform/rtf/Tokenizer.h"

#include <unordered_map>
#include <vector>

namespace yrw::rtf {

/// The lists of a document that is read: those of its list table, by the numbers under which
/// paragraphs name them, and those that stand before an item.
/// Thread: one at a time.
class Lists {
public:
    /// A word of the list table, of the overrides when `inTable` is false.
    void word(const Token& token, int value, bool inTable);
    /// True while a level of a list is read, whose text may come.
    [[nodiscard]] bool hasLevel() const { return !m_levels.empty(); }
    void levelText(QStringView text);
    /// Gives the list that is read a number for paragraphs.
    void nameList(int number) { m_overrides[number] = m_listId; }
    /// Puts a paragraph into the list of a number, at a level; out of all lists where there is
    /// none.
    void apply(ParFormat& format, int number, int level) const;

    /// What stands before an item and says all about its list: the words, the text before or after
    /// the number, and the end, which puts a paragraph into that list.
    void beginItem() { m_item = ParFormat{}; }
    void itemWord(const Token& token, int value);
    void itemText(QStringView text, bool before);
    void endItem(ParFormat& format) const;

private:
    struct Level {
        ListKind kind = ListKind::None;
        int start = 1;
        QByteArray text;
    };

    std::unordered_map<int, std::vector<Level>> m_lists; ///< by list id
    std::unordered_map<int, int> m_overrides;            ///< list id by number
    std::vector<Level> m_levels;                         ///< of the list that is read
    int m_listId = 0;
    ParFormat m_item; ///< the list of the item that is read
};

} // namespace yrw::rtf
