#include "platform/dao/Upgrade.h"

#include <QFileInfo>

namespace yrw::dao {

namespace {

QString freeCopyName(const Database& database, int version) {
    const QString name = database.Name() + u".v" + QString::number(version);
    QString candidate = name;
    for (int i = 2; QFileInfo::exists(candidate); ++i) {
        candidate = name + u'-' + QString::number(i);
    }
    return candidate;
}

[[noreturn]] void raise(int number, const QString& words, const Database& database) {
    throw AutomationError(number, QStringLiteral("YRW.Database"), words.arg(database.Name()));
}

} // namespace

QString bringUpToDate(Database& database, std::span<const UpgradeStep> steps) {
    const int wanted = steps.empty() ? 0 : steps.back().toVersion;
    const int found = database.SchemaVersion();
    if (found > wanted) {
        raise(kErrorNewerSchema,
              QStringLiteral("%1 was made by a newer version of this program. Install that version "
                             "to open it."),
              database);
    }
    if (found == wanted) {
        return {};
    }
    if (database.isReadOnly()) {
        raise(
            kErrorReadOnly,
            QStringLiteral("%1 is of an older version and cannot be upgraded, because it can only "
                           "be read."),
            database);
    }
    QString copy = freeCopyName(database, found);
    database.CopyTo(copy);
    Transaction transaction(database);
    for (const UpgradeStep& step : steps) {
        // Asked again inside the transaction: another program may have been faster.
        if (step.toVersion > database.SchemaVersion()) {
            database.RunScript(step.script);
            database.setSchemaVersion(step.toVersion);
        }
    }
    transaction.commit();
    return copy;
}

} // namespace yrw::dao
