#pragma once

#include <QStringList>

#include <memory>
#include <vector>

namespace yrw::dao {

/// What an index of texts covers, and the names that it has in the file.
struct TextIndexNames {
    QString table;      ///< whose rows are found
    QString key;        ///< its key, a whole number
    QStringList fields; ///< the texts that are looked through
    QString index;      ///< the index itself; names beginning with it belong to it
    QString waiting;    ///< table of the keys of rows that the index does not have as they are
};

/// A search under way.
///
/// Lifetime: ends before its index. It holds nothing open between two calls.
/// Thread: the user-interface thread.
class TextSearch {
public:
    virtual ~TextSearch() = default;
    /// Goes on for about so long (at least one step); the keys found meanwhile, each once.
    [[nodiscard]] virtual std::vector<qint64> next(int milliseconds) = 0;
    [[nodiscard]] virtual bool atEnd() const = 0;
};

/// An index in the database file that finds the rows whose texts contain given words, in any case
/// and accent, inside words too.
///
/// Texts are folded before they are indexed. No trigger can fold, and other programs write as well:
/// a trigger therefore only puts the key of a changed row on a list, and `catchUp` takes the rows
/// on that list in. Meanwhile a search reads such rows themselves, so that what it answers is never
/// behind the table.
///
/// Lifetime: keeps its database. Calls raise `kErrorObjectClosed` after that was closed.
/// Thread: the user-interface thread.
class TextIndex {
public:
    virtual ~TextIndex() = default;
    /// Makes the index anew, with every row waiting to be taken in; what was there is dropped.
    virtual void create() = 0;
    /// Notices what was written past the index: makes a missing or damaged one anew, and puts rows
    /// that it lacks, or has too many, on the list. A look at two counts when all is well; nothing
    /// in a read-only database. Raises `kErrorLocked` when somebody is writing.
    virtual void repair() = 0;
    /// Rows that wait to be taken in.
    [[nodiscard]] virtual qint64 waiting() = 0;
    /// Takes waiting rows in for about so long, in one transaction; true while rows are left.
    /// False, with nothing done, in a read-only database and while a part of the index is missing.
    /// A program that is just writing is not waited for: then nothing is done either.
    virtual bool catchUp(int milliseconds) = 0;
    /// Begins to look for words, folded as by `foldedWords`, among the rows with the given keys.
    /// Keys given first are found first where the search goes through the rows one by one.
    [[nodiscard]] virtual std::unique_ptr<TextSearch> search(const QStringList& words,
                                                             std::vector<qint64> keys) = 0;
    /// What is wrong with an index whose tables and triggers are there: it contradicts itself, or
    /// lacks rows, or has too many; nothing when all is well. Rows that wait are fine. In a
    /// read-only database only the rows are counted.
    [[nodiscard]] virtual QString problem() = 0;
};

} // namespace yrw::dao
