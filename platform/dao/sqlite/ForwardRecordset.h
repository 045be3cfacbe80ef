#pragma once

#include "platform/dao/sqlite/RecordsetBase.h"
#include "platform/dao/sqlite/RowReader.h"

#include <deque>
#include <exception>

namespace yrw::dao {

/// Rows streamed once, front to back.
///
/// While it streams, a statement stands on the current row and a column is fetched when it is asked
/// for. A long read goes on with the columns that its first rows were asked for; others are then
/// fetched by the row's key. When the read transaction has to end in between, the rest is kept as
/// keys (as rows where there are no keys) and read on from there. An order that the engine could
/// only make by sorting whole rows is made over the keys from the start.
class ForwardRecordset final : public RecordsetBase {
public:
    ForwardRecordset(SqliteDatabase& database, const Query& query, const QString& name,
                     int options);

    [[nodiscard]] bool AtBof() const override;
    [[nodiscard]] bool AtEof() const override;
    void MoveFirst() override;
    void MoveNext() override;
    [[nodiscard]] qint64 RecordCount() const override;
    void Requery() override;

protected:
    [[nodiscard]] QVariant rowValue(int column) const override;
    [[nodiscard]] qint64 currentKey() const override { raiseInvalid("changes"); }
    void dropRows() noexcept override;
    void releaseRead() noexcept override;
    void dropStatements() noexcept override;

private:
    enum class Mode { Stream, Keys, Rows };
    using Row = std::vector<QVariant>;

    void start();
    [[nodiscard]] bool sortsWholeRows() const;
    /// To the next row in the present mode; false behind the last.
    bool advance();
    bool advanceByKey();
    bool stepWithoutUnasked();
    void keepRest();
    [[nodiscard]] Row wholeRow() const;
    void requireRest() const;

    Statement m_stream;
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
