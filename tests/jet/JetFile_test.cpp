// Reading an old database: the sample, what is added to it, and what is broken in it.
#include "platform/component/AutomationError.h"
#include "platform/jet/JetFile.h"
#include "tests/support/OldDatabase.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <random>

#include <gtest/gtest.h>

using namespace yrw;
using namespace yrw::jet;
using yrw::test::OldDatabase;
using yrw::test::sampleFile;

namespace {

const QStringList kTables{QStringLiteral("tblNotes"), QStringLiteral("tblReminders"),
                          QStringLiteral("tblSystem"), QStringLiteral("tblSettings"),
                          QStringLiteral("tblLinkedColumnDefs")};

/// Keeps what is read, as the sample's description writes it.
class Keeper final : public JetSink {
public:
    QJsonObject tables;
    QStringList notWhole;
    int badRows = 0;
    int cutCells = 0;

    void beginTable(const JetTable& table) override {
        m_table = table;
        tables.insert(table.name, QJsonArray());
    }
    void row(const JetRow& row) override {
        QJsonObject values;
        for (std::size_t i = 0; i < row.size(); ++i) {
            cutCells += row[i].state > CellState::Value ? 1 : 0;
            values.insert(m_table.columns[qsizetype(i)], yrw::test::sampleValue(row[i].value));
        }
        QJsonArray rows = tables.value(m_table.name).toArray();
        rows.append(values);
        tables.insert(m_table.name, rows);
    }
    void badRow() override { ++badRows; }
    void endTable(bool isWhole) override {
        if (!isWhole) {
            notWhole += m_table.name;
        }
    }

private:
    JetTable m_table;
};

class OldFile : public testing::Test {
protected:
    Keeper read(OldDatabase& database) {
        Keeper keeper;
        const QString path = database.write(folder.filePath(QStringLiteral("Notes.mdb")));
        EXPECT_EQ(readJetFile(path, reading, keeper), JetEnd::Read);
        return keeper;
    }
    /// Reads what may be damaged; empty when it was read as far as it goes, else the reason.
    QString problem(const OldDatabase& database, Keeper& keeper) {
        try {
            const QString path = database.write(folder.filePath(QStringLiteral("Notes.mdb")));
            EXPECT_EQ(readJetFile(path, reading, keeper), JetEnd::Read);
            return {};
        } catch (const AutomationError& error) {
            return error.description();
        }
    }

    QTemporaryDir folder;
    JetReading reading{.tables = kTables, .clock = Clock::instance()};
};

TEST_F(OldFile, EveryRowOfTheSampleIsWhatItMustBe) {
    OldDatabase database;
    const Keeper keeper = read(database);
    QJsonObject expected =
        QJsonDocument::fromJson(sampleFile(QStringLiteral("expected.json"))).object();
    expected.remove(QStringLiteral("_about"));
    ASSERT_EQ(keeper.tables.keys(), expected.keys());
    for (const QString& table : expected.keys()) {
        const QJsonArray rows = keeper.tables.value(table).toArray();
        const QJsonArray wanted = expected.value(table).toArray();
        ASSERT_EQ(rows.size(), wanted.size()) << table.toStdString();
        for (qsizetype i = 0; i < rows.size(); ++i) {
            EXPECT_EQ(QJsonDocument(rows[i].toObject()).toJson().toStdString(),
                      QJsonDocument(wanted[i].toObject()).toJson().toStdString());
        }
    }
    EXPECT_EQ(keeper.badRows + keeper.cutCells + int(keeper.notWhole.size()), 0);
}

TEST_F(OldFile, ATextOfAMillionCharactersComesWhole) {
    OldDatabase database;
    const QString text =
        QStringLiteral("A line of \u017c\u00f3\u0142w \U0001F600.\r\n").repeated(50000);
    database.addLongNote(500, {reinterpret_cast<const char*>(text.utf16()), text.size() * 2});
    database.addLongNote(501,
                         QByteArray("\xFF\xFE", 2) + QByteArray("compressed").repeated(100000));
    database.addNotes(502, 400, QByteArray("s\0h\0o\0r\0t\0", 10));
    const QJsonArray notes = read(database).tables.value(kTables[0]).toArray();
    ASSERT_EQ(notes.size(), 12 + 402);
    const QString plain = QStringLiteral("PlainNote");
    EXPECT_EQ(notes[12].toObject().value(plain), yrw::test::sampleValue(text));
    EXPECT_EQ(notes[13].toObject().value(plain),
              yrw::test::sampleValue(QStringLiteral("compressed").repeated(100000)));
    EXPECT_EQ(notes[413].toObject().value(plain), QStringLiteral("short"));
    EXPECT_EQ(notes[413].toObject().value(QStringLiteral("Date")),
              QStringLiteral("2020-01-01T00:00:00"));
}

TEST_F(OldFile, WhatIsNoOldDatabaseIsNamedInOneSentence) {
    OldDatabase sample;
    const QByteArray good = sample.bytes();
    QByteArray newer = good;
    newer[0x14] = 2;
    const struct {
        QByteArray bytes;
        const char* says;
    } files[] = {{{}, "is no notes database of the older format"},
                 {QByteArray("Just a text.\n").repeated(500), "is no notes database"},
                 {good.left(30), "is damaged; nothing can be read of it"},
                 {good.left(4096), "is damaged; nothing can be read of it"},
                 {good.left(4096) + QByteArray(800000, '\0'), "is damaged"},
                 {newer, "is of a version that cannot be read"}};
    for (const auto& [bytes, says] : files) {
        OldDatabase file;
        file.bytes() = bytes;
        Keeper keeper;
        const QString said = problem(file, keeper);
        EXPECT_TRUE(said.contains(QLatin1String(says)) && said.contains(folder.path()))
            << says << ": " << said.toStdString();
    }
}

TEST_F(OldFile, DamagedCopiesGiveWhatCanBeHad) {
    const QByteArray good = OldDatabase().bytes();
    constexpr qsizetype page = 4096;
    std::mt19937 random(17);
    const auto below = [&](qsizetype most) { return qsizetype(random() % unsigned(most)); };
    for (int i = 0; i < 24; ++i) {
        OldDatabase copy;
        QByteArray& bytes = copy.bytes();
        const qsizetype at = page * (1 + below(good.size() / page - 1));
        if (i % 3 == 0) {
            bytes.truncate(at + below(page));
        } else if (i % 3 == 1) {
            bytes.replace(at, page, QByteArray(page, '\0'));
        } else {
            for (int n = 0; n < 400; ++n) {
                bytes[at + below(page)] = char(random());
            }
        }
        Keeper keeper;
        const qint64 before = Clock::instance().monotonicMs();
        const QString said = problem(copy, keeper);
        EXPECT_LT(Clock::instance().monotonicMs() - before, 20000);
        EXPECT_TRUE(said.isEmpty() || said.contains(QStringLiteral("is damaged")))
            << i << ": " << said.toStdString();
        EXPECT_EQ(said.isEmpty(), !keeper.tables.isEmpty());
    }
    // Pages of notes that lead in a circle, and of reminders that are gone.
    OldDatabase copy;
    copy.bytes().replace(194 * page, page, QByteArray(page, '\0'));
    Keeper keeper;
    EXPECT_EQ(problem(copy, keeper), QString());
    EXPECT_EQ(keeper.tables.value(kTables[0]).toArray().size(), 12);
    EXPECT_EQ(keeper.tables.value(kTables[1]).toArray().size(), 0);
    EXPECT_EQ(keeper.tables.value(kTables[3]).toArray().size(), 1);
}

TEST_F(OldFile, ALongTextThatLeadsInACircleIsCut) {
    OldDatabase database;
    database.addLongNote(500, QByteArray(20000, 'x'));
    // Its second page leads back to its first.
    const qsizetype first = database.bytes().indexOf(QByteArray(4000, 'x'));
    const qsizetype second = database.bytes().indexOf(QByteArray(4000, 'x'), first + 4080);
    QByteArray& bytes = database.bytes();
    bytes.replace(second - 4, 4, bytes.mid(first - 4, 4));
    const Keeper keeper = read(database);
    EXPECT_EQ(keeper.cutCells, 0); // as long as it says, of the wrong pieces
    EXPECT_EQ(keeper.tables.value(kTables[0]).toArray().size(), 13);
    bytes.replace(second - 4, 4, QByteArray("\xFF\xFF\xFF\x7F", 4)); // leads nowhere
    EXPECT_EQ(read(database).cutCells, 1);
}

TEST_F(OldFile, AReaderThatIsSilentOrTalksNonsenseIsLost) {
    OldDatabase database;
    const QString path = database.write(folder.filePath(QStringLiteral("Notes.mdb")));
    const auto script = [&](const char* text) {
        QFile file(folder.filePath(QStringLiteral("reader")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("#!/bin/sh\n") + text);
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        return file.fileName();
    };
    Keeper keeper;
    reading.mostSilentMs = 200;
    for (const char* const text : {"exec sleep 60", "cat /dev/zero", "exit 0", "kill -SEGV $$"}) {
        reading.reader = script(text);
        const qint64 began = reading.clock.monotonicMs();
        EXPECT_THROW((void)readJetFile(path, reading, keeper), AutomationError) << text;
        // Long before what all readers together may take.
        EXPECT_LT(reading.clock.monotonicMs() - began, 10'000) << text;
    }
    // It says version 4, begins a table without columns and dies; another one reads what is left.
    reading.reader = script("printf '\\001\\003\\000\\000\\000\\004\\344\\004'\n"
                            "printf '\\003\\014\\000\\000\\000\\005\\000\\000\\000\\000\\000'\n"
                            "printf '\\004\\000Lost'");
    EXPECT_EQ(readJetFile(path, reading, keeper), JetEnd::Read);
    EXPECT_EQ(keeper.notWhole, QStringList{QStringLiteral("Lost")});
    reading.reader.clear();
    reading.step = [] { return false; };
    EXPECT_EQ(readJetFile(path, reading, keeper), JetEnd::Stopped);
}

} // namespace
