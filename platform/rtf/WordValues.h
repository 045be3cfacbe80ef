#pragma once

namespace yrw::rtf {

/// What a handler of several control words is to do; the second column of the word table.
enum TableWord {
    kRowStart,
    kCellEdge,
    kRowGap,
    kRowLeft,
    kBorders,
    kCellEnd,
    kRowEnd,
    kNestedCellEnd,
    kNestedRowEnd
};
enum ListWord { kListNumber, kListLevel };
enum ListTableWord { kListStart, kListId, kLevelStart, kLevelKind, kLevelFirst };
enum FontTableWord { kCharset, kFontCodePage, kFamily };
enum PictureWord { kBetterPicture = 100, kPlainerPicture };
inline constexpr int kPnStart = 100;

} // namespace yrw::rtf
