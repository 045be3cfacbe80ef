#include "platform/richtext/TableLimits.h"

#include <algorithm>
#include <array>
#include <vector>

namespace yrw::richtext {

namespace {

/// How often a cell is laid out each time that the cell around it is.
constexpr std::array<double, rtf::kMostNested + 1> kLayouts = {1,   3,   9,    27,  81,
                                                               243, 729, 2187, 6561};
constexpr double kCharactersPerUnit = 40; ///< as much work as a short paragraph

/// The work of the paragraphs of one outermost row, by the number of tables around them.
using Work = std::array<double, rtf::kMostNested + 1>;

/// The row of an outermost table around a row; -1 outside of all.
int outermost(const rtf::Document& document, int row) {
    while (row >= 0 && rtf::at(document.rows, row).parent >= 0) {
        row = rtf::at(document.rows, row).parent;
    }
    return row;
}

/// The paragraphs of an outermost row, from `begin` up to `end`.
struct OutermostRow {
    std::size_t begin = 0;
    std::size_t end = 0;
    int depth = 0; ///< of the innermost table
    Work work{};
};

/// Those of them that may have to be flattened.
std::vector<OutermostRow> outermostRows(const rtf::Document& document, int around) {
    const std::vector<rtf::Paragraph>& paragraphs = document.paragraphs;
    std::vector<OutermostRow> rows;
    for (std::size_t i = 0; i < paragraphs.size();) {
        const int row = outermost(document, paragraphs[i].row);
        if (row < 0) {
            ++i;
            continue;
        }
        OutermostRow found{.begin = i};
        for (; i < paragraphs.size() && outermost(document, paragraphs[i].row) == row; ++i) {
            const int tables = std::min(document.depthOf(paragraphs[i].row), rtf::kMostNested);
            found.depth = std::max(found.depth, tables);
            rtf::at(found.work, tables) += workOf(document.lengthOf(paragraphs[i]), 0);
        }
        found.end = i;
        if (found.depth > 1 || found.work[1] > kMostTableWork || around > 0) {
            rows.push_back(found);
        }
    }
    return rows;
}

/// The number of tables that a row may keep, with so much work where it holds others.
int deepestOf(Work work, double mostNested, int around) {
    const auto layouts = [around](int depth) {
        return rtf::at(kLayouts, std::min(depth - 1 + around, rtf::kMostNested));
    };
    int deepest = rtf::kMostNested;
    double all = 0;
    for (int depth = 1; depth <= deepest; ++depth) {
        all += rtf::at(work, depth) * layouts(depth);
    }
    while (deepest > 0 && (deepest + around > rtf::kMostNested ||
                           all > (deepest > 1 ? mostNested : kMostTableWork))) {
        // What lay deepest lies in the cells around it now.
        const auto at = static_cast<std::size_t>(deepest);
        all -= work[at] * layouts(deepest);
        --deepest;
        all += deepest > 0 ? work[at] * layouts(deepest) : 0;
        work[at - 1] += work[at];
    }
    return deepest;
}

void flatten(rtf::Document& document, const OutermostRow& row, int deepest) {
    for (std::size_t i = row.begin; i < row.end; ++i) {
        rtf::Paragraph& paragraph = document.paragraphs[i];
        if (document.depthOf(paragraph.row) > deepest) {
            const rtf::CellPlace place =
                deepest == 0 ? rtf::CellPlace{} : document.cellsOf(paragraph).at(deepest - 1);
            paragraph.row = place.row;
            paragraph.cell = place.cell;
        }
    }
}

} // namespace

double workOf(int characters, int tables) {
    return (1 + characters / kCharactersPerUnit) *
           rtf::at(kLayouts, std::clamp(tables, 0, rtf::kMostNested));
}

bool flattenTables(rtf::Document& document, int around) {
    const std::vector<OutermostRow> rows = outermostRows(document, around);
    const auto nested = std::count_if(rows.begin(), rows.end(),
                                      [](const OutermostRow& row) { return row.depth > 1; });
    const double mostNested =
        std::min(kMostTableWork, kMostNestedWork / std::max<double>(1, double(nested)));
    bool flattened = false;
    for (const OutermostRow& row : rows) {
        const int deepest = deepestOf(row.work, mostNested, around);
        if (row.depth > deepest) {
            flatten(document, row, deepest);
            flattened = true;
        }
    }
    return flattened;
}

void addNotice(rtf::Document& document, const QString& text) {
    rtf::CharFormat chars =
        document.charFormats.empty() ? rtf::CharFormat{} : document.charFormats.front();
    chars.italic = true;
    chars.hidden = false;
    document.charFormats.push_back(chars);
    document.parFormats.push_back({});
    const auto start = static_cast<int>(document.text.size());
    document.text += text;
    document.runs.push_back({.start = start,
                             .length = static_cast<int>(text.size()),
                             .format = static_cast<int>(document.charFormats.size()) - 1});
    document.paragraphs.insert(document.paragraphs.begin(),
                               {.firstRun = static_cast<int>(document.runs.size()) - 1,
                                .runCount = 1,
                                .format = static_cast<int>(document.parFormats.size()) - 1});
}

} // namespace yrw::richtext
