-- The notes database.
--
-- Dates are text, "YYYY-MM-DD HH:MM:SS", in local time. True is 1. Declared types tell the kind of
-- a field; long texts are LONGTEXT, so that the engine keeps them as text. Long texts stand last
-- in their table: a column behind them would cost reading through them.
-- The views need nothing but the engine, so that any tool can read them. Queries with parameters
-- and action queries are rows of tblQueries; Now() in them is the local time.

CREATE TABLE tblNotes (
    RecordID INTEGER PRIMARY KEY AUTOINCREMENT,
    Subject TEXT(255) COLLATE NOCASE,
    Status INTEGER DEFAULT 1,
    NoteType INTEGER DEFAULT 1,
    AutomaticallyShow BOOLEAN DEFAULT 0,
    OwnerComponentProgID TEXT(255) COLLATE NOCASE,
    OwnerProgID TEXT(255) COLLATE NOCASE,
    OwnerObjectKey TEXT(255) COLLATE NOCASE,
    OwnerRecordID LONG,
    RecordUserID LONG,
    RecordUserCode TEXT(255) COLLATE NOCASE,
    Date DATETIME,
    ChangeDate DATETIME,
    ChangeUserCode TEXT(255) COLLATE NOCASE,
    ReminderType INTEGER DEFAULT 0,
    ReminderDate DATETIME,
    PlainNote LONGTEXT,
    RTFNote LONGTEXT
);
CREATE INDEX "OwnerComponentProgID:OwnerObjectKey:OwnerRecordID:Status"
    ON tblNotes (OwnerComponentProgID, OwnerObjectKey, OwnerRecordID, Status);
CREATE INDEX NotesByOwner ON tblNotes (OwnerObjectKey, OwnerRecordID);

-- Finding by words. The index holds subject and text folded, without case and accents, which no
-- trigger can do: triggers put the keys of changed notes on a list, and whoever searches takes
-- them in. A program that only writes notes needs to know nothing of it.
CREATE TABLE tblNotesToIndex (RecordID INTEGER PRIMARY KEY);
CREATE VIRTUAL TABLE tblNotesText USING fts5(Folded, tokenize='trigram case_sensitive 1', detail=none);
CREATE TRIGGER tblNotesTextAdded AFTER INSERT ON tblNotes BEGIN
    INSERT OR IGNORE INTO tblNotesToIndex VALUES (new.RecordID);
END;
CREATE TRIGGER tblNotesTextChanged AFTER UPDATE OF RecordID, Subject, PlainNote ON tblNotes
WHEN old.RecordID <> new.RecordID OR old.Subject IS NOT new.Subject OR old.PlainNote IS NOT new.PlainNote BEGIN
    INSERT OR IGNORE INTO tblNotesToIndex VALUES (old.RecordID), (new.RecordID);
END;
CREATE TRIGGER tblNotesTextDeleted AFTER DELETE ON tblNotes BEGIN
    INSERT OR IGNORE INTO tblNotesToIndex VALUES (old.RecordID);
END;

-- Status of a reminder: 1 open, 2 closed without an answer, 3 later, 4 dismissed.
CREATE TABLE tblReminders (
    RecordID INTEGER PRIMARY KEY AUTOINCREMENT,
    NoteID LONG,
    UserID LONG,
    OriginalDate DATETIME,
    NextDate DATETIME,
    LastDate DATETIME,
    Status INTEGER DEFAULT 1
);
CREATE INDEX RemindersByNote ON tblReminders (NoteID);
CREATE INDEX OpenRemindersByUser ON tblReminders (UserID, NextDate)
    WHERE Status IS NULL OR Status <> 4;

CREATE TABLE tblSystem (
    RecordID INTEGER PRIMARY KEY AUTOINCREMENT,
    FileOpenFilter LONGTEXT
);
INSERT INTO tblSystem DEFAULT VALUES;

CREATE TABLE tblSettings (
    HighlightRowColour LONG
);
INSERT INTO tblSettings DEFAULT VALUES;

CREATE TABLE tblLinkedColumnDefs (
    RecordID INTEGER PRIMARY KEY AUTOINCREMENT,
    GridLayoutName TEXT(255) COLLATE NOCASE,
    GridField TEXT(255) COLLATE NOCASE,
    ObjectKey TEXT(255) COLLATE NOCASE,
    SearchQuery TEXT(255) COLLATE NOCASE,
    SearchField TEXT(255) COLLATE NOCASE,
    SQLQuote TEXT(255),
    Columns LONGTEXT
);
-- Where the layouts of the desk flag a row that has notes: the column of the record's own number.
INSERT INTO tblLinkedColumnDefs
    (GridLayoutName, GridField, ObjectKey, SearchQuery, SearchField, SQLQuote) VALUES
('Overview', 'CustomerNo', 'cu', 'Customers', 'CustomerNo', '"'),
('Address book', 'CustomerNo', 'cu', 'Customers', 'CustomerNo', '"'),
('Orders of the customer', 'OrderNo', 'or', 'qryOrders', 'OrderNo', '"'),
('Short', 'OrderNo', 'or', 'qryOrders', 'OrderNo', '"'),
('All orders', 'OrderNo', 'or', 'qryOrders', 'OrderNo', '"');

-- Names of the host's users, refreshed from the host when the database is opened.
CREATE TABLE tblUserNames (
    UserID INTEGER PRIMARY KEY,
    UserCode TEXT(255) COLLATE NOCASE,
    UseName TEXT(255) COLLATE NOCASE
);

-- Rows that came from databases of the older format, so that none comes twice: what they were there,
-- fingerprints of what never changes of them and of all that they held, and what they became here.
CREATE TABLE tblImportedRows (
    RecordID INTEGER PRIMARY KEY,
    TableName TEXT(255),
    OldRecordID LONG,
    NewRecordID LONG,
    Origin TEXT(255),
    Contents TEXT(255)
);

-- Stored queries. Kind is view, select or action; BaseTable is the table that changes made through
-- the query go to; Parameters lists names and types in order.
CREATE TABLE tblQueries (
    Name TEXT(255) PRIMARY KEY COLLATE NOCASE,
    Kind TEXT(255) NOT NULL,
    BaseTable TEXT(255),
    SQL LONGTEXT,
    Parameters LONGTEXT
);

-- An author whose name is unknown shows by code; no note is left out.
CREATE VIEW qryNotes AS
SELECT n.RecordID, n.Subject, n.RTFNote, n.PlainNote, n.Status, n.NoteType, n.AutomaticallyShow,
       n.OwnerComponentProgID, n.OwnerProgID, n.OwnerObjectKey, n.OwnerRecordID, n.RecordUserID,
       n.RecordUserCode, n.Date, n.ChangeDate, n.ChangeUserCode, n.ReminderType, n.ReminderDate,
       n.RecordID AS NoteID, coalesce(u.UseName, n.RecordUserCode) AS UseName
FROM tblNotes AS n LEFT JOIN tblUserNames AS u ON u.UserID = n.RecordUserID;

CREATE VIEW qryReminders AS
SELECT r.RecordID, r.NoteID, r.UserID, r.OriginalDate, r.NextDate, r.LastDate, r.Status,
       n.Subject, n.PlainNote
FROM tblReminders AS r LEFT JOIN tblNotes AS n ON n.RecordID = r.NoteID;

CREATE VIEW qrySystem AS SELECT * FROM tblSystem;

INSERT INTO tblQueries (Name, Kind, BaseTable, SQL, Parameters) VALUES
('qryNotes', 'view', 'tblNotes', NULL, NULL),
('qryReminders', 'view', 'tblReminders', NULL, NULL),
('qrySystem', 'view', 'tblSystem', NULL, NULL),
('qryActiveReminders', 'select', 'tblReminders',
 'SELECT r.RecordID, r.NoteID, r.UserID, r.OriginalDate, r.NextDate, r.LastDate, r.Status,
         n.Subject, n.PlainNote, n.OwnerComponentProgID, n.OwnerProgID, n.OwnerObjectKey,
         n.OwnerRecordID, n.RecordUserID, n.RecordUserCode, n.ReminderType
  FROM tblReminders AS r JOIN tblNotes AS n ON n.RecordID = r.NoteID
  WHERE r.UserID = :UserID
    AND r.NextDate <= datetime(Now(), coalesce(:NumberOfMinutes, 0) || '' minutes'')
    AND (r.Status IS NULL OR r.Status <> 4)
    AND n.Status = 1
    AND (n.OwnerComponentProgID = :ProgID
         OR (n.OwnerObjectKey IS NULL AND coalesce(n.OwnerComponentProgID, '''') = ''''))
  ORDER BY r.NextDate, r.RecordID',
 'ProgID Text, NumberOfMinutes Integer, UserID Long'),
('sumCountNoteReminders', 'select', NULL,
 'SELECT count(RecordID) AS CountOfRecordID FROM tblReminders WHERE NoteID = :NoteID',
 'NoteID Long'),
('delNoteByID', 'action', 'tblNotes',
 'DELETE FROM tblNotes WHERE RecordID = :RecordID', 'RecordID Long'),
('delReminderByID', 'action', 'tblReminders',
 'DELETE FROM tblReminders WHERE RecordID = :RecordID', 'RecordID Long'),
('delRemindersByNoteID', 'action', 'tblReminders',
 'DELETE FROM tblReminders WHERE NoteID = :NoteID', 'NoteID Long');

PRAGMA user_version = 3;
