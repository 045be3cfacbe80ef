#include "platform/jet/reader/JetReader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <strings.h>

namespace yrw::jet {

namespace {

constexpr std::size_t kBindSize = 200000; // bytes; the library's own reading of its catalog
constexpr std::size_t kMemoHead = 12;
constexpr std::uint32_t kInline = 0x80000000U;
constexpr std::uint32_t kSinglePiece = 0x40000000U;
constexpr std::uint32_t kLengthBits = 0x3FFFFFFFU;
constexpr int kPlaceBits = 0x1FFF; ///< of a row's offset; above them its flags
constexpr int kGone = 0x4000;      ///< deleted, or moved to a page that is read as well
constexpr std::size_t kNextSize = 4;

const MdbColumn& columnAt(const MdbTableDef& table, unsigned int i) {
    return *static_cast<MdbColumn*>(g_ptr_array_index(table.columns, i));
}

std::uint32_t number(const char* bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < sizeof value; ++i) {
        value |= std::uint32_t(static_cast<unsigned char>(bytes[i])) << (8 * i);
    }
    return value;
}

/// A name that somebody may have left without its end.
template <std::size_t N>
std::string_view nameOf(const char (&name)[N]) {
    return {name, ::strnlen(name, N)};
}

bool isKnown(int type) {
    return (type >= int(ColumnType::Boolean) && type <= int(ColumnType::Memo)) ||
           type == int(ColumnType::Guid) || type == int(ColumnType::Decimal);
}

bool isUsable(const MdbTableDef& table) {
    if (table.columns == nullptr || table.num_cols > kMostColumns ||
        table.columns->len != table.num_cols) {
        return false;
    }
    for (unsigned int i = 0; i < table.num_cols; ++i) {
        if (!isKnown(columnAt(table, i).col_type) || nameOf(columnAt(table, i).name).empty()) {
            return false;
        }
    }
    return true;
}

} // namespace

bool JetReader::open() {
    constexpr std::string_view sign("\0\1\0\0Standard Jet DB\0", 20);
    constexpr std::size_t versionPlace = 0x14;
    if (m_file.size() <= versionPlace || std::string_view(m_file.data(), sign.size()) != sign) {
        m_pipe.say(Message::Refused, static_cast<unsigned char>(Refusal::NotJet));
        return false;
    }
    const auto version = static_cast<unsigned char>(m_file[versionPlace]);
    if (version > 1) {
        m_pipe.say(Message::Refused, static_cast<unsigned char>(Refusal::OtherVersion));
        return false;
    }
    m_handle = mdb_open_buffer(m_file.data(), m_file.size(), MDB_NOFLAGS);
    if (m_handle == nullptr) {
        m_pipe.say(Message::Refused, static_cast<unsigned char>(Refusal::Damaged));
        return false;
    }
    mdb_set_bind_size(m_handle, kBindSize);
    m_pipe.begin(Message::File);
    m_pipe.put(std::uint8_t(version == 0 ? 3 : 4));
    m_pipe.put(std::uint16_t(m_handle->f->code_page));
    m_pipe.end();
    return true;
}

std::vector<MdbCatalogEntry*> JetReader::tables() const {
    std::vector<MdbCatalogEntry*> found;
    if (mdb_read_catalog(m_handle, MDB_TABLE) == nullptr) {
        return found;
    }
    for (unsigned int i = 0; i < m_handle->num_catalog; ++i) {
        auto* const entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(m_handle->catalog, i));
        if (entry->object_type == MDB_TABLE && mdb_is_system_table(entry) == 0 &&
            !nameOf(entry->object_name).empty()) {
            found.push_back(entry);
        }
    }
    return found;
}

void JetReader::read(const std::vector<std::string>& wanted) {
    std::vector<MdbCatalogEntry*> left = tables();
    for (const std::string& name : wanted) {
        const auto entry = std::find_if(left.begin(), left.end(), [&](MdbCatalogEntry* e) {
            const std::string own(nameOf(e->object_name));
            return ::strcasecmp(own.c_str(), name.c_str()) == 0;
        });
        if (entry != left.end()) {
            readTable(*entry, true);
            left.erase(entry);
        }
    }
    for (MdbCatalogEntry* const entry : left) {
        readTable(entry, false);
    }
    m_pipe.say(Message::FileEnd);
    m_pipe.flush();
}

void JetReader::readTable(MdbCatalogEntry* entry, bool withRows) {
    MdbTableDef* const table = mdb_read_table(entry);
    if (table != nullptr) {
        mdb_read_columns(table);
    }
    if (table == nullptr || !isUsable(*table)) {
        m_pipe.begin(Message::Table);
        m_pipe.put(std::uint32_t(0));
        m_pipe.put(std::uint16_t(0));
        m_pipe.putName(nameOf(entry->object_name));
        m_pipe.end();
        m_pipe.say(Message::TableEnd, 1);
        return;
    }
    describe(*table);
    m_pipe.flush(); // whoever waits sees which table it is that may cost the process
    m_pipe.say(Message::TableEnd, withRows && !readPages(*table) ? 1 : 0);
    mdb_free_tabledef(table);
}

void JetReader::describe(const MdbTableDef& table) {
    m_pipe.begin(Message::Table);
    m_pipe.put(std::uint32_t(table.num_rows));
    m_pipe.put(std::uint16_t(table.num_cols));
    for (unsigned int i = 0; i < table.num_cols; ++i) {
        m_pipe.put(std::uint8_t(columnAt(table, i).col_type));
    }
    m_pipe.putName(nameOf(table.entry->object_name));
    for (unsigned int i = 0; i < table.num_cols; ++i) {
        m_pipe.putName(nameOf(columnAt(table, i).name));
    }
    m_pipe.end();
}

bool JetReader::readPages(MdbTableDef& table) {
    mdb_rewind_table(&table);
    std::uint32_t last = 0;
    while (mdb_read_next_dpg(&table) > 0) {
        if (table.cur_phys_pg <= last) {
            return false; // pages stand in order in the map: it is damaged
        }
        last = table.cur_phys_pg;
        readPage(table);
    }
    return true;
}

void JetReader::readPage(MdbTableDef& table) {
    // The page that is read moves when a long text is looked up: its rows are noted before.
    const int rows = mdb_get_int16(m_handle->pg_buf, m_handle->fmt->row_count_offset);
    const int most = int(m_handle->fmt->pg_size / 2);
    for (int row = 0; row < std::min(rows, most); ++row) {
        int start = 0;
        std::size_t size = 0;
        if (mdb_find_row(m_handle, row, &start, &size) != 0) {
            m_pipe.say(Message::BadRow);
        } else if ((start & kGone) == 0 && size > 0) {
            readRow(table, start & kPlaceBits, size);
        }
    }
}

void JetReader::readRow(MdbTableDef& table, int start, std::size_t size) {
    static std::array<MdbField, kMostColumns> fields;
    fields = {};
    const int count = mdb_crack_row(&table, start, size, fields.data());
    if (count != int(table.num_cols)) {
        m_pipe.say(Message::BadRow);
        return;
    }
    m_pipe.begin(Message::Row);
    for (int i = 0; i < count; ++i) {
        putCell(columnAt(table, unsigned(i)), fields[std::size_t(i)]);
    }
    m_pipe.end();
}

void JetReader::putCell(const MdbColumn& column, const MdbField& field) {
    const auto type = static_cast<ColumnType>(column.col_type);
    if (type == ColumnType::Boolean) {
        return putBytes(CellState::Value, {field.is_null != 0 ? "\0" : "\1", 1});
    }
    if (field.is_null != 0) {
        return putBytes(CellState::Null, {});
    }
    const auto page = m_handle->fmt->pg_size;
    if (field.start < 0 || field.siz < 0 || field.start > page || field.siz > page - field.start) {
        return putBytes(CellState::Unreadable, {});
    }
    const auto* const bytes = reinterpret_cast<const char*>(m_handle->pg_buf) + field.start;
    const std::string_view stored(bytes, std::size_t(field.siz));
    if (type == ColumnType::Memo || type == ColumnType::Object) {
        return putMemo(stored);
    }
    putBytes(CellState::Value, stored);
}

void JetReader::putMemo(std::string_view stored) {
    if (stored.size() < kMemoHead) {
        return putBytes(CellState::Unreadable, {});
    }
    const std::uint32_t head = number(stored.data());
    const std::size_t length = head & kLengthBits;
    if ((head & kInline) != 0) {
        const std::string_view bytes = stored.substr(kMemoHead, length);
        return putBytes(bytes.size() == length ? CellState::Value : CellState::Cut, bytes);
    }
    m_memo.clear();
    const bool isChain = (head & kSinglePiece) == 0;
    std::uint32_t place = number(stored.data() + 4);
    const std::size_t most = std::min(length, kMostBytes);
    while (m_memo.size() < most && place != 0 && appendChunk(place, isChain, most)) {
    }
    const bool isWhole = m_memo.size() == length;
    if (m_memo.empty() && !isWhole) {
        return putBytes(CellState::Unreadable, {});
    }
    putBytes(isWhole ? CellState::Value : CellState::Cut, m_memo);
}

/// Takes a piece of a long text and goes on to the next; false where there is none, or an empty
/// one.
bool JetReader::appendChunk(std::uint32_t& place, bool isChain, std::size_t most) {
    void* page = nullptr;
    int start = 0;
    std::size_t size = 0;
    if (mdb_find_pg_row(m_handle, int(place), &page, &start, &size) != 0) {
        return false;
    }
    start &= kPlaceBits;
    const auto pageSize = std::size_t(m_handle->fmt->pg_size);
    if (std::size_t(start) > pageSize || size > pageSize - std::size_t(start)) {
        return false;
    }
    std::string_view piece(static_cast<const char*>(page) + start, size);
    place = 0;
    if (isChain) {
        if (piece.size() <= kNextSize) {
            return false;
        }
        place = number(piece.data());
        piece.remove_prefix(kNextSize);
    }
    m_memo += piece.substr(0, most - m_memo.size());
    return !piece.empty();
}

void JetReader::putBytes(CellState state, std::string_view bytes) {
    m_pipe.put(static_cast<std::uint8_t>(state));
    m_pipe.put(static_cast<std::uint32_t>(bytes.size()));
    m_pipe.put(bytes);
}

} // namespace yrw::jet
