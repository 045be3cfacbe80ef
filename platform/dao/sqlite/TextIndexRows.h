#pragma once

#include "platform/component/Counted.h"
#include "platform/dao/TextIndex.h"
#include "platform/dao/sqlite/Statement.h"

#include <optional>
#include <unordered_set>
#include <vector>

namespace yrw::dao {

class Connection;
class SqliteFile;

/// The statements of a text index, and the folded text of single rows.
/// Lifetime: ends before the connection and the names. Thread: the user-interface thread.
class TextIndexRows {
public:
    TextIndexRows(const SqliteFile& file, const TextIndexNames& names);

    /// The row's text as it stands in the table, folded; nothing when the row is gone.
    [[nodiscard]] std::optional<QByteArray> foldedNow(qint64 key);
    /// The row's folded text in the index; nothing when the index does not have the row.
    [[nodiscard]] std::optional<QByteArray> indexed(qint64 key);
    /// Takes the row as it stands into the index, or out of it, and off the list.
    void takeIn(qint64 key);

private:
    /// Prepares a statement when it is first used: the index may be missing or damaged.
    Statement& prepared(Statement& statement, const QString& sql) const;

    const SqliteFile& m_file;
    const TextIndexNames& m_names;
    QString m_index;
    Statement m_read;
    Statement m_indexed;
    Statement m_put;
    Statement m_drop;
    Statement m_done;
};

/// The keys on the list of a text index; at most `limit`, the lowest first.
[[nodiscard]] std::vector<qint64> waitingKeys(const SqliteFile& file, const TextIndexNames& names,
                                              int limit);

/// Where a search has got to in the rows that it was given.
class SqliteTextSearch final : public TextSearch {
public:
    /// `damaged` is set when the index turns out to be; it outlives the search.
    SqliteTextSearch(Ref<Counted> keeper, Connection& connection, const SqliteFile& file,
                     const TextIndexNames& names, const QStringList& words,
                     std::vector<qint64> keys, bool& damaged);

    [[nodiscard]] std::vector<qint64> next(int milliseconds) override;
    [[nodiscard]] bool atEnd() const override { return m_stage == Stage::End; }

private:
    /// Either every row by itself, or first those that wait and then the index's answer.
    enum class Stage { Rows, Waiting, Index, End };

    void lookThroughRows(qint64 deadline);
    void askIndex(qint64 deadline);
    void goOnWithoutIndex();
    [[nodiscard]] bool isWaiting(qint64 key) const { return m_waiting.count(key) != 0; }

    Ref<Counted> m_keeper;
    Connection& m_connection;
    const SqliteFile& m_file;
    const TextIndexNames& m_names;
    QList<QByteArray> m_words;
    QString m_expression; ///< what the index is asked; empty when the words are too short for it
    std::vector<qint64> m_keys;
    std::vector<qint64> m_sorted; ///< the same in ascending order, where the index is asked
    std::unordered_set<qint64> m_waiting;
    Stage m_stage = Stage::Rows;
    size_t m_next = 0;      ///< place in m_keys
    qint64 m_lastKey = 0;   ///< of the index's answer
    bool m_hasIndex = true; ///< every row is read itself where it cannot be used
    bool& m_damaged;
    std::vector<qint64> m_found; ///< since the beginning
    size_t m_given = 0;          ///< of them returned by earlier calls
};

} // namespace yrw::dao
