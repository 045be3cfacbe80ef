#pragma once

#include "store/NotesDatabase.h"
#include "store/Schema.h"

#include <QSet>

#include <functional>
#include <optional>
#include <vector>

namespace yrw {

/// What puts a finding right.
enum class Remedy {
    None,     ///< nothing that a program could decide
    Write,    ///< the fields in `values`
    Delete,   ///< the row goes
    Script,   ///< `script` puts an object of the file back
    Query,    ///< `values` are a row of the stored queries
    Reindex,  ///< the indexes are made anew
    TextIndex ///< the search index is made anew
};

/// One thing that is wrong with a notes database.
struct Finding {
    QString table;       ///< or the name of another object of the file
    qint64 recordID = 0; ///< 0 when it is not about one row
    QString problem;     ///< for the user, without the name of the object
    Remedy remedy = Remedy::None;
    dao::ValueList values{};
    QString script{};
    bool isMended = false;
};

/// What a check goes by besides the file.
struct CheckRules {
    /// Keys of the host's users; nothing where no host tells.
    std::optional<QSet<qint64>> userIDs;
    /// The host whose users these are: notes of others are none of theirs.
    QString hostProgID;
    /// Called for every row.
    std::function<void()> step = [] {};
};

/// What a check found.
struct CheckResult {
    std::vector<Finding> findings;
    /// The file itself is damaged, and nothing else was looked at; `salvageNotes` may help.
    bool isDamaged = false;
};

/// The wrong things in an open notes database: its pages, its objects against those that this
/// version ships, indexes, stored queries, and then row by row. Codes that the program itself
/// writes are never wrong. Changes nothing. Raises what reading raises.
[[nodiscard]] CheckResult findProblems(const Ref<dao::Workspace>& workspace,
                                       const Ref<dao::Database>& database, const CheckRules& rules);

/// A part of `findProblems`: objects, indexes, search index and stored queries.
[[nodiscard]] std::vector<Finding> findObjectProblems(const Ref<dao::Workspace>& workspace,
                                                      const Ref<dao::Database>& database);

/// Puts right what has a remedy and marks it as mended, in one transaction; one that cannot be put
/// right is left. Raises `kErrorReadOnly` for a read-only database, and what locking raises.
void mendProblems(const Ref<dao::Database>& database, std::vector<Finding>& findings);

/// The script that makes an empty notes database of this version.
[[nodiscard]] QString shippedScript();

} // namespace yrw
