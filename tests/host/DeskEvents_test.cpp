// Events of the contract are raised by what a user does; the grid's own are told by its tests.
#include "tests/host/DeskFixture.h"

#include <QComboBox>
#include <QHeaderView>
#include <QMenu>
#include <QTimer>
#include <QWheelEvent>

using namespace yrw;
using namespace yrw::test;

namespace {

class DeskEvents : public DeskFixture {
protected:
    void SetUp() override {
        open();
        ASSERT_TRUE(happens("upper.StayOnRow"));
        log->clear();
    }
    /// The positions of the events in the log rise in the order given.
    void expectOrder(const QStringList& events) {
        qsizetype last = -1;
        for (const QString& event : events) {
            const qsizetype at = log->indexOf(event, last + 1);
            EXPECT_GT(at, last) << qPrintable(event) << " in " << qPrintable(log->join(", "));
            last = at;
        }
    }
    /// Chooses an entry of the menu that opens next, with the keyboard or by its name.
    static void chooseFromMenu(const QString& key) {
        QTimer::singleShot(50, [key] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            QAction* action = menu->findChild<QAction*>(key);
            if (action == nullptr) {
                menu->close();
                FAIL() << "no entry " << qPrintable(key);
            }
            QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                              menu->actionGeometry(action).center());
        });
    }
    QHeaderView& header(RecordGrid& grid) { return *grid.findChild<QHeaderView*>("gridHeader(0)"); }
    void clickHeader(RecordGrid& grid, const char* field) {
        QHeaderView& heads = header(grid);
        const int section = grid.columnOf(field);
        QTest::mouseClick(heads.viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(heads.sectionViewportPosition(section) + 20, 8));
    }
};

} // namespace

TEST_F(DeskEvents, RestingOnARowAndACell) {
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_TRUE(log->contains("upper.RowColChange"));
    EXPECT_FALSE(log->contains("upper.StayOnRow"));
    EXPECT_TRUE(happens("upper.StayOnCell"));
    EXPECT_EQ(log->count("upper.StayOnRow"), 1);
    log->clear();
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    EXPECT_TRUE(happens("upper.StayOnRow")) << "coming back, however soon, is a new rest";
    EXPECT_TRUE(happens("upper.StayOnCell"));
    log->clear();
    press(Qt::Key_Right);
    EXPECT_TRUE(happens("upper.StayOnCell"));
    EXPECT_FALSE(log->contains("upper.StayOnRow"));
}

TEST_F(DeskEvents, OnlyTheGridWithTheKeyboardRests) {
    press(Qt::Key_Down);
    EXPECT_TRUE(happens("lower.AfterRebind"));
    EXPECT_TRUE(happens("upper.StayOnRow"));
    EXPECT_FALSE(log->contains("lower.StayOnRow"));
    EXPECT_EQ(window().component().Interface()->CurrentController(), &window().upper());
    log->clear();
    press(Qt::Key_F6);
    EXPECT_TRUE(happens("lower.StayOnRow"));
    EXPECT_FALSE(log->contains("upper.StayOnRow"));
    EXPECT_EQ(window().component().Interface()->CurrentController(), &window().lower());
}

TEST_F(DeskEvents, AnotherCustomerBringsItsOrders) {
    clickCell(upperGrid(), 3, 1);
    EXPECT_TRUE(happens("lower.AfterRebind"));
    expectOrder({"lower.BeforeRebind", "lower.AfterRecordsetChange", "lower.AfterRebind"});
    const auto orders = window().lower().Recordset();
    for (; !orders->AtEof(); orders->MoveNext()) {
        EXPECT_EQ(orders->value(u"CustomerID").toLongLong(), 4);
    }
}

TEST_F(DeskEvents, AHeaderClickSortsAndRebinds) {
    clickHeader(upperGrid(), "Town");
    expectOrder({"upper.BeforeRebind", "upper.AfterRecordsetChange", "upper.AfterRebind"});
    upperGrid().setCurrentRow(0);
    const QString first = upperText("Town");
    clickHeader(upperGrid(), "Town");
    upperGrid().setCurrentRow(0);
    EXPECT_LT(first, upperText("Town"));
}

TEST_F(DeskEvents, ChoosingALayoutLoadsIt) {
    auto& layouts = find<QComboBox>("cboUpperLayout");
    layouts.setFocus();
    press(Qt::Key_Down);
    EXPECT_TRUE(happens("upper.AfterLayoutLoad"));
    expectOrder({"upper.AfterLayoutLoad", "upper.BeforeRebind", "upper.AfterRecordsetChange"});
    EXPECT_EQ(window().upper().LayoutName(), "Address book");
    EXPECT_GE(window().upper().Grid()->columnOf("Postcode"), 0);
    for (const QString& name : window().upper().layoutNames() + window().lower().layoutNames()) {
        window().upper().loadLayout(name);
        window().lower().loadLayout(name);
        EXPECT_GE(upperGrid().columnOf("RecordID"), 0);
        EXPECT_GE(lowerGrid().columnOf("RecordID"), 0);
    }
}

TEST_F(DeskEvents, ANewRecordIsBegunAndDropped) {
    press(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(upperGrid().addNewMode(), AddNewMode::AddNewCurrent);
    EXPECT_FALSE(window().upper().CurrentRecord());
    EXPECT_FALSE(log->contains("upper.OnAddRow"));
    type("X");
    EXPECT_TRUE(happens("upper.OnAddRow"));
    EXPECT_TRUE(window().upper().Busy());
    EXPECT_FALSE(window().component().Interface()->CanCheckNotes());
    EXPECT_TRUE(happens("lower.AfterRecordsetChange(nothing)"));
    press(Qt::Key_Escape);
    EXPECT_TRUE(happens("upper.AfterAddEditCanceled"));
    EXPECT_FALSE(window().upper().Busy());
    EXPECT_EQ(upperGrid().rowCount(), 40);
}

TEST_F(DeskEvents, WheelingScrolls) {
    QWidget* body = upperGrid().childAt(upperGrid().cellRect(2, 1).center());
    QWheelEvent wheel(QPointF(20, 20), body->mapToGlobal(QPointF(20, 20)), {}, QPoint(0, -240),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(body, &wheel);
    EXPECT_TRUE(happens("upper.Scroll"));
}

TEST_F(DeskEvents, TheGridsMenuCarriesTheAddInsTool) {
    chooseFromMenu("tooRecorderMenu");
    clickCell(upperGrid(), 4, 1, Qt::RightButton);
    EXPECT_TRUE(happens("interface.Click tooRecorderMenu"));
    expectOrder({"BandOpen bndGrid", "interface.Click tooRecorderMenu"});
    EXPECT_EQ(upperGrid().currentRow(), 4);
}

TEST_F(DeskEvents, TheMenuKeyOpensTheGridsMenu) {
    press(Qt::Key_F6);
    chooseFromMenu("tooRefresh");
    QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QApplication::sendEvent(QApplication::focusWidget(), &menuKey);
    EXPECT_TRUE(happens("interface.Click tooRefresh"));
    EXPECT_TRUE(happens("lower.AfterRebind"));
    EXPECT_EQ(&window().current(), &window().lower());
}

TEST_F(DeskEvents, ToolsAndStatusBarReachTheAddIn) {
    QTest::mouseClick(window().componentToolbar().findChild<QWidget*>("tooRecorder"),
                      Qt::LeftButton);
    EXPECT_TRUE(happens("component.Click tooRecorder"));
    QTest::mouseDClick(&window().mainStatusBar(), Qt::LeftButton);
    EXPECT_TRUE(happens("status.DblClick"));
}

TEST_F(DeskEvents, SplittingAGridLoadsItsLayoutAgain) {
    press(Qt::Key_T, Qt::ControlModifier);
    EXPECT_EQ(upperGrid().splitCount(), 2);
    expectOrder({"upper.AfterLayoutLoad", "upper.AfterRecordsetChange"});
    press(Qt::Key_T, Qt::ControlModifier);
    EXPECT_EQ(upperGrid().splitCount(), 1);
    EXPECT_EQ(lowerGrid().splitCount(), 1);
}

TEST_F(DeskEvents, ClosingLetsGoOfTheAddInFirst) {
    const auto database = window().application()->DAODatabase();
    press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(*log, QStringList({"DeActivate", "setComponent(nothing)", "released"}));
    EXPECT_FALSE(window().isVisible());
    EXPECT_FALSE(database->isOpen());
    window().shutDown();
    EXPECT_EQ(log->count("DeActivate"), 1);
}
