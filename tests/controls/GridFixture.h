#pragma once

#include "platform/clock/Clock.h"
#include "platform/controls/RecordGrid.h"
#include "platform/dao/Database.h"

#include <QApplication>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace yrw {

/// A window with a grid over the customers of a fresh database.
class GridTest : public testing::Test {
protected:
    GridTest() {
        database = workspace->CreateDatabase(folder.filePath("Desk.mdb"));
        database->RunScript("CREATE TABLE tblCustomers (RecordID INTEGER PRIMARY KEY AUTOINCREMENT,"
                            " Name VARCHAR(255) COLLATE NOCASE, Orders INTEGER, Since DATETIME,"
                            " Active BOOLEAN);");
        window.resize(600, 300);
    }

    void addCustomers(int count) {
        database->RunScript(
            QStringLiteral("INSERT INTO tblCustomers(Name, Orders, Since, Active) "
                           "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
                           "WHERE i < %1) SELECT 'Customer ' || i, i % 7, "
                           "'2026-06-01 12:00:00', i % 2 FROM n")
                .arg(count));
    }
    /// Shows a grid over that many customers.
    void show(int count) {
        addCustomers(count);
        grid = new RecordGrid(&window);
        grid->setColumns({{"RecordID", "No", 900, true, false},
                          {"Name", "Name", 2400, true, true},
                          {"Orders", "Orders", 1200, true, true},
                          {"Active", "Active", 1200, false, true},
                          {"Since", "Since", 2400, true, true}});
        rows = database->OpenRecordset("tblCustomers", dao::RecordsetType::Dynaset);
        grid->setRecordset(rows);
        grid->resize(window.size());
        moving = grid->RowColChange.connect([this](dao::Bookmark row, int column) {
            moves.append({row, column});
        });
        updating = grid->AfterColUpdate.connect([this](int column) { updated.append(column); });
        QObject::connect(grid, &RecordGrid::editFailed, grid,
                         [this](const QString& reason) { failures.append(reason); });
        QObject::connect(grid, &RecordGrid::recordWritten, grid, [this] { ++written; });
        QObject::connect(grid, &RecordGrid::addEditCanceled, grid, [this] { ++canceled; });
        QObject::connect(grid, &RecordGrid::addRowStarted, grid, [this] { ++started; });
        QObject::connect(grid, &RecordGrid::rowActivated, grid, [this] { ++activated; });
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        grid->setFocus();
    }

    [[nodiscard]] QWidget* body(int split = 0) const {
        return grid->findChild<QWidget*>(QStringLiteral("gridBody(%1)").arg(split));
    }
    [[nodiscard]] QLineEdit* editor() const { return grid->findChild<QLineEdit*>("gridEditor"); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    void type(const QString& text) const {
        for (const QChar letter : text) {
            QTest::keyClick(QApplication::focusWidget(), letter.toLatin1());
        }
    }
    void clickCell(qint64 row, int column, Qt::MouseButton button = Qt::LeftButton) const {
        const QRect cell = grid->cellRect(row, column);
        ASSERT_FALSE(cell.isEmpty());
        QTest::mouseClick(body(), button, {}, body()->mapFrom(grid, cell.center()));
    }
    void repaint() const {
        for (int split = 0; split < grid->splitCount(); ++split) {
            body(split)->repaint();
        }
    }
    [[nodiscard]] QVariant stored(qint64 id, QStringView field) const {
        const auto found = database->OpenRecordset(
            QStringLiteral("SELECT * FROM tblCustomers WHERE RecordID=%1").arg(id));
        return found->AtEof() ? QVariant("gone") : found->value(field);
    }

    QTemporaryDir folder;
    ManualClock clock{QDateTime(QDate(2026, 6, 1), QTime(12, 0))};
    FileSystem files;
    Ref<dao::Workspace> workspace = dao::createWorkspace({clock, files});
    Ref<dao::Database> database;
    Ref<dao::Recordset> rows;
    QWidget window;
    RecordGrid* grid = nullptr;
    QList<std::pair<dao::Bookmark, int>> moves;
    QList<int> updated;
    QStringList failures;
    int written = 0;
    int canceled = 0;
    int started = 0;
    int activated = 0;
    Connection moving;
    Connection updating;
};

} // namespace yrw
