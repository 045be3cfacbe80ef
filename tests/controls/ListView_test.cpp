#include "platform/controls/ListView.h"

#include "platform/controls/StatusBar.h"
#include "platform/forms/Contrast.h"
#include "platform/forms/DrawnIcons.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

using namespace yrw;

namespace {

ListItem item(const QString& key, const QStringList& texts, bool bold = false) {
    return {key, texts, bold, std::nullopt};
}

class ListViewTest : public testing::Test {
protected:
    ListViewTest() {
        list.addColumn("Date", "date", 2250);
        list.addColumn("Subject", "subject", 3000);
        list.addColumn("Status", "status", 900);
        list.addItems({item("xn1", {"02/01/2026", "beta", "Active"}),
                       item("xn2", {"01/02/2026", "Alpha", "Active"}),
                       item("xn3", {"01/01/2027", "alpha", "Done"}),
                       item("xn4", {"03/01/2026", "Gamma", "Active"})});
        list.resize(500, 200);
        list.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&list));
        QObject::connect(&list, &ListView::itemClick, &list,
                         [this](const QString& key) { events.append("click " + key); });
        QObject::connect(&list, &ListView::itemDblClick, &list,
                         [this](const QString& key) { events.append("double " + key); });
        QObject::connect(&list, &ListView::columnClick, &list, [this](int column) {
            events.append("column " + QString::number(column));
        });
        QObject::connect(&list, &ListView::rightClick, &list, [this] { events.append("right"); });
    }
    [[nodiscard]] QStringList keys() const {
        QStringList all;
        for (int row = 0; row < list.items().rowCount(); ++row) {
            all.append(list.items().keyAt(row));
        }
        return all;
    }
    [[nodiscard]] QPoint placeOf(const QString& key) const {
        return list.visualRect(list.model()->index(list.items().rowOf(key), 1)).center();
    }
    QStringList taken() { return std::exchange(events, {}); }

    ListView list;
    QStringList events;
};

TEST_F(ListViewTest, sortsStablyByTheTextsShown) {
    struct {
        int column;
        Qt::SortOrder order;
        QStringList keys;
    } const cases[] = {
        {0, Qt::AscendingOrder, {"xn3", "xn2", "xn1", "xn4"}}, // day first, as text
        {0, Qt::DescendingOrder, {"xn4", "xn1", "xn2", "xn3"}},
        {1, Qt::AscendingOrder, {"xn3", "xn2", "xn1", "xn4"}},
        {2, Qt::AscendingOrder, {"xn2", "xn1", "xn4", "xn3"}}, // equal ones as they were
        {2, Qt::DescendingOrder, {"xn3", "xn2", "xn1", "xn4"}},
    };
    EXPECT_EQ(keys(), QStringList({"xn1", "xn2", "xn3", "xn4"}));
    for (const auto& [column, order, wanted] : cases) {
        list.sortBy(column, order);
        EXPECT_EQ(keys(), wanted) << column << int(order);
    }
}

TEST_F(ListViewTest, newItemGoesToItsSortedPlaceAndSelectionStays) {
    list.sortBy(1, Qt::AscendingOrder);
    list.selectKey("xn1");
    EXPECT_EQ(list.addItem(item("xn5", {"", "alpine", ""})), 2);
    list.sortBy(1, Qt::DescendingOrder);
    EXPECT_EQ(list.addItem(item("xn6", {"", "beta", ""})), 2);
    EXPECT_EQ(keys(), QStringList({"xn4", "xn1", "xn6", "xn5", "xn2", "xn3"}));
    EXPECT_EQ(list.selectedKey(), "xn1");
    EXPECT_EQ(list.items().rowOf("xn6"), 2);
    EXPECT_TRUE(taken().isEmpty());
}

TEST_F(ListViewTest, userSelectsWithEventsAndCodeWithout) {
    list.selectKey("xn2");
    EXPECT_TRUE(taken().isEmpty());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, placeOf("xn3"));
    EXPECT_EQ(taken(), QStringList("click xn3"));
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(taken(), QStringList("click xn4"));
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_TRUE(taken().isEmpty());
    QTest::keyClick(&list, Qt::Key_Home);
    EXPECT_EQ(taken(), QStringList("click xn1"));
    QTest::keyClick(&list, Qt::Key_B);
    QTest::keyClick(&list, Qt::Key_G);
    EXPECT_TRUE(taken().isEmpty()); // no row begins with "bg"
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, QPoint(100, 190));
    EXPECT_TRUE(taken().isEmpty());
    EXPECT_EQ(list.selectedKey(), "xn1"); // beside the rows
    QTest::mousePress(list.viewport(), Qt::LeftButton, {}, placeOf("xn2"));
    QTest::mouseMove(list.viewport(), placeOf("xn3"));
    QTest::mouseMove(list.viewport(), placeOf("xn4"));
    QTest::mouseRelease(list.viewport(), Qt::LeftButton, {}, placeOf("xn4"));
    EXPECT_EQ(taken(), QStringList("click xn2"));
    EXPECT_EQ(list.selectedKey(), "xn2"); // dragging over others chooses none
    list.selectKey("none");
    EXPECT_EQ(list.selectedKey(), "");
}

TEST_F(ListViewTest, typingFindsRowsInAnyColumn) {
    QTest::keyClick(&list, Qt::Key_A);
    EXPECT_EQ(list.selectedKey(), "xn2");
    QTest::keyClick(&list, Qt::Key_A);
    EXPECT_EQ(list.selectedKey(), "xn3");
    EXPECT_EQ(taken(), QStringList({"click xn2", "click xn3"}));
    QTest::keyClick(&list, Qt::Key_L); // the word goes on where it was found
    EXPECT_EQ(list.selectedKey(), "xn3");
}

TEST_F(ListViewTest, doubleClickEnterMenuKeyAndHeaderRaiseTheirEvents) {
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, placeOf("xn2"));
    EXPECT_EQ(taken().last(), "double xn2");
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, QPoint(100, 190));
    EXPECT_FALSE(taken().join(' ').contains("double"));
    list.selectKey("xn3");
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(taken(), QStringList("double xn3"));
    QTest::mouseClick(list.viewport(), Qt::RightButton, {}, placeOf("xn1"));
    EXPECT_EQ(taken(), QStringList({"click xn1", "right"}));
    QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QApplication::sendEvent(&list, &menuKey);
    QTest::keyClick(&list, Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(taken(), QStringList({"right", "right"}));
    const QPoint header(list.header()->sectionViewportPosition(1) + 20, 5);
    QTest::mouseClick(list.header()->viewport(), Qt::LeftButton, {}, header);
    EXPECT_EQ(taken(), QStringList("column 1"));
}

TEST_F(ListViewTest, aMarkShowsAndIsSaidBesideTheTextOfItsRowsAlone) {
    list.items().setMark({1, drawnIcon("alarm"), "has reminders"});
    list.items().setStyle("xn3", true, QColor(0, 128, 0), true);
    list.addItem({"xn5", {"", "Delta", ""}, false, std::nullopt, true});
    QApplication::processEvents();
    for (const QString& key : keys()) {
        const bool marked = key == "xn3" || key == "xn5";
        for (int column = 0; column < list.items().columnCount(); ++column) {
            const QModelIndex cell = list.model()->index(list.items().rowOf(key), column);
            const bool shows = marked && column == 1;
            EXPECT_EQ(cell.data(Qt::DecorationRole).isValid(), shows) << key.toStdString();
            QAccessibleInterface* const reader = QAccessible::queryAccessibleInterface(&list);
            const QString said =
                reader->tableInterface()->cellAt(cell.row(), column)->text(QAccessible::Name);
            EXPECT_EQ(said,
                      QString(list.items().text(key, column) + (shows ? ", has reminders" : "")));
        }
    }
    EXPECT_EQ(list.items().text("xn3", 1), "alpha"); // which is what sorts
    const auto ink = [this](const QString& key) {
        const QModelIndex cell = list.model()->index(list.items().rowOf(key), 1);
        return list.grab(list.visualRect(cell).translated(list.viewport()->pos())).toImage();
    };
    EXPECT_NE(ink("xn3"), ink("xn2"));
}

TEST_F(ListViewTest, columnsComeAndGoByKey) {
    list.addColumn("User", "usercode", 900);
    EXPECT_EQ(list.items().columnOf("usercode"), 3);
    EXPECT_EQ(list.columnWidth(3), 60);
    list.items().setText("xn1", 3, "ANNA");
    list.sortBy(3, Qt::AscendingOrder);
    list.removeColumn("usercode");
    list.removeColumn("usercode");
    EXPECT_EQ(list.items().columnCount(), 3);
    EXPECT_EQ(list.sortKey(), 0);
    EXPECT_EQ(list.items().text("xn1", 2), "Active");
    list.addColumn("User", "usercode", 900);
    EXPECT_EQ(list.items().text("xn1", 3), "");
    EXPECT_EQ(list.items().text("xn1", 1), "beta");
}

TEST_F(ListViewTest, rowsAreChangedAndRemovedByKey) {
    list.items().setStyle("xn2", true, QColor(0, 128, 0));
    EXPECT_TRUE(list.items().isBold("xn2"));
    EXPECT_EQ(list.items().foreColour("xn2"), QColor(0, 128, 0));
    list.removeItem("xn1");
    list.removeItem("xn1");
    EXPECT_EQ(list.items().rowOf("xn2"), 0);
    EXPECT_TRUE(list.items().isBold("xn2"));
    list.addItem(item("parts", {"a\x1F"
                                "b",
                                "c"}));
    EXPECT_EQ(list.items().text("parts", 1), "c");
    list.items().clear();
    EXPECT_EQ(list.items().rowCount(), 0);
    EXPECT_EQ(list.items().rowOf("xn2"), -1);
    EXPECT_FALSE(list.items().isBold("xn2"));
}

TEST_F(ListViewTest, rowsOutOfSightKeepTheirPlaces) {
    const auto shown = [this] { return keys().join(QString()); };
    list.items().clear();
    list.sortBy(0, Qt::AscendingOrder);
    list.addItems(
        {item("d", {"4"}), item("a", {"1"}), item("c", {"3"}), item("b", {"2"}), item("f", {"6"})});
    list.items().showOnly(
        [](QStringView key) { return key == u"b" || key == u"d" || key == u"f"; });
    EXPECT_EQ(shown(), "bdf");
    list.selectKey("d");
    EXPECT_EQ(list.addItem(item("e", {"5"})), 2);
    EXPECT_EQ(list.items().rowOf("c"), -1);
    EXPECT_EQ(shown(), "bdef");
    list.sortBy(0, Qt::DescendingOrder);
    EXPECT_EQ(shown(), "fedb");
    EXPECT_EQ(list.selectedKey(), "d");
    list.removeItem("c"); // out of sight
    list.removeItem("e");
    EXPECT_EQ(shown(), "fdb");
    EXPECT_EQ(list.items().text("b", 0), "2");
    list.items().setText("b", 0, "two");
    EXPECT_EQ(list.selectedKey(), "d");
    list.items().showAll();
    EXPECT_EQ(shown(), "fdba");
    EXPECT_EQ(list.items().text("b", 0), "two");
    EXPECT_EQ(list.items().allRows(), 4);
}

TEST_F(ListViewTest, rowsKnownByTheirKeysAskTheSourceOnce) {
    list.items().clear();
    QStringList asked;
    bool fails = false;
    list.items().setSource([&](const QStringList& keys) -> std::optional<QList<ListItem>> {
        asked += keys;
        return fails ? std::nullopt : std::optional(QList<ListItem>{item("a", {"first"})});
    });
    list.addKeys({"a", "gone"});
    EXPECT_EQ(list.items().missing(), 2);
    EXPECT_EQ(list.items().text("a", 0), "first");
    EXPECT_EQ(list.items().text("gone", 0), "");
    EXPECT_EQ(asked, QStringList({"a", "gone"}));
    fails = true;
    list.addKeys({"b"});
    EXPECT_EQ(list.items().text("b", 0), "");
    EXPECT_EQ(list.items().text("b", 0), "");
    EXPECT_EQ(asked, QStringList({"a", "gone", "b"}));
    list.items().removeMissing();
    EXPECT_EQ(keys(), QStringList({"a", "gone"}));
}

TEST_F(ListViewTest, lettersBelongTogetherWhileTheRowsAreReadSlowly) {
    list.items().clear();
    list.items().setSource([](const QStringList&) {
        QTest::qSleep(QApplication::keyboardInputInterval() * 5 / 4);
        return std::optional(QList<ListItem>{item("a", {"no"}), item("b", {"other"})});
    });
    list.addKeys({"a", "b"});
    QTest::keyClick(&list, Qt::Key_N);
    QApplication::processEvents();
    QTest::keyClick(&list, Qt::Key_O);
    EXPECT_EQ(list.selectedKey(), "a");
}

TEST_F(ListViewTest, coloursCanBeReadOnDark) {
    list.items().setStyle("xn2", true, QColor(0, 128, 0));
    const QModelIndex index = list.model()->index(1, 0);
    EXPECT_EQ(index.data(Qt::ForegroundRole).value<QColor>(), QColor(0, 128, 0));
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(0x1E, 0x1E, 0x1E));
    list.setPalette(dark);
    const auto shown = index.data(Qt::ForegroundRole).value<QColor>();
    EXPECT_GT(contrast(shown, QColor(0x1E, 0x1E, 0x1E)), 3.8);
    EXPECT_GT(shown.green(), shown.red());
    EXPECT_EQ(list.items().foreColour("xn2"), QColor(0, 128, 0));
}

TEST(StatusBarTest, textStaysAndDoubleClickIsRaised) {
    StatusBar bar;
    bar.resize(300, 24);
    bar.show();
    bar.setText("2 Note(s) Found...!!");
    bar.showMessage("passing");
    bar.clearMessage();
    EXPECT_EQ(bar.text(), "2 Note(s) Found...!!");
    int raised = 0;
    const Connection connection = bar.DblClick.connect([&] { ++raised; });
    QTest::mouseDClick(bar.findChild<QLabel*>("statusText"), Qt::LeftButton);
    EXPECT_EQ(raised, 1);
    QTest::mouseDClick(bar.findChild<QLabel*>("statusText"), Qt::RightButton);
    EXPECT_EQ(raised, 1);
    bar.setText(QString(5000, u'x'));
    EXPECT_LT(bar.minimumSizeHint().width(), 300);
}

} // namespace
