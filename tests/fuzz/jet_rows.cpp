#include "platform/component/AutomationError.h"
#include "platform/jet/JetRows.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace yrw;
using namespace yrw::jet;

/// Aborts when it is told what no table has.
class Judge final : public JetSink {
public:
    void beginTable(const JetTable& table) override {
        require(!m_isIn && !table.name.isEmpty() &&
                table.columns.size() == qsizetype(table.types.size()) &&
                table.types.size() <= kMostColumns);
        m_isIn = true;
        m_columns = table.types.size();
    }
    void row(const JetRow& row) override {
        require(m_isIn && row.size() == m_columns);
        for (const JetCell& cell : row) {
            require(cell.state == CellState::Value || cell.state == CellState::Cut ||
                    cell.value.isNull());
        }
        ++rows;
    }
    void badRow() override { require(m_isIn); }
    void endTable(bool) override {
        require(m_isIn);
        m_isIn = false;
    }
    qint64 rows = 0;

private:
    static void require(bool holds) {
        if (!holds) {
            std::abort();
        }
    }
    bool m_isIn = false;
    std::size_t m_columns = 0;
};

/// What came of the bytes, fed in pieces of that size.
struct Outcome {
    qint64 rows = 0;
    bool isEnded = false;
    bool isRefused = false;
    bool operator==(const Outcome&) const = default;
};

Outcome feed(QByteArrayView bytes, qsizetype piece, int codePage) {
    Judge judge;
    JetRows rows(judge, codePage, 1 << 20);
    bool isRefused = false;
    try {
        for (qsizetype at = 0; at < bytes.size(); at += piece) {
            rows.feed(bytes.sliced(at, qMin(piece, bytes.size() - at)));
        }
    } catch (const AutomationError& error) {
        if (error.source() != u"YRWNOTES.JetRows") {
            std::abort();
        }
        isRefused = true;
    }
    return {judge.rows, rows.isEnded(), isRefused};
}

} // namespace

/// Whatever a reader says is taken in its order or refused, and in pieces it means the same. The
/// first byte chooses the code page and the size of the pieces.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const QByteArrayView bytes(data + 1, qsizetype(size - 1));
    const int codePage = (data[0] & 0x80) != 0 ? 1250 : 0;
    const Outcome whole = feed(bytes, qMax<qsizetype>(1, bytes.size()), codePage);
    if (!(feed(bytes, 1 + (data[0] & 0x3F), codePage) == whole)) {
        std::abort();
    }
    return 0;
}
