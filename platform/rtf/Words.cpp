#include "platform/rtf/Parser.h"
#include "platform/rtf/WordValues.h"

#include <string_view>
#include <type_traits>
#include <unordered_map>

namespace yrw::rtf {

namespace {

using P = Parser;
using F = FormatWords;

/// The handler that calls a member of the parser or of its formats.
template <auto member>
constexpr Parser::Handler of = [](Parser& parser, const Token& token, int value) {
    if constexpr (std::is_invocable_v<decltype(member), Parser&, const Token&, int>) {
        (parser.*member)(token, value);
    } else {
        (parser.formats().*member)(token, value);
    }
};

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
    {of<&F::toggle<&CharFormat::bold>>, 0, "b"},
    {of<&F::toggle<&CharFormat::italic>>, 0, "i"},
    {of<&F::toggle<&CharFormat::underline>>, 0, "ul uld uldb uldash ulth ulw ulwave"},
    {of<&F::noUnderline>, 0, "ulnone"},
    {of<&F::toggle<&CharFormat::strike>>, 0, "strike striked"},
    {of<&F::toggle<&CharFormat::hidden>>, 0, "v"},
    {of<&F::script>, number(Script::Super), "super up"},
    {of<&F::script>, number(Script::Sub), "sub dn"},
    {of<&F::script>, number(Script::Normal), "nosupersub"},
    {of<&F::fontSize>, 0, "fs"},
    {of<&F::colour<&CharFormat::colour>>, 0, "cf"},
    {of<&F::colour<&CharFormat::background>>, 0, "cb highlight chcbpat"},
    {of<&P::plain>, 0, "plain"},
    {of<&P::fontNumber>, 0, "f"},
    {of<&F::length<&ParFormat::left>>, -F::kLongestLength, "li lin"},
    {of<&F::length<&ParFormat::right>>, -F::kLongestLength, "ri rin"},
    {of<&F::length<&ParFormat::first>>, -F::kLongestLength, "fi"},
    {of<&F::length<&ParFormat::before>>, 0, "sb"},
    {of<&F::length<&ParFormat::after>>, 0, "sa"},
    {of<&F::length<&ParFormat::lineSpacing>>, -F::kLongestLength, "sl"},
    {of<&F::lineMultiple>, 0, "slmult"},
    {of<&F::style>, 0, "s"},
    {of<&F::direction>, 1, "rtlpar"},
    {of<&F::direction>, 0, "ltrpar"},
    {of<&F::inTable>, 0, "intbl"},
    {of<&F::tableLevel>, 0, "itap"},
    {of<&F::tabStop>, 0, "tx"},
    {of<&F::alignment>, number(Alignment::Left), "ql"},
    {of<&F::alignment>, number(Alignment::Right), "qr"},
    {of<&F::alignment>, number(Alignment::Center), "qc"},
    {of<&F::alignment>, number(Alignment::Justify), "qj"},
    {of<&P::pard>, 0, "pard"},
    {of<&P::paragraphEnd>, 0, "par sect"},
    {of<&P::pageBreak>, 0, "page"},
    {of<&P::character>, kLineBreak, "line"},
    {of<&P::character>, '\t', "tab"},
    {of<&P::character>, 0x2014, "emdash"},
    {of<&P::character>, 0x2013, "endash"},
    {of<&P::character>, 0x2003, "emspace"},
    {of<&P::character>, 0x2002, "enspace"},
    {of<&P::character>, 0x2005, "qmspace"},
    {of<&P::character>, 0x2022, "bullet"},
    {of<&P::character>, 0x2018, "lquote"},
    {of<&P::character>, 0x2019, "rquote"},
    {of<&P::character>, 0x201C, "ldblquote"},
    {of<&P::character>, 0x201D, "rdblquote"},
    {of<&P::character>, 0x200E, "ltrmark"},
    {of<&P::character>, 0x200F, "rtlmark"},
    {of<&P::character>, 0x200D, "zwj"},
    {of<&P::character>, 0x200C, "zwnj"},
    {of<&P::unicode>, 0, "u"},
    {of<&P::skipCount>, 0, "uc"},
    {of<&P::defaultFont>, 0, "deff"},
    {of<&P::codePage>, 0, "ansicpg"},
    {of<&P::codePage>, 10000, "mac"},
    {of<&P::codePage>, 437, "pc"},
    {of<&P::codePage>, 850, "pca"},
    {of<&P::tableWord>, kRowStart, "trowd"},
    {of<&P::tableWord>, kCellEdge, "cellx"},
    {of<&P::tableWord>, kRowGap, "trgaph"},
    {of<&P::tableWord>, kRowLeft, "trleft"},
    {of<&P::tableWord>, kCellEnd, "cell"},
    {of<&P::tableWord>, kRowEnd, "row"},
    {of<&P::tableWord>, kNestedCellEnd, "nestcell"},
    {of<&P::tableWord>, kNestedRowEnd, "nestrow"},
    {of<&P::tableWord>, kBorders,
     "clbrdrt clbrdrb clbrdrl clbrdrr trbrdrt trbrdrb trbrdrh trbrdrv"},
    {of<&P::listWord>, kListNumber, "ls"},
    {of<&P::listWord>, kListLevel, "ilvl"},
    {of<&P::pnWord>, number(ListKind::Bullet), "pnlvlblt"},
    {of<&P::pnWord>, number(ListKind::Decimal), "pnlvlbody pndec"},
    {of<&P::pnWord>, number(ListKind::None), "pnlvlcont"},
    {of<&P::pnWord>, number(ListKind::LowerLetter), "pnlcltr"},
    {of<&P::pnWord>, number(ListKind::UpperLetter), "pnucltr"},
    {of<&P::pnWord>, number(ListKind::LowerRoman), "pnlcrm"},
    {of<&P::pnWord>, number(ListKind::UpperRoman), "pnucrm"},
    {of<&P::pnWord>, kPnStart, "pnstart"},
    {of<&P::listTableWord>, kListStart, "list"},
    {of<&P::listTableWord>, kListId, "listid"},
    {of<&P::listTableWord>, kLevelStart, "listlevel"},
    {of<&P::listTableWord>, kLevelKind, "levelnfc levelnfcn"},
    {of<&P::listTableWord>, kLevelFirst, "levelstartat"},
    {of<&P::fontTableWord>, kCharset, "fcharset"},
    {of<&P::fontTableWord>, kFontCodePage, "cpg"},
    {of<&P::fontTableWord>, kFamily, "fnil froman fswiss fmodern fscript fdecor ftech fbidi"},
    {of<&P::colourWord>, 0, "red"},
    {of<&P::colourWord>, 1, "green"},
    {of<&P::colourWord>, 2, "blue"},
    {of<&P::destination>, number(Destination::FontTable), "fonttbl"},
    {of<&P::destination>, number(Destination::ColourTable), "colortbl"},
    {of<&P::destination>, number(Destination::Pn), "pn"},
    {of<&P::destination>, number(Destination::PnBefore), "pntxtb"},
    {of<&P::destination>, number(Destination::PnAfter), "pntxta"},
    {of<&P::destination>, number(Destination::ListTable), "listtable"},
    {of<&P::destination>, number(Destination::ListLevelText), "leveltext"},
    {of<&P::destination>, number(Destination::ListOverrides), "listoverridetable"},
    {of<&P::destination>, number(Destination::NestedRow), "nesttableprops"},
    {of<&P::destination>, number(Destination::Body), "fldrslt"},
    // Groups that hold no text and are not kept: what they say is known otherwise or is no use.
    {of<&P::destination>, number(Destination::Skip),
     "generator pntext listtext listname levelnumbers nonesttables fontemb fontfile falt panose "
     "fname listpicture pnseclvl fldtype datafield wgrffmtfilter latentstyles"},
    {of<&P::picture>, number(InlineKind::Object), "object"},
    {of<&P::picture>, number(InlineKind::Picture), "pict"},
    {of<&P::picture>, kBetterPicture, "shppict"},
    {of<&P::picture>, kPlainerPicture, "nonshppict"},
    {of<&P::field>, 0, "field"},
    {of<&P::instruction>, 0, "fldinst"},
    // Groups that belong to the document as a whole.
    {of<&P::keepInHeader>, 0,
     "info stylesheet header headerl headerr headerf footer footerl footerr footerf filetbl "
     "revtbl"},
    // Groups that are kept where they stand.
    {of<&P::keepHere>, 0,
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
