#pragma once

#include "platform/rtf/Model.h"

#include <algorithm>
#include <array>
#include <vector>

namespace yrw::rtf {

/// The colour table of a document that is read. `colours` are the document's.
/// Thread: one at a time.
class ColourTable {
public:
    explicit ColourTable(std::vector<int>& colours) : m_colours(colours) {}

    /// Begins the table anew.
    void begin() { m_colours.clear(); }
    /// Red, green or blue (0 to 2) of the next colour.
    void part(int which, int value) {
        m_parts.at(static_cast<std::size_t>(which)) = std::clamp(value, 0, 255);
        m_isSet = true;
    }
    /// Text of the table: each semicolon ends a colour.
    void text(QStringView text) {
        for (qsizetype i = text.count(u';'); i > 0; --i) {
            m_colours.push_back(m_isSet ? m_parts[0] << 16 | m_parts[1] << 8 | m_parts[2]
                                        : kAutomatic);
            m_parts = {};
            m_isSet = false;
        }
    }
    /// The colour of an index; automatic where there is none.
    [[nodiscard]] int at(int index) const {
        return index > 0 && index < static_cast<int>(m_colours.size()) ? rtf::at(m_colours, index)
                                                                       : kAutomatic;
    }

private:
    std::vector<int>& m_colours;
    std::array<int, 3> m_parts{};
    bool m_isSet = false;
};

} // namespace yrw::rtf
