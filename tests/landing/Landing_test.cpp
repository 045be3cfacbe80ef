// A user lands on records of the desk: what she does there, and what shows and goes.
#include "tests/landing/LandingFixture.h"

#include "framework/Settings.h"
#include "platform/controls/Colours.h"

#include <QAccessible>
#include <QScrollBar>

using namespace yrw;
using namespace yrw::test;

namespace {

const QString kCu = QStringLiteral("cu");
const QString kOr = QStringLiteral("or");

class LandingOnTheDesk : public LandingFixture {
protected:
    void SetUp() override {
        open();
        addNote(kCu, 3, QStringLiteral("Ring"));
        addNote(kCu, 5, QStringLiteral("Quiet"), false);
        upperGrid().refresh();
    }
    /// Goes to customer 3, whose note then shows.
    void land() {
        upperGrid().setCurrentRow(0);
        upperGrid().setCurrentRow(2);
        ASSERT_TRUE(comesUp({QStringLiteral("Ring")}));
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window())); // the popup gives the keyboard back
    }
    [[nodiscard]] bool isMarked(RecordGrid& grid, qint64 row) {
        QApplication::processEvents();
        return grid.paintedRowColour(row) == colourOfBgr(schema::kDefaultHighlight);
    }
    /// The field in whose column a row's cell has a red frame on screen; nothing without one.
    static QString framedField(RecordGrid& grid, qint64 row) {
        const QImage picture = grid.grab().toImage();
        for (int column = 0; column < grid.columnCount(); ++column) {
            const QRect cell = grid.cellRect(row, column);
            int red = 0;
            for (int x = cell.left(); x <= cell.right(); ++x) {
                for (int y = cell.top(); y <= cell.bottom(); ++y) {
                    red += picture.pixel(x, y) == qRgb(255, 0, 0) ? 1 : 0;
                }
            }
            if (red > cell.width()) {
                return grid.columnField(column);
            }
        }
        return {};
    }
};

TEST_F(LandingOnTheDesk, EveryLayoutFlagsARowsNumberWhereTheSwitchIsOn) {
    window().upper().goToRecord(3);
    addNote(kOr,
            window()
                .application()
                ->Orders(window().upper().CurrentRecord())
                ->NewEnum()
                .at(0)
                ->value(QStringLiteral("RecordID"))
                .toLongLong(),
            QStringLiteral("Order note"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return isMarked(lowerGrid(), 0); }));
    for (DeskGridController* controller : {&window().upper(), &window().lower()}) {
        for (const QString& layout : controller->layoutNames()) {
            controller->loadLayout(layout);
            const bool isUpper = controller == &window().upper();
            ASSERT_TRUE(controller->goToRecord(isUpper ? 3 : controller->currentRecordID()));
            const qint64 row = isUpper ? controller->grid().currentRow() : 0;
            const QString number = layout == u"All fields" ? QStringLiteral("RecordID")
                                   : isUpper               ? QStringLiteral("CustomerNo")
                                                           : QStringLiteral("OrderNo");
            const bool inView = layout != u"All orders" || isMarked(controller->grid(), row);
            EXPECT_EQ(framedField(controller->grid(), row), inView ? number : QString())
                << qPrintable(layout);
            addIn->setSwitch(NotesSwitch::FlagNotesRow, false);
            EXPECT_EQ(framedField(controller->grid(), row), QString()) << qPrintable(layout);
            addIn->setSwitch(NotesSwitch::FlagNotesRow, true);
        }
    }
}

TEST_F(LandingOnTheDesk, TabGoesOnPastTheFlagColumn) {
    upperGrid().setFocus();
    upperGrid().setCurrentRow(1);
    upperGrid().setCurrentColumn(4);
    press(Qt::Key_Tab);
    EXPECT_EQ(upperGrid().currentRow(), 2);
    EXPECT_EQ(upperGrid().currentColumn(), 1);
    press(Qt::Key_Left);
    EXPECT_EQ(upperGrid().currentColumn(), 1);
}

TEST_F(LandingOnTheDesk, WhateverTheUserDoesNextTakesThePopupAway) {
    const std::pair<const char*, std::function<void()>> moves[] = {
        {"move", [&] { press(Qt::Key_Down); }},
        {"move within the row", [&] { press(Qt::Key_Right); }},
        {"scroll", [&] { upperGrid().findChild<QScrollBar*>("gridScroll")->setValue(4); }},
        {"add a row", [&] { window().run(DeskCommand::NewRecord); }},
        {"sort", [&] { window().upper().sortBy(QStringLiteral("Name")); }},
        {"filter", [&] { window().upper().setFilterText(QStringLiteral("a")); }},
        {"split", [&] { window().upper().setSplit(true); }},
        {"another layout", [&] { window().upper().loadLayout(QStringLiteral("All fields")); }},
        {"deactivate", [&] { addIn->DeActivate(); }},
    };
    for (const auto& [name, move] : moves) {
        window().upper().setSplit(false);
        window().upper().setFilterText({});
        window().upper().loadLayout(QStringLiteral("Overview"));
        upperGrid().setFocus();
        land();
        move();
        EXPECT_EQ(popup(), nullptr) << name;
        EXPECT_EQ(statusText(), QString()) << name;
    }
}

TEST_F(LandingOnTheDesk, AnEditHoldsThePopupBackUntilItIsWritten) {
    upperGrid().setCurrentRow(2);
    upperGrid().setCurrentColumn(1);
    upperGrid().setFocus();
    type(QStringLiteral("New name"));
    QTest::qWait(400);
    EXPECT_EQ(popup(), nullptr); // nothing is shown over an edit
    press(Qt::Key_Return);
    EXPECT_TRUE(upperGrid().commitEdit());
    EXPECT_EQ(upperText("Name"), QStringLiteral("New name"));
    land();
    EXPECT_TRUE(window().mainStatusBar().toolTipText().contains(u"Customer: New name [ANNA"));
}

TEST_F(LandingOnTheDesk, MarksFollowTheRowsThroughSortFilterSplitAndLayout) {
    const auto markedRows = [&] {
        QList<qint64> ids;
        for (qint64 row = 0; row < upperGrid().rowCount(); ++row) {
            upperGrid().setCurrentRow(row);
            if (isMarked(upperGrid(), row)) {
                ids += window().upper().currentRecordID();
            }
        }
        std::sort(ids.begin(), ids.end());
        return ids;
    };
    const QList<qint64> both{3, 5};
    EXPECT_EQ(markedRows(), both);
    window().upper().sortBy(QStringLiteral("Town"));
    EXPECT_EQ(markedRows(), both);
    window().upper().setFilterText(QStringLiteral("C000003"));
    EXPECT_EQ(markedRows(), QList<qint64>{3});
    window().upper().setFilterText({});
    window().upper().setSplit(true);
    EXPECT_TRUE(markedRows().isEmpty());
    window().upper().setSplit(false);
    window().upper().loadLayout(QStringLiteral("Address book"));
    EXPECT_EQ(markedRows(), both);
}

TEST_F(LandingOnTheDesk, ANoteFromAnotherMachineMarksItsRowAtTheNextPaint) {
    upperGrid().setCurrentRow(0);
    EXPECT_FALSE(isMarked(upperGrid(), 6));
    const Ref<dao::Workspace> elsewhere = dao::createWorkspace({m_clock, m_files});
    elsewhere->OpenDatabase(m_folder.filePath("data/Notes.mdb"))
        ->RunScript(QStringLiteral("INSERT INTO tblNotes (OwnerComponentProgID, OwnerObjectKey, "
                                   "OwnerRecordID) VALUES ('YRWDesk.Application', 'cu', 7);"));
    elsewhere->Close();
    QTest::qWait(10);
    upperGrid().refresh();
    EXPECT_TRUE(QTest::qWaitFor([&] { return isMarked(upperGrid(), 6); }, 1000));
}

TEST_F(LandingOnTheDesk, AnotherUserSeesTheSameNotes) {
    land();
    popup()->resize(420, 333);
    const QSize size = popup()->size();
    shutDown();
    user = QStringLiteral("BEN");
    open();
    land();
    EXPECT_EQ(popup()->size(), size); // the settings are those of the account on this machine
    EXPECT_EQ(window().application()->CurrentUser()->value(QStringLiteral("Code")).toString(),
              QStringLiteral("BEN"));
    EXPECT_EQ(statusText(), QStringLiteral("1 Note(s) Found...!!"));
}

TEST_F(LandingOnTheDesk, AScreenReaderHearsThatARowHasNotes) {
    const auto reader = [&](qint64 row) {
        QAccessibleInterface* list =
            QAccessible::queryAccessibleInterface(upperGrid().findChild<QWidget*>("gridBody(0)"));
        return list->child(static_cast<int>(row));
    };
    EXPECT_TRUE(reader(2)->text(QAccessible::Name).endsWith(u", Has notes"));
    EXPECT_EQ(reader(2)->text(QAccessible::Description), QStringLiteral("Has notes\nRing"));
    EXPECT_FALSE(reader(3)->text(QAccessible::Name).contains(u"notes"));
    EXPECT_EQ(reader(3)->text(QAccessible::Description), QString());
}

} // namespace
