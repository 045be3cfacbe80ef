#pragma once

#include "platform/jet/reader/RowPipe.h"

#include <span>
#include <string>
#include <vector>

#include <mdbtools.h>

namespace yrw::jet {

/// Reads an old database through the library and says what it holds, values as they are stored.
///
/// What the library says of a damaged file is not believed where it would lead beyond a page or
/// round in a circle. It may still crash or never end: whoever reads a file of somebody else's does
/// it in a process that can be lost.
/// Lifetime: one file. Thread: one.
class JetReader {
public:
    /// The file's bytes outlive this.
    JetReader(std::span<char> file, RowPipe& pipe) : m_file(file), m_pipe(pipe) {}

    /// Opens the file and says its version; false, with the reason said, when it cannot be read.
    [[nodiscard]] bool open();
    /// Says all tables, and the rows of those whose names are given, in that order.
    void read(const std::vector<std::string>& wanted);

private:
    [[nodiscard]] std::vector<MdbCatalogEntry*> tables() const;
    void readTable(MdbCatalogEntry* entry, bool withRows);
    void describe(const MdbTableDef& table);
    [[nodiscard]] bool readPages(MdbTableDef& table);
    void readPage(MdbTableDef& table);
    void readRow(MdbTableDef& table, int start, std::size_t size);
    void putCell(const MdbColumn& column, const MdbField& field);
    void putMemo(std::string_view stored);
    [[nodiscard]] bool appendChunk(std::uint32_t& place, bool isChain, std::size_t most);
    void putBytes(CellState state, std::string_view bytes);

    std::span<char> m_file;
    RowPipe& m_pipe;
    MdbHandle* m_handle = nullptr; ///< never closed: the process ends with it
    std::string m_memo;
};

} // namespace yrw::jet
