#pragma once

#include <cstddef>
#include <cstdint>

namespace yrw::jet {

// What the reader of old databases tells the program that started it, through a pipe. Everything
// is little-endian. A message is its kind (1 byte), the length of what follows (4 bytes), and that:
//
// File: version (1), code page (2). Comes first, or Refused does.
// Refused: the reason (1). Nothing follows.
// Table: number of rows that its head tells (4), number of columns (2), of each column its type
//   (1); then the name and those of the columns, each with its length before it (2), in UTF-8.
// Row: of each column the state (1), the length (4) and the bytes as they are stored.
// BadRow: nothing; a row that is there and cannot be read.
// TableEnd: 1 when pages of the table were not to be found or lead in a circle, else 0 (1).
// FileEnd: nothing. A reader that ends without it has died.

/// Kinds of message.
enum class Message : std::uint8_t { File = 1, Refused, Table, Row, BadRow, TableEnd, FileEnd };

/// Why a file is not read at all.
enum class Refusal : std::uint8_t { NotJet = 1, OtherVersion, Damaged };

/// What a row has in a column.
enum class CellState : std::uint8_t { Null, Value, Cut, Unreadable };

/// Types of columns, with the numbers that the files have.
enum class ColumnType : std::uint8_t {
    Boolean = 1,
    Byte = 2,
    Integer = 3,
    Long = 4,
    Money = 5,
    Single = 6,
    Double = 7,
    Date = 8,
    Binary = 9,
    Text = 10,
    Object = 11,
    Memo = 12,
    Guid = 15,
    Decimal = 16,
};

inline constexpr std::size_t kHeadSize = 5;
/// Most columns that a table can have.
inline constexpr std::size_t kMostColumns = 256;
/// Longest value that is read; what is behind it is cut.
inline constexpr std::size_t kMostBytes = 64U << 20U;

} // namespace yrw::jet
