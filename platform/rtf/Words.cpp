#include "platform/rtf/Parser.h"
#include "platform/rtf/WordValues.h"

#include <string_view>
#include <unordered_map>

namespace yrw::rtf {

namespace {

using P = Parser;

template <typename Number>
constexpr int number(Number value) {
    return static_cast<int>(value);
}

/// Words that one handler takes alike; the names stand apart by blanks.
struct WordGroup {
    Parser::Handler handler;
    int value;
    const char* names;
};

/// Unknown words are ignored.
constexpr WordGroup kWords[] = {
    {&P::toggle<&CharFormat::bold>, 0, "b"},
    {&P::toggle<&CharFormat::italic>, 0, "i"},
    {&P::toggle<&CharFormat::underline>, 0, "ul uld uldb uldash ulth ulw ulwave"},
    {&P::noUnderline, 0, "ulnone"},
    {&P::toggle<&CharFormat::strike>, 0, "strike striked"},
    {&P::toggle<&CharFormat::hidden>, 0, "v"},
    {&P::script, number(Script::Super), "super up"},
    {&P::script, number(Script::Sub), "sub dn"},
    {&P::script, number(Script::Normal), "nosupersub"},
    {&P::fontSize, 0, "fs"},
    {&P::colour<&CharFormat::colour>, 0, "cf"},
    {&P::colour<&CharFormat::background>, 0, "cb highlight chcbpat"},
    {&P::plain, 0, "plain"},
    {&P::fontNumber, 0, "f"},
    {&P::length<&ParFormat::left>, -P::kLongestLength, "li lin"},
    {&P::length<&ParFormat::right>, -P::kLongestLength, "ri rin"},
    {&P::length<&ParFormat::first>, -P::kLongestLength, "fi"},
    {&P::length<&ParFormat::before>, 0, "sb"},
    {&P::length<&ParFormat::after>, 0, "sa"},
    {&P::length<&ParFormat::lineSpacing>, -P::kLongestLength, "sl"},
    {&P::lineMultiple, 0, "slmult"},
    {&P::style, 0, "s"},
    {&P::direction, 1, "rtlpar"},
    {&P::direction, 0, "ltrpar"},
    {&P::inTable, 0, "intbl"},
    {&P::tableLevel, 0, "itap"},
    {&P::tabStop, 0, "tx"},
    {&P::alignment, number(Alignment::Left), "ql"},
    {&P::alignment, number(Alignment::Right), "qr"},
    {&P::alignment, number(Alignment::Center), "qc"},
    {&P::alignment, number(Alignment::Justify), "qj"},
    {&P::pard, 0, "pard"},
    {&P::paragraphEnd, 0, "par sect"},
    {&P::pageBreak, 0, "page"},
    {&P::character, kLineBreak, "line"},
    {&P::character, '\t', "tab"},
    {&P::character, 0x2014, "emdash"},
    {&P::character, 0x2013, "endash"},
    {&P::character, 0x2003, "emspace"},
    {&P::character, 0x2002, "enspace"},
    {&P::character, 0x2005, "qmspace"},
    {&P::character, 0x2022, "bullet"},
    {&P::character, 0x2018, "lquote"},
    {&P::character, 0x2019, "rquote"},
    {&P::character, 0x201C, "ldblquote"},
    {&P::character, 0x201D, "rdblquote"},
    {&P::character, 0x200E, "ltrmark"},
    {&P::character, 0x200F, "rtlmark"},
    {&P::character, 0x200D, "zwj"},
    {&P::character, 0x200C, "zwnj"},
    {&P::unicode, 0, "u"},
    {&P::skipCount, 0, "uc"},
    {&P::defaultFont, 0, "deff"},
    {&P::codePage, 0, "ansicpg"},
    {&P::codePage, 10000, "mac"},
    {&P::codePage, 437, "pc"},
    {&P::codePage, 850, "pca"},
    {&P::tableWord, kRowStart, "trowd"},
    {&P::tableWord, kCellEdge, "cellx"},
    {&P::tableWord, kRowGap, "trgaph"},
    {&P::tableWord, kRowLeft, "trleft"},
    {&P::tableWord, kCellEnd, "cell"},
    {&P::tableWord, kRowEnd, "row"},
    {&P::tableWord, kNestedCellEnd, "nestcell"},
    {&P::tableWord, kNestedRowEnd, "nestrow"},
    {&P::tableWord, kBorders, "clbrdrt clbrdrb clbrdrl clbrdrr trbrdrt trbrdrb trbrdrh trbrdrv"},
    {&P::listWord, kListNumber, "ls"},
    {&P::listWord, kListLevel, "ilvl"},
    {&P::pnWord, number(ListKind::Bullet), "pnlvlblt"},
    {&P::pnWord, number(ListKind::Decimal), "pnlvlbody pndec"},
    {&P::pnWord, number(ListKind::None), "pnlvlcont"},
    {&P::pnWord, number(ListKind::LowerLetter), "pnlcltr"},
    {&P::pnWord, number(ListKind::UpperLetter), "pnucltr"},
    {&P::pnWord, number(ListKind::LowerRoman), "pnlcrm"},
    {&P::pnWord, number(ListKind::UpperRoman), "pnucrm"},
    {&P::pnWord, kPnStart, "pnstart"},
    {&P::listTableWord, kListStart, "list"},
    {&P::listTableWord, kListId, "listid"},
    {&P::listTableWord, kLevelStart, "listlevel"},
    {&P::listTableWord, kLevelKind, "levelnfc levelnfcn"},
    {&P::listTableWord, kLevelFirst, "levelstartat"},
    {&P::fontTableWord, kCharset, "fcharset"},
    {&P::fontTableWord, kFontCodePage, "cpg"},
    {&P::fontTableWord, kFamily, "fnil froman fswiss fmodern fscript fdecor ftech fbidi"},
    {&P::colourWord, 0, "red"},
    {&P::colourWord, 1, "green"},
    {&P::colourWord, 2, "blue"},
    {&P::destination, number(Destination::FontTable), "fonttbl"},
    {&P::destination, number(Destination::ColourTable), "colortbl"},
    {&P::destination, number(Destination::Pn), "pn"},
    {&P::destination, number(Destination::PnBefore), "pntxtb"},
    {&P::destination, number(Destination::PnAfter), "pntxta"},
    {&P::destination, number(Destination::ListTable), "listtable"},
    {&P::destination, number(Destination::ListLevelText), "leveltext"},
    {&P::destination, number(Destination::ListOverrides), "listoverridetable"},
    {&P::destination, number(Destination::NestedRow), "nesttableprops"},
    {&P::destination, number(Destination::Body), "fldrslt"},
    // Groups that hold no text and are not kept: what they say is known otherwise or is no use.
    {&P::destination, number(Destination::Skip),
     "generator pntext listtext listname levelnumbers nonesttables fontemb fontfile falt panose "
     "fname listpicture pnseclvl fldtype datafield wgrffmtfilter latentstyles"},
    {&P::picture, number(InlineKind::Object), "object"},
    {&P::picture, number(InlineKind::Picture), "pict"},
    {&P::picture, kBetterPicture, "shppict"},
    {&P::picture, kPlainerPicture, "nonshppict"},
    {&P::field, 0, "field"},
    {&P::instruction, 0, "fldinst"},
    // Groups that belong to the document as a whole.
    {&P::keepInHeader, 0,
     "info stylesheet header headerl headerr headerf footer footerl footerr footerf filetbl "
     "revtbl"},
    // Groups that are kept where they stand.
    {&P::keepHere, 0,
     "footnote annotation xe tc tcn rxe txe bkmkstart bkmkend shpinst shp do private"},
};

std::unordered_map<std::string_view, WordEntry> wordTable() {
    std::unordered_map<std::string_view, WordEntry> table;
    for (const WordGroup& group : kWords) {
        std::string_view left = group.names;
        for (std::size_t end = 0; end != std::string_view::npos;) {
            end = left.find(' ');
            table.emplace(left.substr(0, end), WordEntry{group.handler, group.value});
            left.remove_prefix(end == std::string_view::npos ? 0 : end + 1);
        }
    }
    return table;
}

} // namespace

WordEntry findWord(QByteArrayView name) {
    static const std::unordered_map<std::string_view, WordEntry> table = wordTable();
    const auto found =
        table.find(std::string_view(name.data(), static_cast<std::size_t>(name.size())));
    return found == table.end() ? WordEntry{} : found->second;
}

} // namespace yrw::rtf
