#include "platform/rtf/CodePage.h"
#include "platform/rtf/Parser.h"
#include "platform/rtf/WordValues.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>
#include <vector>

namespace yrw::rtf {

namespace {

using P = Parser;

constexpr int number(Destination destination) {
    return static_cast<int>(destination);
}

/// Control words with handlers of their own; unknown words are ignored.
constexpr WordEntry kWords[] = {
    {"b", &P::toggle, kBold},
    {"i", &P::toggle, kItalic},
    {"ul", &P::toggle, kUnderline},
    {"uld", &P::toggle, kUnderline},
    {"uldb", &P::toggle, kUnderline},
    {"uldash", &P::toggle, kUnderline},
    {"ulth", &P::toggle, kUnderline},
    {"ulw", &P::toggle, kUnderline},
    {"ulwave", &P::toggle, kUnderline},
    {"ulnone", &P::toggle, kNoUnderline},
    {"strike", &P::toggle, kStrike},
    {"striked", &P::toggle, kStrike},
    {"v", &P::toggle, kHidden},
    {"super", &P::toggle, kSuper},
    {"sub", &P::toggle, kSub},
    {"nosupersub", &P::toggle, kNoSuperSub},
    {"up", &P::charValue, kSuper},
    {"dn", &P::charValue, kSub},
    {"fs", &P::charValue, kSize},
    {"cf", &P::charValue, kColour},
    {"cb", &P::charValue, kBackground},
    {"highlight", &P::charValue, kBackground},
    {"chcbpat", &P::charValue, kBackground},
    {"plain", &P::plain, 0},
    {"f", &P::fontNumber, 0},
    {"li", &P::parValue, kLeftIndent},
    {"lin", &P::parValue, kLeftIndent},
    {"ri", &P::parValue, kRightIndent},
    {"rin", &P::parValue, kRightIndent},
    {"fi", &P::parValue, kFirstIndent},
    {"sb", &P::parValue, kSpaceBefore},
    {"sa", &P::parValue, kSpaceAfter},
    {"sl", &P::parValue, kLineSpacing},
    {"slmult", &P::parValue, kLineMultiple},
    {"s", &P::parValue, kStyle},
    {"rtlpar", &P::parValue, kRightToLeft},
    {"ltrpar", &P::parValue, kLeftToRight},
    {"intbl", &P::parValue, kInTable},
    {"itap", &P::parValue, kTableLevel},
    {"tx", &P::tab, 0},
    {"ql", &P::alignment, static_cast<int>(Alignment::Left)},
    {"qr", &P::alignment, static_cast<int>(Alignment::Right)},
    {"qc", &P::alignment, static_cast<int>(Alignment::Center)},
    {"qj", &P::alignment, static_cast<int>(Alignment::Justify)},
    {"pard", &P::pard, 0},
    {"par", &P::paragraphEnd, 0},
    {"sect", &P::paragraphEnd, 0},
    {"page", &P::pageBreak, 0},
    {"line", &P::character, kLineBreak},
    {"tab", &P::character, '\t'},
    {"emdash", &P::character, 0x2014},
    {"endash", &P::character, 0x2013},
    {"emspace", &P::character, 0x2003},
    {"enspace", &P::character, 0x2002},
    {"qmspace", &P::character, 0x2005},
    {"bullet", &P::character, 0x2022},
    {"lquote", &P::character, 0x2018},
    {"rquote", &P::character, 0x2019},
    {"ldblquote", &P::character, 0x201C},
    {"rdblquote", &P::character, 0x201D},
    {"ltrmark", &P::character, 0x200E},
    {"rtlmark", &P::character, 0x200F},
    {"zwj", &P::character, 0x200D},
    {"zwnj", &P::character, 0x200C},
    {"u", &P::unicode, 0},
    {"uc", &P::documentValue, kSkipCount},
    {"ansicpg", &P::documentValue, kAnsiCodePage},
    {"deff", &P::documentValue, kDefaultFont},
    {"mac", &P::documentValue, kMac},
    {"pc", &P::documentValue, kPc},
    {"pca", &P::documentValue, kPca},
    {"trowd", &P::tableWord, kRowStart},
    {"cellx", &P::tableWord, kCellEdge},
    {"trgaph", &P::tableWord, kRowGap},
    {"trleft", &P::tableWord, kRowLeft},
    {"cell", &P::tableWord, kCellEnd},
    {"row", &P::tableWord, kRowEnd},
    {"nestcell", &P::tableWord, kNestedCellEnd},
    {"nestrow", &P::tableWord, kNestedRowEnd},
    {"clbrdrt", &P::tableWord, kBorders},
    {"clbrdrb", &P::tableWord, kBorders},
    {"clbrdrl", &P::tableWord, kBorders},
    {"clbrdrr", &P::tableWord, kBorders},
    {"trbrdrt", &P::tableWord, kBorders},
    {"trbrdrb", &P::tableWord, kBorders},
    {"trbrdrh", &P::tableWord, kBorders},
    {"trbrdrv", &P::tableWord, kBorders},
    {"ls", &P::listWord, kListNumber},
    {"ilvl", &P::listWord, kListLevel},
    {"pnlvlblt", &P::pnWord, static_cast<int>(ListKind::Bullet)},
    {"pnlvlbody", &P::pnWord, static_cast<int>(ListKind::Decimal)},
    {"pnlvlcont", &P::pnWord, static_cast<int>(ListKind::None)},
    {"pndec", &P::pnWord, static_cast<int>(ListKind::Decimal)},
    {"pnlcltr", &P::pnWord, static_cast<int>(ListKind::LowerLetter)},
    {"pnucltr", &P::pnWord, static_cast<int>(ListKind::UpperLetter)},
    {"pnlcrm", &P::pnWord, static_cast<int>(ListKind::LowerRoman)},
    {"pnucrm", &P::pnWord, static_cast<int>(ListKind::UpperRoman)},
    {"pnstart", &P::pnWord, kPnStart},
    {"list", &P::listTableWord, kListStart},
    {"listid", &P::listTableWord, kListId},
    {"listlevel", &P::listTableWord, kLevelStart},
    {"levelnfc", &P::listTableWord, kLevelKind},
    {"levelnfcn", &P::listTableWord, kLevelKind},
    {"levelstartat", &P::listTableWord, kLevelFirst},
    {"fcharset", &P::fontTableWord, kCharset},
    {"cpg", &P::fontTableWord, kFontCodePage},
    {"fnil", &P::fontTableWord, kFamily},
    {"froman", &P::fontTableWord, kFamily},
    {"fswiss", &P::fontTableWord, kFamily},
    {"fmodern", &P::fontTableWord, kFamily},
    {"fscript", &P::fontTableWord, kFamily},
    {"fdecor", &P::fontTableWord, kFamily},
    {"ftech", &P::fontTableWord, kFamily},
    {"fbidi", &P::fontTableWord, kFamily},
    {"red", &P::colourWord, 0},
    {"green", &P::colourWord, 1},
    {"blue", &P::colourWord, 2},
    {"fonttbl", &P::destination, number(Destination::FontTable)},
    {"colortbl", &P::destination, number(Destination::ColourTable)},
    {"pn", &P::destination, number(Destination::Pn)},
    {"pntxtb", &P::destination, number(Destination::PnBefore)},
    {"pntxta", &P::destination, number(Destination::PnAfter)},
    {"listtable", &P::destination, number(Destination::ListTable)},
    {"leveltext", &P::destination, number(Destination::ListLevelText)},
    {"listoverridetable", &P::destination, number(Destination::ListOverrides)},
    {"nesttableprops", &P::destination, number(Destination::NestedRow)},
    {"object", &P::picture, static_cast<int>(InlineKind::Object)},
    {"pict", &P::picture, static_cast<int>(InlineKind::Picture)},
    {"shppict", &P::picture, kBetterPicture},
    {"nonshppict", &P::picture, kPlainerPicture},
    {"field", &P::field, 0},
    {"fldinst", &P::instruction, 0},
    {"fldrslt", &P::destination, number(Destination::Body)},
};

/// Groups that hold no text and are not kept: what they say is known otherwise or is no use.
constexpr std::string_view kSkippedGroups[] = {
    "generator", "pntext",   "listtext",  "listname",      "levelnumbers", "nonesttables",
    "fontemb",   "fontfile", "falt",      "panose",        "fname",        "listpicture",
    "pnseclvl",  "fldtype",  "datafield", "wgrffmtfilter", "latentstyles"};
/// Groups that belong to the document as a whole.
constexpr std::string_view kHeaderGroups[] = {"info",    "stylesheet", "header",  "headerl",
                                              "headerr", "headerf",    "footer",  "footerl",
                                              "footerr", "footerf",    "filetbl", "revtbl"};
/// Groups that are kept where they stand.
constexpr std::string_view kKeptGroups[] = {
    "footnote",  "annotation", "xe",      "tc",  "tcn", "rxe",    "txe",
    "bkmkstart", "bkmkend",    "shpinst", "shp", "do",  "private"};

std::vector<WordEntry> sortedWords() {
    std::vector<WordEntry> table(std::begin(kWords), std::end(kWords));
    for (const std::string_view name : kSkippedGroups) {
        table.push_back({name, &P::destination, number(Destination::Skip)});
    }
    for (const std::string_view name : kHeaderGroups) {
        table.push_back({name, &P::keepInHeader, 0});
    }
    for (const std::string_view name : kKeptGroups) {
        table.push_back({name, &P::keepHere, 0});
    }
    std::sort(table.begin(), table.end(),
              [](const WordEntry& a, const WordEntry& b) { return a.name < b.name; });
    return table;
}

const std::vector<WordEntry>& words() {
    static const std::vector<WordEntry> sorted = sortedWords();
    return sorted;
}

/// Where the words of each first letter begin.
const std::array<std::size_t, 27>& letters() {
    static const std::array<std::size_t, 27> starts = [] {
        std::array<std::size_t, 27> found{};
        const auto& table = words();
        for (std::size_t letter = 0; letter < found.size(); ++letter) {
            found[letter] = static_cast<std::size_t>(
                std::count_if(table.begin(), table.end(), [letter](const WordEntry& entry) {
                    return static_cast<std::size_t>(entry.name[0] - 'a') < letter;
                }));
        }
        return found;
    }();
    return starts;
}

} // namespace

WordEntry findWord(QByteArrayView name) {
    const std::string_view key(name.data(), static_cast<std::size_t>(name.size()));
    if (key.empty() || key[0] < 'a' || key[0] > 'z') {
        return {};
    }
    const auto& table = words();
    const auto letter = static_cast<std::size_t>(key[0] - 'a');
    const auto begin = table.begin() + static_cast<std::ptrdiff_t>(letters()[letter]);
    const auto end = table.begin() + static_cast<std::ptrdiff_t>(letters()[letter + 1]);
    const auto found =
        std::lower_bound(begin, end, key, [](const WordEntry& entry, std::string_view wanted) {
            return entry.name < wanted;
        });
    return found != end && found->name == key ? *found : WordEntry{};
}

} // namespace yrw::rtf
