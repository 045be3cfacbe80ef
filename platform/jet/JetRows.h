#pragma once

#include "platform/jet/JetText.h"

#include <QByteArray>
#include <QStringList>

#include <vector>

namespace yrw::jet {

/// A table of an old database.
struct JetTable {
    QString name;
    quint32 rows = 0; ///< that its head tells
    QStringList columns;
    std::vector<ColumnType> types;
};

/// What a row has in a column.
struct JetCell {
    QVariant value; ///< Null also for what could not be read
    CellState state = CellState::Null;
};
using JetRow = std::vector<JetCell>;

/// Takes what is read of an old database. What the members raise ends the reading.
class JetSink {
public:
    virtual ~JetSink();
    /// A table begins; one that is not among those asked for has no rows.
    virtual void beginTable(const JetTable& table) = 0;
    virtual void row(const JetRow& row) = 0;
    virtual void badRow() = 0;
    /// `isWhole` is false where pages of the table could not be had.
    virtual void endTable(bool isWhole) = 0;
};

/// Takes the messages of a reader apart (see JetProtocol.h). The reader works on hostile files, so
/// that nothing that it says is believed: lengths, types, numbers of columns and the order of the
/// messages are checked.
/// Lifetime: one run of a reader. Thread: any.
class JetRows {
public:
    /// `codePage` stands for the file's own in version 3; 0: the file's. `mostBytes` is all that a
    /// reader may say. The sink outlives this.
    JetRows(JetSink& sink, int codePage, qint64 mostBytes);

    /// Hands on what is complete. Raises `kErrorInvalidOperation` for what no reader says, and
    /// what the sink raises.
    void feed(QByteArrayView bytes);

    [[nodiscard]] bool isStarted() const noexcept { return m_isStarted; }
    /// True once the reader has said that it is through.
    [[nodiscard]] bool isEnded() const noexcept { return m_isEnded; }
    [[nodiscard]] std::optional<Refusal> refusal() const noexcept { return m_refusal; }
    /// True between the beginning of a table and its end.
    [[nodiscard]] bool isInTable() const noexcept { return m_isInTable; }
    [[nodiscard]] const JetTable& table() const noexcept { return m_table; }

private:
    void take(Message kind, QByteArrayView body);
    void takeFile(QByteArrayView body);
    void takeTable(QByteArrayView body);
    void takeRow(QByteArrayView body);

    JetSink& m_sink;
    int m_wantedCodePage;
    qint64 m_bytesLeft;
    QByteArray m_waiting; ///< the beginning of a message
    int m_codePage = 0;   ///< of version 3
    bool m_isStarted = false;
    bool m_isEnded = false;
    bool m_isInTable = false;
    std::optional<Refusal> m_refusal;
    JetTable m_table;
    JetRow m_row;
};

} // namespace yrw::jet
