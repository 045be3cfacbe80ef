#include "host/core/DeskDatabase.h"

#include "host/core/DeskSampleData.h"
#include "host/core/DeskSchema.h"
#include "platform/component/AutomationError.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

namespace yrw {

namespace {

constexpr qint64 kProgressStep = 1000;

[[noreturn]] void raiseFile(int number, const QString& description) {
    throw AutomationError(number, QStringLiteral("YRWDesk.Database"), description);
}

QString literal(const QString& text) {
    return u'\'' + QString(text).replace(u'\'', QStringLiteral("''")) + u'\'';
}

QString literal(const QDateTime& date) {
    return literal(date.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
}

QString literal(qint64 number) {
    return QString::number(number);
}

QString literal(double number) {
    return QString::number(number, 'f', 2);
}

/// Writes many rows with few statements, some hundred rows each: a row through a recordset costs
/// ten times as much.
class RowWriter {
public:
    RowWriter(dao::Database& database, const QString& head) : m_database(database), m_head(head) {}

    template <class... Values>
    void add(const Values&... values) {
        m_rows += m_count == 0 ? u"\n(" : u",\n(";
        bool first = true;
        ((m_rows += (first ? u"" : u",") + literal(values), first = false), ...);
        m_rows += u')';
        if (++m_count == kRowsAtOnce) {
            flush();
        }
    }
    void flush() {
        if (m_count > 0) {
            m_database.RunScript(m_head + u" VALUES" + m_rows + u';');
            m_rows.clear();
            m_count = 0;
        }
    }

private:
    static constexpr int kRowsAtOnce = 400;

    dao::Database& m_database;
    QString m_head;
    QString m_rows;
    int m_count = 0;
};

void fill(dao::Database& database, qint64 customers, QDate today, const DeskProgress& progress) {
    DeskSampleData data(customers, today);
    RowWriter customerRows(
        database, QStringLiteral("INSERT INTO Customers (CustomerNo, Name, Contact, Street, Town, "
                                 "Postcode, Phone, EMail, CustomerSince)"));
    RowWriter orderRows(database,
                        QStringLiteral("INSERT INTO Orders (OrderNo, CustomerID, Item, Quantity, "
                                       "Amount, OrderDate, State)"));
    for (qint64 id = 1; id <= customers; ++id) {
        const SampleCustomer c = data.nextCustomer();
        customerRows.add(c.number, c.name, c.contact, c.street, c.town, c.postcode, c.phone,
                         c.email, c.since);
        for (int i = 0; i < c.orders; ++i) {
            const SampleOrder o = data.nextOrder();
            orderRows.add(o.number, id, o.item, qint64(o.quantity), o.amount, o.date, o.state);
        }
        if (progress && (id % kProgressStep == 0 || id == customers)) {
            progress(id, customers);
        }
    }
    customerRows.flush();
    orderRows.flush();
}

} // namespace

QString deskDatabasePath(const QString& folder) {
    return QDir(folder).absoluteFilePath(QStringLiteral("Desk.mdb"));
}

void createDeskDatabase(dao::Workspace& workspace, const QString& folder, qint64 customers,
                        QDate today, const DeskProgress& progress) {
    const QString path = deskDatabasePath(folder);
    const QString making = path + u".making";
    if (!QDir().mkpath(folder)) {
        raiseFile(kErrorCannotOpenDatabase,
                  QStringLiteral("The folder cannot be made: %1").arg(folder));
    }
    // What a broken-off attempt left.
    QFile::remove(making);
    {
        const Ref<dao::Database> database = workspace.CreateDatabase(making);
        database->RunScript(deskSchemaScript());
        dao::Transaction transaction(*database);
        fill(*database, customers, today, progress);
        transaction.commit();
        database->RunScript(deskIndexScript());
        database->setSchemaVersion(kDeskSchemaVersion);
        database->Close();
    }
    if (!QFile::rename(making, path)) {
        raiseFile(kErrorCannotOpenDatabase,
                  QStringLiteral("The database cannot be made: %1").arg(path));
    }
}

Ref<dao::Database> openDeskDatabase(dao::Workspace& workspace, const QString& folder) {
    const QString path = deskDatabasePath(folder);
    Ref<dao::Database> database = workspace.OpenDatabase(path);
    for (const char* table : {"Customers", "Orders", "Users", "Groups"}) {
        if (!database->hasTable(QString::fromLatin1(table))) {
            raiseFile(kErrorNotADatabase,
                      QStringLiteral("This is not a database of the desk: %1").arg(path));
        }
    }
    return database;
}

} // namespace yrw
