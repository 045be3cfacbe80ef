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

QDateTime atMidnight(const QDate& date) {
    return QDateTime(date, QTime(0, 0));
}

[[noreturn]] void raiseFile(int number, const QString& description) {
    throw AutomationError(number, QStringLiteral("YRWDesk.Database"), description);
}

/// Writes rows through a table recordset, addressing columns by position.
class RowWriter {
public:
    RowWriter(dao::Database& database, const QString& table, const QStringList& fields)
        : m_rows(database.OpenRecordset(table, dao::RecordsetType::Table)) {
        for (const QString& field : fields) {
            m_columns.push_back(m_rows->FieldIndex(field));
        }
    }

    template <class... Values>
    void add(const Values&... values) {
        m_rows->AddNew();
        std::size_t next = 0;
        (m_rows->setValue(m_columns[next++], QVariant(values)), ...);
        m_rows->Update();
    }

private:
    Ref<dao::Recordset> m_rows;
    std::vector<int> m_columns;
};

void fill(dao::Database& database, qint64 customers, QDate today, const DeskProgress& progress) {
    DeskSampleData data(customers, today);
    RowWriter customerRows(database, QStringLiteral("Customers"),
                           {"CustomerNo", "Name", "Contact", "Street", "Town", "Postcode", "Phone",
                            "EMail", "CustomerSince"});
    RowWriter orderRows(
        database, QStringLiteral("Orders"),
        {"OrderNo", "CustomerID", "Item", "Quantity", "Amount", "OrderDate", "State"});
    for (qint64 id = 1; id <= customers; ++id) {
        const SampleCustomer c = data.nextCustomer();
        customerRows.add(c.number, c.name, c.contact, c.street, c.town, c.postcode, c.phone,
                         c.email, atMidnight(c.since));
        for (int i = 0; i < c.orders; ++i) {
            const SampleOrder o = data.nextOrder();
            orderRows.add(o.number, id, o.item, o.quantity, o.amount, atMidnight(o.date), o.state);
        }
        if (progress && (id % kProgressStep == 0 || id == customers)) {
            progress(id, customers);
        }
    }
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
