// What the desk does for its user.
#include "tests/host/DeskFixture.h"

#include "platform/component/ClassRegistry.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>

using namespace yrw;
using namespace yrw::test;

namespace {

class DeskWindowTest : public DeskFixture {
protected:
    qint64 orderCount() {
        return window().application()->Orders(nullptr)->Recordset({})->RecordCount();
    }
};

} // namespace

TEST_F(DeskWindowTest, FilteringShowsOnlyTheRowsThatHoldTheText) {
    open();
    const struct {
        const char* text;
        bool some;
    } cases[] = {{"textiles", true}, {"YARROWEN", true}, {"960", true}, {"no such thing", false},
                 {"?", false},       {"50*", false},     {"[x", false}, {"a\"b", false},
                 {"'", false}};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.text);
        auto& filter = find<QLineEdit>("txtUpperFilter");
        filter.setFocus();
        filter.selectAll();
        QTest::keyClicks(&filter, each.text);
        QTest::keyClick(&filter, Qt::Key_Return);
        EXPECT_EQ(upperGrid().rowCount() > 0, each.some);
        EXPECT_LE(upperGrid().rowCount(), 40);
        EXPECT_EQ(m_prompt.shown, QStringList());
    }
    press(Qt::Key_Escape);
    EXPECT_EQ(upperGrid().rowCount(), 40);
}

TEST_F(DeskWindowTest, FindGoesFromHitToHitAndRoundTheEnd) {
    open();
    const QString last = window().application()->Customers()->Item(40)->value("Name").toString();
    press(Qt::Key_F, Qt::ControlModifier);
    type(last);
    press(Qt::Key_Return);
    const qint64 first = upperGrid().currentRow();
    EXPECT_EQ(upperText("Name"), last);
    for (int i = 0; i < 5 && upperGrid().currentRow() != 39; ++i) {
        press(Qt::Key_F3);
        EXPECT_EQ(upperText("Name"), last);
    }
    EXPECT_EQ(upperGrid().currentRow(), 39);
    press(Qt::Key_F3);
    EXPECT_EQ(upperGrid().currentRow(), first);
    find<QLineEdit>("txtFind").setText("no such thing");
    press(Qt::Key_Return);
    EXPECT_EQ(find<QLabel>("lblFind").text(), "Not found");
    EXPECT_EQ(upperGrid().currentRow(), first);
    find<QLineEdit>("txtFind").setText("C0000"); // which every number holds
    for (const auto& [from, to] : {std::pair(0, 1), std::pair(39, 0)}) {
        upperGrid().setCurrentRow(from);
        press(Qt::Key_Return);
        EXPECT_EQ(upperGrid().currentRow(), to);
    }
    press(Qt::Key_Escape);
    EXPECT_TRUE(upperGrid().isAncestorOf(QApplication::focusWidget()));
}

TEST_F(DeskWindowTest, ALongNameGivesWayToTheWindow) {
    open();
    auto& title = find<QLabel>("lblLowerTitle");
    const QWidget& panel = *title.parentWidget();
    const int least = panel.minimumSizeHint().width();
    title.setText(QString(255, u'W'));
    QCoreApplication::processEvents(); // so that the layouts have heard of it
    EXPECT_LT(panel.minimumSizeHint().width(), least + 100);
}

TEST_F(DeskWindowTest, DeletingAsksFirst) {
    open();
    const QString name = upperText("Name");
    const qint64 others = orderCount() - window()
                                             .application()
                                             ->Orders(window().upper().CurrentRecord())
                                             ->Recordset({})
                                             ->RecordCount();
    press(Qt::Key_Delete, Qt::ControlModifier);
    ASSERT_EQ(m_prompt.asked.size(), 1);
    EXPECT_TRUE(m_prompt.asked[0].contains(name));
    EXPECT_EQ(upperGrid().rowCount(), 40);
    m_prompt.answer = PromptAnswer::Yes;
    press(Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_EQ(upperGrid().rowCount(), 39);
    EXPECT_EQ(upperGrid().currentRow(), 0);
    EXPECT_EQ(window().upper().currentRecordID(), 2);
    EXPECT_EQ(orderCount(), others);
}

TEST_F(DeskWindowTest, ANewOrderBelongsToTheCustomerAbove) {
    open();
    clickCell(upperGrid(), 6, 1);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return find<QLabel>("lblLowerTitle").text().endsWith(upperText("Name")); }));
    const qint64 before = orderCount();
    press(Qt::Key_F6);
    press(Qt::Key_N, Qt::ControlModifier);
    lowerGrid().setCurrentColumn(lowerGrid().columnOf("Item"));
    type("Hat stand");
    press(Qt::Key_Up);
    EXPECT_EQ(orderCount(), before + 1);
    const auto order = window().application()->Orders(nullptr)->Item(before + 1);
    EXPECT_EQ(order->value("Item"), QVariant("Hat stand"));
    EXPECT_EQ(order->value("CustomerID").toLongLong(), window().upper().currentRecordID());
    EXPECT_EQ(order->value("OrderDate").toDateTime().date(), m_clock.now().date());
    // One that was broken off completes no other.
    press(Qt::Key_N, Qt::ControlModifier);
    type("x");
    press(Qt::Key_Escape);
    window().application()->DB()->Database().RunScript("UPDATE Orders SET OrderDate = NULL");
    press(Qt::Key_Up);
    type("Coat stand");
    press(Qt::Key_Up);
    const auto edited = window().application()->Orders(nullptr)->Item(before + 1);
    EXPECT_EQ(edited->value("Item"), QVariant("Coat stand"));
    for (const auto& each : window().application()->Orders(nullptr)->NewEnum()) {
        EXPECT_TRUE(each->value("OrderDate").isNull());
    }
    EXPECT_EQ(m_prompt.shown, QStringList());
}

TEST_F(DeskWindowTest, AnOrdersCustomerColumnLeadsToTheCustomer) {
    open();
    window().lower().loadLayout("All orders");
    lowerGrid().setFocus();
    lowerGrid().setCurrentRow(lowerGrid().rowCount() - 1);
    lowerGrid().setCurrentColumn(lowerGrid().columnOf("CustomerID"));
    const qint64 customer = window().lower().CurrentRecord()->value("CustomerID").toLongLong();
    ASSERT_NE(customer, window().upper().currentRecordID());
    press(Qt::Key_Return);
    EXPECT_EQ(window().upper().currentRecordID(), customer);
    EXPECT_EQ(&window().current(), &window().upper());
}

TEST_F(DeskWindowTest, TheCursorStaysOnItsRecordWhenTheOrderChanges) {
    open();
    upperGrid().setCurrentRow(17);
    const qint64 record = window().upper().currentRecordID();
    auto& header = *upperGrid().findChild<QHeaderView*>("gridHeader(0)");
    header.resizeSection(1, 222);
    for (const char* field : {"Name", "Name", "Town", "CustomerNo"}) {
        window().upper().sortBy(field);
        EXPECT_EQ(window().upper().currentRecordID(), record) << field;
        EXPECT_EQ(header.sectionSize(1), 222);
    }
}

TEST_F(DeskWindowTest, DeveloperSwitchesBandsAndTheAddInFindsItsPlace) {
    open();
    auto& bar = window().componentToolbar();
    command("tooBandMain").trigger();
    EXPECT_EQ(bar.findBand("bndMain"), nullptr);
    EXPECT_EQ(bar.findTool("tooRecorder"), nullptr);
    command("tooBandPlain").trigger();
    EXPECT_NE(bar.findBand("Main"), nullptr);
    command("tooBandAddins").trigger();
    EXPECT_EQ(bar.findBand("Addins"), nullptr);
    command("tooBandMain").trigger();
    ASSERT_NE(bar.findBand("bndMain"), nullptr);
    EXPECT_NE(bar.findBand("bndMain")->findTool("tooRecorder"), nullptr);
}

TEST_F(DeskWindowTest, DeveloperTakesTheAddInThroughItsLife) {
    open();
    log->clear();
    command("tooDeactivateAddIn").trigger();
    command("tooActivateAddIn").trigger();
    command("tooReleaseAddIn").trigger();
    command("tooActivateAddIn").trigger();
    command("tooReleaseAddIn").trigger();
    log->removeIf([](const QString& event) { return event.contains('.'); });
    EXPECT_EQ(*log, QStringList({"DeActivate", "Activate", "DeActivate", "setComponent(nothing)",
                                 "released"}));
    command("tooLoadAddIn").trigger();
    EXPECT_TRUE(window().addIns().isLoaded());
}

TEST_F(DeskWindowTest, NamesItsUserTheAddInAndItsGrids) {
    open();
    EXPECT_EQ(find<QLabel>("lblUser").text(), "Anna Lindqvist, Sales");
    EXPECT_EQ(upperGrid().accessibleName(), "Upper grid");
    EXPECT_EQ(lowerGrid().accessibleName(), "Lower grid");
    command("tooAbout").trigger();
    ASSERT_EQ(m_prompt.shown.size(), 1);
    EXPECT_TRUE(m_prompt.shown[0].contains("Recorder 9.8.7")) << qPrintable(m_prompt.shown[0]);
}

TEST_F(DeskWindowTest, WorksOnWithoutAnAddInAfterOneMessage) {
    const ClassRegistry registry(m_folder.filePath("classes.ini"));
    registry.registerClass({"Missing.AddIn", "{1}", m_folder.filePath("libmissing.so")});
    registry.registerClass({"Foreign.AddIn", "{1}", QCoreApplication::applicationFilePath()});
    const struct {
        const char* what;
        CreateObject create;
        const char* named;
    } cases[] = {
        {"unknown", [&](const QString& id) { return registry.createObject(id); }, "YRWNOTES.AddIn"},
        {"missing library", [&](const QString&) { return registry.createObject("Missing.AddIn"); },
         "libmissing.so"},
        {"no component", [&](const QString&) { return registry.createObject("Foreign.AddIn"); },
         "Foreign.AddIn"},
        {"not an add-in", [&](const QString&) { return Ref<Counted>(window().application()); },
         "not an add-in"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        m_prompt.shown.clear();
        createObject = each.create;
        open();
        ASSERT_EQ(m_prompt.shown.size(), 1);
        EXPECT_TRUE(m_prompt.shown[0].contains(each.named)) << qPrintable(m_prompt.shown[0]);
        press(Qt::Key_Down);
        EXPECT_EQ(upperGrid().currentRow(), 1);
        EXPECT_FALSE(window().addIns().isLoaded());
        close();
    }
}

TEST_F(DeskWindowTest, AnAddInThatFailsToActivateIsReportedOnce) {
    createObject = [this](const QString&) {
        auto addIn = make<RecordingAddIn>(log);
        addIn->refuses = true;
        return addIn;
    };
    open();
    EXPECT_EQ(m_prompt.shown, QStringList({"The add-in could not be activated.|refused"}));
    close();
    EXPECT_TRUE(log->contains("released"));
}

TEST_F(DeskWindowTest, RemembersItsWindowAndLayouts) {
    open();
    window().resize(900, 650);
    window().upper().loadLayout("Address book");
    window().lower().loadLayout("Short");
    close();
    EXPECT_TRUE(QFile::exists(m_folder.filePath("config/YarrowenDesk.ini")));
    open();
    EXPECT_EQ(window().size(), QSize(900, 650));
    EXPECT_EQ(window().upper().LayoutName(), "Address book");
    EXPECT_EQ(window().lower().LayoutName(), "Short");
}

TEST_F(DeskWindowTest, AnUnknownUserLeavesNoWindow) {
    user = "ZOE";
    EXPECT_THROW(open(), AutomationError);
    EXPECT_FALSE(m_window->isVisible());
    EXPECT_EQ(*log, QStringList());
}

TEST_F(DeskWindowTest, AnEditThatCannotBeSavedKeepsTheWindowOpen) {
    open();
    window().lower().loadLayout("All orders");
    lowerGrid().setFocus();
    lowerGrid().setCurrentColumn(lowerGrid().columnOf("Amount"));
    press(Qt::Key_F2);
    type("much");
    EXPECT_FALSE(window().close());
    EXPECT_TRUE(window().isVisible());
    ASSERT_EQ(m_prompt.shown.size(), 1);
    press(Qt::Key_Escape);
    EXPECT_TRUE(window().close());
}
