// Bands that the user moves, floats, docks and resets.
#include "platform/toolbar/Toolbar.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWindow>

#include <gtest/gtest.h>

#include <functional>

using namespace yrw;

namespace {

/// A window with a toolbar of three bands in two rows above a text field.
class DockingTest : public testing::Test {
protected:
    DockingTest() {
        bar->loadLayoutText(R"({"version":1,"bands":[
            {"key":"bndA","caption":"First","tools":[{"id":1,"key":"tooA","caption":"&Add"}]},
            {"key":"bndB","caption":"Second","tools":[
                {"id":2,"key":"tooB","caption":"&Bold","kind":"check"},
                {"id":3,"key":"tooList","caption":"Show","kind":"combo","list":["x","y"]}]},
            {"key":"bndMenu","popup":true,"tools":[{"id":4,"key":"tooM","caption":"M"}]},
            {"key":"bndC","row":1,"tools":[{"id":5,"key":"tooC","caption":"&Clear"}]}]})",
                            "test");
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(bar);
        layout->addWidget(field);
        window.setGeometry(100, 100, 500, 300);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        field->setFocus();
        moving = bar->BandMove.connect([this](IBand& band) { moved.append(band.key()); });
        clicking = bar->Click.connect([this](ITool& tool) { clicks.append(tool.key()); });
    }
    [[nodiscard]] QWidget* part(const QString& name) const {
        return bar->findChild<QWidget*>(name);
    }
    /// Drags a handle to a point given from the toolbar's top left corner.
    void drag(const QString& handle, const QPoint& to, bool escape = false) {
        QPointer<QWidget> grip = part(handle);
        ASSERT_FALSE(grip.isNull()) << handle.toStdString();
        QTest::mousePress(grip, Qt::LeftButton, {}, QPoint(3, 5));
        QTest::mouseMove(grip, grip->mapFromGlobal(bar->mapToGlobal(to)));
        if (escape) {
            QTest::keyClick(field, Qt::Key_Escape);
            QTest::mouseMove(grip, grip->mapFromGlobal(bar->mapToGlobal(to + QPoint(9, 9))));
        }
        QTest::mouseRelease(grip, Qt::LeftButton, {}, grip->mapFromGlobal(bar->mapToGlobal(to)));
    }
    void floatB() {
        drag("bndBGrip", kAway);
        ASSERT_NE(part("bndBWindow"), nullptr);
        moved.clear();
    }
    [[nodiscard]] QString rows() const {
        return bar->arrangement().replace(QRegularExpression("@[^;]*"), "@");
    }

    static constexpr QPoint kAway{250, 250};
    QWidget window;
    Toolbar* bar = new Toolbar;
    QLineEdit* field = new QLineEdit;
    QStringList moved;
    QStringList clicks;
    Connection moving;
    Connection clicking;
};

TEST_F(DockingTest, HandlesMoveBandsAndEscapeLeavesThem) {
    const int row = bar->height() / 2;
    EXPECT_TRUE(part("bndBOverflow")->isHidden());
    struct Case {
        const char* handle;
        QPoint to;
        const char* arrangement; ///< after it
        int rowsShown;
        bool escape = false;
    };
    const Case cases[] = {
        {"bndBGrip", part("bndBGrip")->mapTo(bar, QPoint(4, 5)), "", 2}, // a trembling click
        {"bndBGrip", QPoint(5, row / 2), "bndB:0;bndA:0;bndC:1", 2},
        {"bndBGrip", QPoint(5, 3 * row), "bndB:0;bndA:0;bndC:1", 2, true},
        {"bndBGrip", QPoint(300, row / 2), "", 2},
        {"bndBGrip", QPoint(300, row + 5), "bndA:0;bndC:1;bndB:1", 2},
        {"bndBGrip", QPoint(5, 2 * row + 5), "bndA:0;bndC:1;bndB:2", 3},
        {"bndAGrip", QPoint(5, 3 * row + 5), "bndC:0;bndB:1;bndA:2", 3},
        {"bndCGrip", QPoint(5, 200), "bndC:0@;bndB:1;bndA:2", 2},
        {"bndCTitle", QPoint(300, 200), "bndC:0@;bndB:1;bndA:2", 2},
        {"bndBGrip", QPoint(-60, 10), "bndC:0@;bndB:1@;bndA:2", 1},
        {"bndCTitle", QPoint(300, 5), "bndB:0@;bndA:1;bndC:1", 1},
        {"bndAGrip", QPoint(300, 250), "bndB:0@;bndA:1@;bndC:1", 1},
        {"bndCGrip", QPoint(300, 250), "bndB:0@;bndA:1@;bndC:1@", 0},
        {"bndBTitle", QPoint(5, 5), "bndA:0@;bndC:0@;bndB:1", 1},
    };
    for (const Case& each : cases) {
        const QString before = bar->arrangement();
        drag(each.handle, each.to, each.escape);
        EXPECT_EQ(rows(), each.arrangement) << each.handle;
        EXPECT_EQ(bar->heightForWidth(500), each.rowsShown * row) << each.arrangement;
        EXPECT_EQ(moved.size(), before == bar->arrangement() ? 0 : 1) << each.arrangement;
        EXPECT_EQ(moved.value(0, QString(each.handle).left(4)), QString(each.handle).left(4));
        moved.clear();
        QApplication::processEvents();
    }
}

TEST_F(DockingTest, AnOutlineShowsWhereTheBandWouldGo) {
    QWidget* const grip = part("bndBGrip");
    const auto outline = [] {
        for (const QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() == "bandOutline" && top->isVisible()) {
                return top->geometry();
            }
        }
        return QRect();
    };
    const auto moveTo = [&](const QPoint& to) {
        QTest::mouseMove(grip, grip->mapFromGlobal(bar->mapToGlobal(to)));
    };
    QTest::mousePress(grip, Qt::LeftButton, {}, QPoint(3, 5));
    moveTo(QPoint(5, 5));
    EXPECT_EQ(outline(), QRect(bar->mapToGlobal(QPoint(0, 0)), part("bndB")->size()));
    moveTo(QPoint(300, bar->height() + 5));
    EXPECT_EQ(outline().topLeft(), bar->mapToGlobal(QPoint(0, bar->height())));
    {
        QDialog box; // comes up meanwhile, and may swallow the mouse button's release
        box.setModal(true);
        box.show();
        EXPECT_TRUE(outline().isNull());
    }
    QTest::mousePress(grip, Qt::LeftButton, {}, QPoint(3, 5));
    moveTo(kAway);
    const QRect away = outline();
    EXPECT_EQ(part("bndB")->parentWidget(), bar); // nothing has moved yet
    QTest::mouseRelease(grip, Qt::LeftButton);
    EXPECT_TRUE(outline().isNull());
    EXPECT_EQ(part("bndBWindow")->geometry(), away);
}

TEST_F(DockingTest, AFloatingBandWorksAndLeavesTheKeyboard) {
    floatB();
    QWidget* const floating = part("bndBWindow");
    EXPECT_EQ(floating->windowTitle(), "Second");
    EXPECT_TRUE(floating->isVisible());
    EXPECT_EQ(floating->windowHandle()->transientParent(), window.windowHandle());
    QApplication::processEvents();
    ASSERT_TRUE(QTest::qWaitFor([&] { return field->hasFocus(); }));
    QTest::mouseClick(part("tooB"), Qt::LeftButton);
    EXPECT_EQ(clicks, QStringList("tooB"));
    EXPECT_TRUE(field->hasFocus());
    bar->findTool("tooB")->setChecked(true);
    EXPECT_TRUE(qobject_cast<QToolButton*>(part("tooB"))->isChecked());
    bar->findTool("tooB")->setCaption("&Much bolder"); // its controls are made anew
    EXPECT_TRUE(part("tooB")->isVisible());
    EXPECT_EQ(part("tooB")->window(), floating);
    EXPECT_TRUE(floating->rect().contains(part("bndB")->geometry()));
    window.hide();
    EXPECT_FALSE(floating->isVisible());
    window.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return floating->isVisible(); }));
    QApplication::closeAllWindows(); // as when the program ends: it floats still
    EXPECT_FALSE(floating->isVisible());
    EXPECT_EQ(rows(), "bndA:0;bndB:0@;bndC:1");
    window.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return floating->isVisible(); }));
    bar->findBand("bndB")->setVisible(false);
    EXPECT_EQ(part("bndBWindow"), nullptr);
    bar->findBand("bndB")->setVisible(true);
    EXPECT_TRUE(part("bndBWindow")->isVisible());
    bar->removeBand("bndB");
    EXPECT_EQ(part("bndBWindow"), nullptr);
}

TEST_F(DockingTest, TitleAndButtonsDockABandWhereItWas) {
    const int height = bar->height();
    const std::function<void()> ways[] = {
        [&] { QTest::mouseDClick(part("bndATitle"), Qt::LeftButton); },
        [&] { QTest::mouseClick(part("bndAClose"), Qt::LeftButton); },
        [&] { // the window manager's way
            QCloseEvent event;
            QSpontaneKeyEvent::setSpontaneous(&event);
            qApp->notify(part("bndAWindow"), &event);
        },
    };
    for (const auto& dock : ways) {
        drag("bndAGrip", kAway);
        ASSERT_EQ(rows(), "bndA:0@;bndB:0;bndC:1");
        dock();
        EXPECT_EQ(bar->arrangement(), "");
        EXPECT_EQ(part("bndA")->pos(), QPoint(0, 0));
        EXPECT_EQ(part("bndAWindow"), nullptr);
        EXPECT_EQ(bar->heightForWidth(500), height);
        EXPECT_EQ(moved, QStringList({"bndA", "bndA"}));
        moved.clear();
    }
}

TEST_F(DockingTest, KeysLeadIntoAFloatingBandAndBack) {
    floatB();
    QWidget* const floating = part("bndBWindow");
    ASSERT_TRUE(QTest::qWaitFor([&] { return field->hasFocus(); }));
    QTest::keyClick(&window, Qt::Key_F10);
    EXPECT_TRUE(part("tooA")->hasFocus());
    QTest::keyClick(part("tooA"), Qt::Key_Right);
    QTest::keyClick(part("tooC"), Qt::Key_Right);
    ASSERT_TRUE(QTest::qWaitFor([&] { return part("tooB")->hasFocus(); }));
    EXPECT_EQ(QApplication::activeWindow(), floating);
    QTest::keyClick(part("tooB"), Qt::Key_Space);
    EXPECT_EQ(clicks, QStringList("tooB"));
    QTest::keyClick(part("tooB"), Qt::Key_Tab);
    EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; }));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_End);
    ASSERT_TRUE(QTest::qWaitFor([&] { return part("tooList")->hasFocus(); }));
    QTest::keyClick(part("tooList"), Qt::Key_Right);
    EXPECT_TRUE(QTest::qWaitFor([&] { return part("tooA")->hasFocus(); }));
}

TEST_F(DockingTest, StoredArrangementsAreTakenOrIgnored) {
    const struct {
        const char* stored;
        const char* shown;
    } cases[] = {
        {"bndC:0;bndA:0;bndB:1", "bndC:0;bndA:0;bndB:1"},
        {"BNDC:3@300,400;bndA:7;bndB:7", "bndC:0@300,400;bndA:1;bndB:1"},
        {"bndGone:0;bndC:0;bndMenu:0@1,2", "bndC:0;bndA:0;bndB:0"}, // unknown, no band to dock
        {"bndA:0;bndB:0;bndC:1", ""},
        {"", ""},
        {"bndC:0;bndC:1", ""},
        {"bndC:0;bndB:0;BNDC:0", ""},
        {"bndC:0;", ""},
        {"bndC:-1", ""},
        {"bndC:0@1", ""},
        {"bndC:0@1,99999999999", ""},
        {"{\"bndC\": 0}", ""},
    };
    for (const auto& each : cases) {
        bar->setArrangement("bndC:0@50,60;bndB:0");
        bar->setArrangement(each.stored);
        EXPECT_EQ(bar->arrangement(), each.shown) << each.stored;
    }
    EXPECT_TRUE(moved.isEmpty());
    const QRect screen = window.screen()->availableGeometry();
    for (const char* place : {"-5000,-5000", "99999,300", "200,99999"}) {
        bar->setArrangement(QStringLiteral("bndB:0@") + place);
        EXPECT_TRUE(screen.contains(part("bndBWindow")->geometry())) << place;
    }
}

TEST_F(DockingTest, TheMenuResetsTheToolbar) {
    const auto ask = [&](const QString& on, QPoint at, bool answered) {
        QWidget* const target = on.isEmpty() ? bar : part(on);
        bool opened = false;
        QTimer::singleShot(0, bar, [&] {
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            opened = menu != nullptr;
            if (opened) {
                QTest::keyClick(menu, Qt::Key_R);
            }
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, target->mapToGlobal(at));
        QApplication::sendEvent(target, &event);
        QApplication::processEvents();
        EXPECT_EQ(opened, answered) << on.toStdString();
    };
    const std::pair<const char*, QPoint> places[] = {
        {"bndAGrip", {3, 5}}, {"", {bar->width() - 5, 5}}, {"bndBTitle", {3, 5}}};
    for (const auto& [on, at] : places) {
        bar->setArrangement("bndC:0;bndA:0;bndB:1@300,300");
        ask("tooA", QPoint(5, 5), false);
        EXPECT_NE(bar->arrangement(), "");
        ask(on, at, true);
        EXPECT_EQ(bar->arrangement(), "") << on;
        EXPECT_EQ(moved, QStringList({"bndA", "bndB", "bndC"}));
        moved.clear();
    }
}

TEST_F(DockingTest, TheWindowMayEndWithABandAfloatOrOnTheWay) {
    floatB();
    const QPointer<QWidget> floating = part("bndBWindow");
    QTest::mousePress(part("bndAGrip"), Qt::LeftButton, {}, QPoint(3, 5));
    QTest::mouseMove(part("bndAGrip"), QPoint(200, 200));
    bar->loadLayoutText(R"({"version":1,"bands":[{"key":"bndB","tools":[
        {"id":2,"key":"tooB","caption":"B"}]}]})",
                        "test");
    EXPECT_EQ(bar->arrangement(), "");
    drag("bndBGrip", kAway);
    QTest::mousePress(part("bndBTitle"), Qt::LeftButton, {}, QPoint(3, 5));
    QTest::mouseMove(part("bndBTitle"), QPoint(60, 60));
    delete bar;
    EXPECT_TRUE(floating.isNull());
}

} // namespace
