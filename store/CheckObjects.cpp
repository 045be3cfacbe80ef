// What of a file's objects is missing or not as this version ships it.
#include "store/CheckParts.h"

#include "store/NotesTextIndex.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace yrw {

namespace {

const QString kQueries = QStringLiteral("tblQueries");
const QString kName = QStringLiteral("Name");

/// Texts of the engine's language that differ in blanks and letters' case alone are one. Comments
/// count: what ships has none, and what only looks like one may be part of a text.
QString comparable(QString sql) {
    static const QRegularExpression aroundSigns(QStringLiteral("\\s*([(),;=<>])\\s*"));
    return sql.replace(aroundSigns, QStringLiteral("\\1")).simplified().toLower();
}

bool isSearchPart(const dao::FileObject& object) {
    const dao::TextIndexNames& names = notesTextIndexNames();
    return object.name.startsWith(names.index) || object.name == names.waiting;
}

QString scriptFor(const dao::FileObject& object) {
    return QStringLiteral("DROP %1 IF EXISTS \"%2\";\n%3;")
        .arg(object.kind.toUpper(), object.name, object.sql);
}

/// The lines that declare the columns of a table, by name in lower case.
QHash<QString, QString> columnsOf(const QString& sql) {
    static const QRegularExpression quotes(QStringLiteral("[\"`\\[\\]]"));
    QHash<QString, QString> columns;
    int depth = 0;
    QString part;
    const auto finish = [&] {
        const QString declared = part.simplified();
        columns.insert(declared.section(u' ', 0, 0).remove(quotes).toLower(), declared);
        part.clear();
    };
    for (const QChar c : sql) {
        depth += c == u'(' ? 1 : 0;
        depth -= c == u')' ? 1 : 0;
        const bool ends = (c == u',' && depth == 1) || (c == u')' && depth == 0);
        if (ends) {
            finish();
        } else if (depth > 1 || (depth == 1 && c != u'(') || (depth == 1 && !part.isEmpty())) {
            part += c;
        }
    }
    return columns;
}

/// Compares one file with what ships.
class ObjectCheck {
public:
    ObjectCheck(const Ref<dao::Database>& database, dao::Database& shipped)
        : m_database(database), m_shipped(shipped), m_shippedObjects(shipped.objects()) {
        for (const dao::FileObject& object : database->objects()) {
            m_here.insert(object.name.toLower(), object);
        }
    }

    std::vector<Finding> run() {
        for (const dao::FileObject& wanted : m_shippedObjects) {
            check(wanted);
        }
        checkForeignTriggers();
        checkSearch();
        checkQueries();
        return std::move(m_findings);
    }

private:
    void check(const dao::FileObject& wanted) {
        const auto here = m_here.constFind(wanted.name.toLower());
        if (isSearchPart(wanted)) {
            m_searchIsBroken = m_searchIsBroken || here == m_here.constEnd() ||
                               comparable(here->sql) != comparable(wanted.sql);
            return;
        }
        if (here == m_here.constEnd()) {
            add(wanted, QStringLiteral("the %1 is missing").arg(wanted.kind), scriptFor(wanted));
        } else if (here->kind != wanted.kind) {
            m_findings.push_back(
                {wanted.name, 0,
                 QStringLiteral("is a %1 where a %2 belongs").arg(here->kind, wanted.kind)});
        } else if (wanted.kind == u"table") {
            checkColumns(wanted, *here);
        } else if (comparable(here->sql) != comparable(wanted.sql)) {
            add(wanted, QStringLiteral("the %1 was changed").arg(wanted.kind), scriptFor(wanted));
        }
    }

    void checkColumns(const dao::FileObject& wanted, const dao::FileObject& here) {
        const QHash<QString, QString> declared = columnsOf(here.sql);
        const QHash<QString, QString> all = columnsOf(wanted.sql);
        for (auto column = all.constBegin(); column != all.constEnd(); ++column) {
            if (!declared.contains(column.key())) {
                add(wanted,
                    QStringLiteral("the field %1 is missing").arg(column->section(u' ', 0, 0)),
                    QStringLiteral("ALTER TABLE \"%1\" ADD COLUMN %2").arg(here.name, *column));
            }
        }
    }

    /// A trigger runs whenever anybody writes; what it does, only whoever made it knows.
    void checkForeignTriggers() {
        for (const dao::FileObject& object : std::as_const(m_here)) {
            const bool isShipped =
                std::any_of(m_shippedObjects.begin(), m_shippedObjects.end(),
                            [&](const dao::FileObject& wanted) {
                                return wanted.name.compare(object.name, Qt::CaseInsensitive) == 0;
                            });
            if (object.kind == u"trigger" && !isShipped) {
                m_findings.push_back({object.name, 0,
                                      QStringLiteral("a trigger on %1 that does not belong to this "
                                                     "version; look at what it does")
                                          .arg(object.table)});
            }
        }
    }

    void checkSearch() {
        QString problem = QStringLiteral("the search index is incomplete or was changed");
        if (!m_searchIsBroken) {
            problem = notesTextIndex(m_database)->problem();
        }
        if (!problem.isEmpty()) {
            m_findings.push_back({notesTextIndexNames().index, 0, problem, Remedy::TextIndex});
        }
    }

    void checkQueries() {
        QHash<QString, dao::ValueList> here;
        const auto own = m_here.constFind(kQueries.toLower());
        // What somebody put in the table's place is said already, and need not be readable.
        if (own != m_here.constEnd() && own->kind == u"table") {
            here = rowsOf(*m_database);
        }
        const QHash<QString, dao::ValueList> all = rowsOf(m_shipped);
        for (auto wanted = all.constBegin(); wanted != all.constEnd(); ++wanted) {
            const auto found = here.constFind(wanted.key());
            const bool isMissing = found == here.constEnd();
            const bool isSame =
                !isMissing && std::equal(wanted->begin(), wanted->end(), found->begin(),
                                         found->end(), [](const auto& a, const auto& b) {
                                             return comparable(a.value.toString()) ==
                                                    comparable(b.value.toString());
                                         });
            if (!isSame) {
                m_findings.push_back({wanted->value(kName).toString(), 0,
                                      isMissing ? QStringLiteral("the stored query is missing")
                                                : QStringLiteral("the stored query was changed"),
                                      Remedy::Query, *wanted});
            }
        }
    }

    static QHash<QString, dao::ValueList> rowsOf(dao::Database& database) {
        QHash<QString, dao::ValueList> queries;
        const Ref<dao::Recordset> rows =
            database.OpenRecordset(kQueries, dao::RecordsetType::Snapshot, dao::kReadOnlyOption);
        for (; !rows->AtEof(); rows->MoveNext()) {
            dao::ValueList row;
            for (const char16_t* field : {u"Name", u"Kind", u"BaseTable", u"SQL", u"Parameters"}) {
                const QString name = QString::fromUtf16(field);
                row.set(name, rows->FieldIndex(name) < 0 ? QVariant() : rows->value(name));
            }
            queries.insert(row.value(kName).toString().toLower(), row);
        }
        rows->Close();
        return queries;
    }

    void add(const dao::FileObject& object, const QString& problem, const QString& script) {
        m_findings.push_back({object.name, 0, problem, Remedy::Script, {}, script});
    }

    Ref<dao::Database> m_database;
    dao::Database& m_shipped;
    std::vector<dao::FileObject> m_shippedObjects;
    QHash<QString, dao::FileObject> m_here; ///< by name in lower case
    std::vector<Finding> m_findings;
    bool m_searchIsBroken = false;
};

} // namespace

QString shippedScript() {
    QFile script(QStringLiteral(":/store/Notes.sql"));
    if (!script.open(QIODevice::ReadOnly)) {
        throw AutomationError(kErrorCannotOpenDatabase, QStringLiteral("YRWNOTES.NotesDatabase"),
                              QStringLiteral("The script of the notes database is not there."));
    }
    return QString::fromUtf8(script.readAll());
}

std::vector<Finding> findObjectProblems(const Ref<dao::Workspace>& workspace,
                                        const Ref<dao::Database>& database) {
    const QTemporaryDir folder;
    const Ref<dao::Database> shipped =
        workspace->CreateDatabase(folder.filePath(kNotesDatabaseName));
    shipped->RunScript(shippedScript());
    std::vector<Finding> findings = ObjectCheck(database, *shipped).run();
    shipped->Close();
    return findings;
}

} // namespace yrw
