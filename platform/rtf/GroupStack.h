#pragma once

#include "platform/rtf/Model.h"

#include <vector>

namespace yrw::rtf {

/// Where the text of a group goes.
enum class Destination : quint8 {
    Body,
    Skip,
    FontTable,
    ColourTable,
    Pn,
    PnBefore,
    PnAfter,
    ListTable,
    ListLevelText,
    ListOverrides,
    NestedRow ///< the format of a row inside a cell
};

/// What a group inherits from the one around it.
struct GroupState {
    CharFormat chars;
    ParFormat pars;
    qsizetype begin = 0;       ///< offset of the group's brace
    qsizetype fieldStart = 0;  ///< length of the text where the field began
    size_t fieldParagraph = 0; ///< number of paragraphs before it
    int codePage = 0;          ///< of the current font; 0: the document's
    int uc = 1;                ///< items to skip after \u
    int field = -1;
    int listNumber = 0; ///< \ls
    int listLevel = 0;  ///< \ilvl
    Destination destination = Destination::Body;
    int tableLevel = 0;     ///< number of tables around the paragraph
    bool starred = false;   ///< the group began with \*
    bool fresh = false;     ///< nothing was read in the group yet
    bool isField = false;   ///< a \field group
    bool ownsField = false; ///< its instruction was read before any text
};

/// The groups that are open, with the state of each. Groups beyond the deepest that is kept apart
/// are only counted and read in its state, so that memory stays bounded.
/// Thread: one at a time.
class GroupStack {
public:
    /// The state of the innermost group.
    [[nodiscard]] GroupState& now() { return m_now; }
    /// The state of the group around it; only where `depth` is above 0.
    [[nodiscard]] GroupState& around() { return m_around.back(); }
    [[nodiscard]] std::size_t depth() const { return m_around.size(); }
    /// True while groups are open that are only counted.
    [[nodiscard]] bool isTooDeep() const { return m_counted > 0; }

    /// Opens a group whose brace stands at an offset. False when it is only counted.
    bool open(qsizetype begin);
    /// Closes a group that is only counted; false when none is open.
    bool closeCounted();
    /// Leaves the innermost group for the one around it, and gives its state; only where `depth`
    /// is above 0.
    GroupState leave();
    /// Gives all open groups a font, by its index and its code page.
    void setFont(int font, int codePage);

private:
    GroupState m_now;
    std::vector<GroupState> m_around;
    qsizetype m_counted = 0;
};

} // namespace yrw::rtf
