#include "host/core/DeskSchema.h"

namespace yrw {

namespace {

QString tables() {
    return QStringLiteral(R"sql(
CREATE TABLE Groups (
    RecordID INTEGER PRIMARY KEY AUTOINCREMENT,
    GroupCode TEXT NOT NULL COLLATE NOCASE,
    GroupName TEXT NOT NULL COLLATE NOCASE
);
CREATE TABLE Users (
    RecordID INTEGER PRIMARY KEY AUTOINCREMENT,
    Code TEXT NOT NULL COLLATE NOCASE,
    FirstName TEXT COLLATE NOCASE,
    LastName TEXT COLLATE NOCASE,
    UseName TEXT COLLATE NOCASE,
    EMail TEXT COLLATE NOCASE,
    GroupID LONG
);
CREATE TABLE Customers (
    RecordID INTEGER PRIMARY KEY AUTOINCREMENT,
    CustomerNo TEXT COLLATE NOCASE,
    Name TEXT COLLATE NOCASE,
    Contact TEXT COLLATE NOCASE,
    Street TEXT COLLATE NOCASE,
    Town TEXT COLLATE NOCASE,
    Postcode TEXT COLLATE NOCASE,
    Phone TEXT COLLATE NOCASE,
    EMail TEXT COLLATE NOCASE,
    CustomerSince DATETIME
);
CREATE TABLE Orders (
    RecordID INTEGER PRIMARY KEY AUTOINCREMENT,
    OrderNo TEXT COLLATE NOCASE,
    CustomerID LONG,
    Item TEXT COLLATE NOCASE,
    Quantity LONG DEFAULT 1,
    Amount DOUBLE DEFAULT 0,
    OrderDate DATETIME,
    State TEXT COLLATE NOCASE DEFAULT 'Open'
);
CREATE TABLE Reports (
    RecordID INTEGER PRIMARY KEY AUTOINCREMENT,
    Title TEXT COLLATE NOCASE
);
CREATE TABLE tblQueries (
    Name TEXT PRIMARY KEY COLLATE NOCASE,
    Kind TEXT NOT NULL,
    BaseTable TEXT COLLATE NOCASE,
    SQL TEXT,
    Parameters TEXT
);
)sql");
}

QString views() {
    return QStringLiteral(R"sql(
CREATE VIEW qryGroups AS
    SELECT Groups.RecordID, Groups.RecordID AS GroupID, Groups.GroupCode, Groups.GroupName
    FROM Groups;
CREATE VIEW qryUsers AS
    SELECT Users.RecordID, Users.Code, Users.FirstName, Users.LastName, Users.UseName,
           Users.EMail, Users.GroupID, Groups.GroupCode, Groups.GroupName
    FROM Users LEFT JOIN Groups ON Groups.RecordID = Users.GroupID;
CREATE VIEW qryOrders AS
    SELECT Orders.RecordID, Orders.OrderNo, Orders.CustomerID, Customers.Name AS CustomerName,
           Orders.Item, Orders.Quantity, Orders.Amount, Orders.OrderDate, Orders.State
    FROM Orders LEFT JOIN Customers ON Customers.RecordID = Orders.CustomerID;
INSERT INTO tblQueries (Name, Kind, BaseTable) VALUES
    ('qryGroups', 'view', 'Groups'),
    ('qryUsers', 'view', 'Users'),
    ('qryOrders', 'view', 'Orders');
)sql");
}

QString people() {
    return QStringLiteral(R"sql(
INSERT INTO Groups (RecordID, GroupCode, GroupName) VALUES
    (1, 'SAL', 'Sales'),
    (2, 'SER', 'Service'),
    (3, 'OFF', 'Office');
INSERT INTO Users (RecordID, Code, FirstName, LastName, UseName, EMail, GroupID) VALUES
    (1, 'ANNA', 'Anna', 'Lindqvist', 'Anna Lindqvist', 'anna@desk.example', 1),
    (2, 'BEN', 'Ben', 'Okafor', 'Ben Okafor', 'ben@desk.example', 1),
    (3, 'CARA', 'Cara', 'Whitlock', 'Cara Whitlock', 'cara@desk.example', 2),
    (4, 'DAVE', 'Dave', 'Pennington', 'Dave Pennington', 'dave@desk.example', 2),
    (5, 'ERIN', 'Erin', 'Maguire', 'Erin Maguire', 'erin@desk.example', 3);
)sql");
}

} // namespace

QString deskSchemaScript() {
    return tables() + views() + people();
}

QString deskIndexScript() {
    return QStringLiteral(R"sql(
CREATE UNIQUE INDEX UserCode ON Users (Code);
CREATE INDEX CustomerNo ON Customers (CustomerNo);
CREATE INDEX CustomerName ON Customers (Name);
CREATE INDEX CustomerTown ON Customers (Town);
CREATE INDEX OrderNo ON Orders (OrderNo);
CREATE INDEX OrderCustomer ON Orders (CustomerID);
)sql");
}

} // namespace yrw
