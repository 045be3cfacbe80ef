#include "platform/dao/FileObjects.h"

#include "platform/dao/sqlite/SqliteDatabase.h"

#include <QRegularExpression>

namespace yrw::dao {

namespace {

Connection& connectionOf(Database& database) {
    return dynamic_cast<SqliteDatabase&>(database).connection();
}

} // namespace

std::vector<FileObject> fileObjects(Database& database) {
    Statement statement(connectionOf(database).handle(),
                        QStringLiteral("SELECT type, name, tbl_name, sql FROM sqlite_schema WHERE "
                                       "sql IS NOT NULL AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' "
                                       "ORDER BY rowid"));
    std::vector<FileObject> objects;
    while (statement.step()) {
        objects.push_back(
            {statement.text(0), statement.text(1), statement.text(2), statement.text(3)});
    }
    return objects;
}

Damage damageOf(const QStringList& problems) {
    static const QRegularExpression ofIndex(
        QStringLiteral("^(row \\d+ missing from index|wrong # of entries in index|non-unique entry "
                       "in index|row \\d+ values differ from index)"),
        QRegularExpression::CaseInsensitiveOption);
    Damage damage;
    for (const QString& problem : problems) {
        (ofIndex.match(problem).hasMatch() ? damage.indexes : damage.pages) += problem.simplified();
    }
    return damage;
}

void rebuildIndexes(Database& database) {
    database.RunScript(QStringLiteral("REINDEX"));
}

QString textIndexProblem(Database& database, const TextIndexNames& names) {
    Connection& connection = connectionOf(database);
    const QString index = quotedName(names.index);
    if (!database.isReadOnly()) {
        try {
            Transaction transaction(database);
            connection.execute(
                QStringLiteral("INSERT INTO %1(%1) VALUES ('integrity-check')").arg(index));
        } catch (const AutomationError& error) {
            if (error.number() != kErrorNotADatabase) {
                throw;
            }
            return QStringLiteral("the index contradicts itself");
        }
    }
    const QString waiting = quotedName(names.waiting);
    const auto count = [&](const QString& from, const QString& fromKey, const QString& in,
                           const QString& inKey) {
        return connection
            .scalar(QStringLiteral("SELECT count(*) FROM %1 WHERE %2 NOT IN (SELECT %4 FROM %3) "
                                   "AND %2 NOT IN (SELECT RecordID FROM %5)")
                        .arg(from, fromKey, in, inKey, waiting))
            .toLongLong();
    };
    const QString sizes = quotedName(names.index + QStringLiteral("_docsize"));
    const QString table = quotedName(names.table);
    const QString key = quotedName(names.key);
    const qint64 lacking = count(table, key, sizes, QStringLiteral("id"));
    const qint64 surplus = count(sizes, QStringLiteral("id"), table, key);
    if (lacking == 0 && surplus == 0) {
        return {};
    }
    return QStringLiteral("the index lacks %1 notes and has %2 that are gone")
        .arg(lacking)
        .arg(surplus);
}

} // namespace yrw::dao
