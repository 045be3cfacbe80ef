#pragma once

#include "store/NotesDatabase.h"

#include <QHash>

namespace yrw {

/// What an import changes on the way. Maps lead from what the old file has to what is stored; what
/// they do not have stays. Letters' case does not count.
struct ImportChoices {
    int codePage = 0;                  ///< of texts of version 3; 0: the one that the file names
    QHash<QString, QString> programs;  ///< program ids of hosts and of their objects
    QHash<QString, QString> ownerKeys; ///< object keys of owning records
    /// Users: by number, or by code. The number that goes with a new code is that of `knownUsers`.
    QHash<QString, QString> users;
    QList<UserName> knownUsers;
    bool isDryRun = false; ///< all is read and reported, nothing written
    /// The program that reads old databases; empty: the one that ships.
    QString reader;
};

} // namespace yrw
