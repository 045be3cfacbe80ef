#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <array>
#include <vector>

namespace yrw::rtf {

/// An element by an index as the parts of a document hold it.
template <typename Values>
[[nodiscard]] auto& at(Values& values, int index) {
    return values[static_cast<std::size_t>(index)];
}

/// The automatic text or background colour.
inline constexpr int kAutomatic = -1;
/// Stands in the text for an object, a picture or a kept group; its bytes are in `inlines`.
inline constexpr char16_t kInlineMark = 0xFFFC;
/// A line break inside a paragraph.
inline constexpr char16_t kLineBreak = 0x2028;
/// Tables lie in each other at most so deep; what is deeper counts as of the deepest.
inline constexpr int kMostNested = 8;

enum class Script : quint8 { Normal, Super, Sub };

/// The format of a run of characters.
struct CharFormat {
    int font = 0;                ///< index into `Document::fonts`
    int halfPoints = 24;         ///< size in half points
    int colour = kAutomatic;     ///< 0x00RRGGBB or automatic
    int background = kAutomatic; ///< 0x00RRGGBB or automatic
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    bool hidden = false;
    Script script = Script::Normal;

    friend bool operator==(const CharFormat&, const CharFormat&) = default;
};

enum class Alignment : quint8 { Left, Right, Center, Justify };
enum class ListKind : quint8 {
    None,
    Bullet,
    Decimal,
    LowerLetter,
    UpperLetter,
    LowerRoman,
    UpperRoman
};

/// The format of a paragraph; lengths are twips.
struct ParFormat {
    Alignment alignment = Alignment::Left;
    ListKind list = ListKind::None;
    bool rightToLeft = false;
    bool lineMultiple = false; ///< `lineSpacing` counts 240ths of a line
    int listStart = 1;         ///< number of the list's first item
    int left = 0;
    int right = 0;
    int first = 0; ///< first line, relative to `left`
    int before = 0;
    int after = 0;
    int lineSpacing = 0; ///< 0: automatic
    int style = 0;       ///< number in the kept style sheet; 0: none
    QString listBefore;  ///< text before an item's number
    QString listAfter;   ///< text after it
    QList<int> tabs;     ///< tab stops

    friend bool operator==(const ParFormat&, const ParFormat&) = default;
};

/// Consecutive characters of one format, inside one paragraph.
struct Run {
    int start = 0; ///< offset in `Document::text`
    int length = 0;
    int format = 0;  ///< index into `Document::charFormats`
    int field = -1;  ///< index into `Document::fields`, or -1
    int object = -1; ///< index into `Document::inlines`; the run is one `kInlineMark`

    friend bool operator==(const Run&, const Run&) = default;
};

/// A paragraph: its runs follow each other without a gap.
struct Paragraph {
    int firstRun = 0; ///< index into `Document::runs`
    int runCount = 0;
    int format = 0; ///< index into `Document::parFormats`
    int mark = 0;   ///< format of an empty paragraph, index into `Document::charFormats`
    int row = -1;   ///< innermost row, index into `Document::rows`; -1 outside a table
    int cell = 0;   ///< column in that row

    friend bool operator==(const Paragraph&, const Paragraph&) = default;
};

/// A table row; consecutive rows with nothing between them make a table. A row inside a cell of
/// another is followed by a paragraph of that cell, if an empty one.
struct Row {
    int left = 0;         ///< twips from the margin
    int gap = 108;        ///< half the space between cells, twips
    bool borders = false; ///< cells have a frame
    QList<int> edges;     ///< right edge of each cell, twips from the margin
    int parent = -1;      ///< row around this one, an earlier one of `Document::rows`; -1: none
    int parentCell = 0;   ///< column in that row

    friend bool operator==(const Row&, const Row&) = default;
};

/// A cell of a table.
struct CellPlace {
    int row = -1;
    int cell = 0;

    friend bool operator==(const CellPlace&, const CellPlace&) = default;
};

/// The cells that a paragraph lies in, the outermost first.
struct CellPath {
    std::array<CellPlace, kMostNested> places;
    int depth = 0;

    [[nodiscard]] const CellPlace& at(int level) const {
        return places[static_cast<std::size_t>(level)];
    }
};

/// A font of the font table. Numbers stay as read, for kept groups refer to them.
struct Font {
    int number = 0;
    int charset = 0;
    QByteArray family = "nil";
    QString name;

    friend bool operator==(const Font&, const Font&) = default;
};

/// True when the items of one list may have these formats: its numbers go on.
[[nodiscard]] bool isSameList(const ParFormat& a, const ParFormat& b);

/// The number of a list item as it shows: 3, c, C, iii or III; empty for a bullet.
[[nodiscard]] QString listNumber(ListKind kind, int number);

enum class InlineKind : quint8 { Picture, Object, Kept };

/// A group that stands in the text as one mark: a picture, an embedded object, or content that is
/// kept without being shown. `raw` is the whole balanced group as read, binary data as hex.
struct Inline {
    InlineKind kind = InlineKind::Kept;
    QByteArray raw;

    friend bool operator==(const Inline&, const Inline&) = default;
};

/// A field whose result is in the text.
struct Field {
    QByteArray instruction; ///< content of the instruction group, as read
    QString link;           ///< target of a hyperlink, else empty

    friend bool operator==(const Field&, const Field&) = default;
};

/// A document as plain values: no window toolkit, no pointers.
///
/// Equal documents show and write the same. `paragraphs` has at least one element once read or
/// built.
/// Thread: a value; use it from one thread at a time.
struct Document {
    QString text; ///< the characters of all paragraphs, without paragraph ends
    std::vector<Run> runs;
    std::vector<Paragraph> paragraphs;
    std::vector<CharFormat> charFormats;
    std::vector<ParFormat> parFormats;
    std::vector<Row> rows;
    std::vector<Inline> inlines;
    std::vector<Field> fields;
    std::vector<Font> fonts;
    std::vector<int> colours;     ///< the colour table; element 0 is the automatic colour
    std::vector<QByteArray> kept; ///< groups before the text that are written back as they are
    int codePage = 1252;
    int defaultFont = 0;     ///< index into `fonts`
    bool incomplete = false; ///< the input was cut off or damaged

    /// Number of rows that lie around each other, that one included; 0 for -1.
    [[nodiscard]] int depthOf(int row) const;
    /// Number of characters of a paragraph.
    [[nodiscard]] int lengthOf(const Paragraph& paragraph) const;
    [[nodiscard]] CellPath cellsOf(const Paragraph& paragraph) const;
    /// The text without formats: paragraphs end in CR LF except the last and cells in a tab. An
    /// object or picture is the text that it shows, else a blank where none stands beside it.
    [[nodiscard]] QString plainText() const;

    /// Compares what shows and what is kept; formats are compared by value.
    friend bool operator==(const Document& a, const Document& b);
};

} // namespace yrw::rtf
