#pragma once

#include "platform/dao/RowReader.h"
#include "platform/dao/Rows.h"

#include <deque>
#include <exception>

namespace yrw::dao {

/// Rows streamed once, front to back.
///
/// While it streams, a statement stands on the current row and a column is fetched when it is asked
/// for. A long read goes on with the columns that its first rows were asked for; others are then
/// fetched by the row's key. When the read transaction has to end in between, the rest is kept as
/// keys (as rows where there are no keys) and read on from there. An order other than that of the
/// keys is made over the keys from the start, lest the engine sorts whole rows.
class StreamRows final : public Rows {
public:
    StreamRows(Connection& connection, const Query& query);

    void releaseRead() noexcept override;
    void dropStatements() noexcept override;

    [[nodiscard]] bool atBof() const override { return m_read == 0; }
    [[nodiscard]] bool atEof() const override { return !m_onRow; }
    void toFirst() override;
    void next() override { m_onRow = advance(); }
    /// The rows read so far.
    [[nodiscard]] qint64 count() const override { return m_read; }
    void refill() override;
    [[nodiscard]] QVariant value(int column) const override;

protected:
    void drop() noexcept override;

private:
    enum class Mode { Stream, Keys, Rows };
    using Row = std::vector<QVariant>;

    /// To the next row in the present mode; false behind the last.
    bool advance();
    bool advanceByKey();
    bool stepWithoutUnasked();
    void keepRest();
    void requireRest() const;

    std::unique_ptr<Cursor> m_stream;
    mutable std::vector<bool> m_asked; ///< by column: it was asked for
    std::vector<int> m_places;         ///< of each column in the stream; -1 where it is left out
    int m_keyPlace = 0;                ///< of the key in the stream
    Mode m_mode = Mode::Stream;
    std::deque<qint64> m_keys;
    std::deque<Row> m_rows;
    Row m_row; ///< the current row in mode Rows
    mutable RowReader m_reader;
    std::exception_ptr m_lost; ///< why the rest could not be kept
    qint64 m_read = 0;
    bool m_onRow = false;
};

} // namespace yrw::dao
