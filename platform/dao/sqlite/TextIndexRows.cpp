#include "platform/dao/sqlite/TextIndexRows.h"

#include "platform/clock/Clock.h"
#include "platform/component/AutomationError.h"
#include "platform/dao/Connection.h"
#include "platform/dao/Folding.h"
#include "platform/dao/sqlite/SqliteFile.h"

#include <algorithm>

#include <sqlite3.h>

namespace yrw::dao {

namespace {

constexpr int kGram = 3;           ///< letters that the index keeps together
constexpr int kMostGrams = 16;     ///< enough to leave few rows that lack the words
constexpr size_t kFewRows = 3'000; ///< looked through faster than the index answers
constexpr int kLookAtClock = 16;   ///< rows between two looks at the clock
constexpr int kAllKeys = -1;

/// A text of the current row as it is stored, until the next step.
QByteArrayView bytesOf(const Statement& statement, int column) {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement.handle(), column));
    return {bytes, sqlite3_column_bytes(statement.handle(), column)};
}

/// Three letters as the index's query language quotes them.
QString quotedGram(const QList<uint>& letters, qsizetype at) {
    const QString gram =
        QString::fromUcs4(reinterpret_cast<const char32_t*>(letters.data()) + at, kGram);
    return quotedName(gram);
}

/// What the index is asked for: rows that have every three letters of the words. They may have
/// them in other places, so that each row is looked at once more.
QString expressionFor(const QStringList& words) {
    QStringList grams;
    for (const QString& word : words) {
        const QList<uint> letters = word.toUcs4();
        for (qsizetype at = 0; at + kGram <= letters.size(); ++at) {
            grams.append(quotedGram(letters, at));
        }
    }
    grams.removeDuplicates();
    return grams.mid(0, kMostGrams).join(QStringLiteral(" AND "));
}

} // namespace

TextIndexRows::TextIndexRows(const SqliteFile& file, const TextIndexNames& names)
    : m_file(file), m_names(names), m_index(quotedName(names.index)) {}

Statement& TextIndexRows::prepared(Statement& statement, const QString& sql) const {
    if (statement.isEmpty()) {
        statement = Statement(m_file.handle(), sql);
    }
    return statement;
}

std::optional<QByteArray> TextIndexRows::foldedNow(qint64 key) {
    if (m_read.isEmpty()) {
        QStringList fields;
        for (const QString& field : m_names.fields) {
            fields.append(quotedName(field));
        }
        prepared(m_read, QStringLiteral("SELECT %1 FROM %2 WHERE %3 = ?1")
                             .arg(fields.join(QStringLiteral(", ")), quotedName(m_names.table),
                                  quotedName(m_names.key)));
    }
    m_read.bind(1, key);
    if (!m_read.step()) {
        return std::nullopt;
    }
    QStringList texts;
    for (int column = 0; column < m_read.columnCount(); ++column) {
        texts.append(m_read.text(column));
    }
    m_read.reset();
    return foldText(texts.join(u'\n').replace(QChar(u'\0'), QChar(u' '))).toUtf8();
}

std::optional<QByteArray> TextIndexRows::indexed(qint64 key) {
    Statement& read = prepared(m_indexed, u"SELECT Folded FROM " + m_index + u" WHERE rowid = ?1");
    read.bind(1, key);
    if (!read.step()) {
        return std::nullopt;
    }
    QByteArray folded = bytesOf(read, 0).toByteArray();
    read.reset();
    return folded;
}

void TextIndexRows::takeIn(qint64 key) {
    if (const auto folded = foldedNow(key)) {
        Statement& put = prepared(m_put, u"INSERT OR REPLACE INTO " + m_index +
                                             u"(rowid, Folded) VALUES (?1, ?2)");
        put.bind(1, key);
        put.bind(2, QVariant(QString::fromUtf8(*folded)));
        put.run();
    } else {
        Statement& drop = prepared(m_drop, u"DELETE FROM " + m_index + u" WHERE rowid = ?1");
        drop.bind(1, key);
        drop.run();
    }
    Statement& done =
        prepared(m_done, u"DELETE FROM " + quotedName(m_names.waiting) + u" WHERE RecordID = ?1");
    done.bind(1, key);
    done.run();
}

std::vector<qint64> waitingKeys(const SqliteFile& file, const TextIndexNames& names, int limit) {
    Statement statement(file.handle(),
                        QStringLiteral("SELECT RecordID FROM %1 ORDER BY RecordID LIMIT %2")
                            .arg(quotedName(names.waiting))
                            .arg(limit));
    std::vector<qint64> keys;
    while (statement.step()) {
        keys.push_back(statement.integer(0));
    }
    return keys;
}

SqliteTextSearch::SqliteTextSearch(Ref<Counted> keeper, Connection& connection,
                                   const SqliteFile& file, const TextIndexNames& names,
                                   const QStringList& words, std::vector<qint64> keys,
                                   bool& damaged)
    : m_keeper(std::move(keeper)), m_connection(connection), m_file(file), m_names(names),
      m_expression(expressionFor(words)), m_keys(std::move(keys)), m_damaged(damaged) {
    for (const QString& word : words) {
        m_words.append(word.toUtf8());
    }
    m_hasIndex = !m_damaged && !connection.schema().tableName(names.index).isEmpty() &&
                 !connection.schema().tableName(names.waiting).isEmpty();
    if (m_hasIndex) {
        const std::vector<qint64> waiting = waitingKeys(file, names, kAllKeys);
        m_waiting.insert(waiting.begin(), waiting.end());
    }
    if (m_hasIndex && !m_expression.isEmpty() && m_keys.size() > kFewRows) {
        m_stage = Stage::Waiting;
        m_sorted = m_keys;
        std::sort(m_sorted.begin(), m_sorted.end());
    }
}

std::vector<qint64> SqliteTextSearch::next(int milliseconds) {
    m_connection.requireOpen();
    const qint64 deadline = m_connection.clock().monotonicMs() + milliseconds;
    try {
        if (m_stage == Stage::Rows || m_stage == Stage::Waiting) {
            lookThroughRows(deadline);
        }
        if (m_stage == Stage::Index) {
            askIndex(deadline);
        }
    } catch (const AutomationError& error) {
        if (error.number() != kErrorNotADatabase || !m_hasIndex) {
            throw;
        }
        goOnWithoutIndex();
    }
    std::vector<qint64> found(m_found.begin() + qsizetype(m_given), m_found.end());
    m_given = m_found.size();
    return found;
}

void SqliteTextSearch::lookThroughRows(qint64 deadline) {
    m_connection.beginRead();
    TextIndexRows rows(m_file, m_names);
    const bool all = m_stage == Stage::Rows;
    if (!all && m_waiting.empty()) {
        m_next = m_keys.size();
    }
    for (int steps = 1; m_next < m_keys.size(); ++m_next, ++steps) {
        if (steps % kLookAtClock == 0 && m_connection.clock().monotonicMs() >= deadline) {
            return;
        }
        const qint64 key = m_keys[m_next];
        const bool itself = !m_hasIndex || isWaiting(key);
        if (!all && !itself) {
            continue;
        }
        std::optional<QByteArray> folded = itself ? std::nullopt : rows.indexed(key);
        if (!folded) {
            folded = rows.foldedNow(key);
        }
        if (folded && containsWords(*folded, m_words)) {
            m_found.push_back(key);
        }
    }
    m_stage = all ? Stage::End : Stage::Index;
}

void SqliteTextSearch::askIndex(qint64 deadline) {
    m_connection.beginRead();
    Statement answer(m_file.handle(),
                     QStringLiteral("SELECT rowid, Folded FROM %1 WHERE %1 MATCH ?1 AND rowid > ?2 "
                                    "ORDER BY rowid")
                         .arg(quotedName(m_names.index)));
    answer.bind(1, QVariant(m_expression));
    answer.bind(2, m_lastKey);
    for (int steps = 1; answer.step(); ++steps) {
        const qint64 key = answer.integer(0);
        m_lastKey = key;
        if (!isWaiting(key) && std::binary_search(m_sorted.begin(), m_sorted.end(), key) &&
            containsWords(bytesOf(answer, 1), m_words)) {
            m_found.push_back(key);
        }
        if (steps % kLookAtClock == 0 && m_connection.clock().monotonicMs() >= deadline) {
            return;
        }
    }
    m_stage = Stage::End;
}

/// The index turned out to be damaged: what is left is looked through row by row.
void SqliteTextSearch::goOnWithoutIndex() {
    m_damaged = true;
    m_hasIndex = false;
    m_stage = Stage::Rows;
    m_next = 0;
    const std::unordered_set<qint64> known(m_found.begin(), m_found.end());
    std::erase_if(m_keys, [&known](qint64 key) { return known.count(key) != 0; });
}

} // namespace yrw::dao
