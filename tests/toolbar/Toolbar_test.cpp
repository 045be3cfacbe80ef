#include "platform/toolbar/Toolbar.h"

#include "platform/component/AutomationError.h"
#include "platform/component/GuardedPtr.h"
#include "platform/forms/DrawnIcons.h"
#include "platform/toolbar/ToolIcons.h"
#include "tests/support/Pixels.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QPalette>
#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <gtest/gtest.h>

using namespace yrw;

namespace {

/// A window with a toolbar above a text field.
class ToolbarTest : public testing::Test {
protected:
    ToolbarTest() {
        bar = new Toolbar;
        bar->loadLayoutText(R"({"version":1,"bands":[
            {"key":"bndRecords","caption":"Records","tools":[
                {"id":20100,"key":"tooAdd","caption":"&Add note","icon":"document-new","shortcut":"Ctrl+A"},
                {"id":20101,"key":"tooDelete","caption":"&Delete","icon":"edit-delete"},
                {"id":20400,"key":"tooListType","caption":"Show","kind":"combo","group":true,
                 "list":["Active","Done","All"]}]},
            {"key":"bndFormatting","caption":"Formatting","tools":[
                {"id":20045,"key":"tooBold","caption":"&Bold","kind":"check","style":"icon",
                 "icon":"format-text-bold"}]},
            {"key":"bndNotePopup","caption":"Note","popup":true,"tools":[
                {"id":20200,"key":"tooEdit","caption":"&Edit...","shortcut":"Enter"},
                {"id":20201,"key":"tooDone","caption":"&Done","kind":"check","checked":true},
                {"id":20300,"key":"tooActive","caption":"Acti&ve","kind":"radio"},
                {"id":20301,"key":"tooHidden","caption":"Hidden","visible":false},
                {"id":20302,"key":"tooOff","caption":"&Off","enabled":false,"group":true}]}
            ]})",
                            "test");
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(bar);
        layout->addWidget(field = new QLineEdit);
        window.resize(800, 200);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        field->setFocus();
        clicking = bar->Click.connect([this](ITool& tool) { clicks.append(tool.key()); });
        picking = bar->ComboSelChange.connect([this](ITool& tool) {
            picks.append(tool.key() + '=' + tool.text() + '#' + QString::number(tool.listIndex()));
        });
    }
    [[nodiscard]] QToolButton* button(const QString& key) const {
        return bar->findChild<QToolButton*>(key);
    }
    void click(const QString& key) const {
        ASSERT_NE(button(key), nullptr) << key.toStdString();
        QTest::mouseClick(button(key), Qt::LeftButton);
    }
    /// Opens a pop-up band and does something with its menu.
    template <class Action>
    void popup(const QString& band, Action action) {
        bool opened = false;
        QTimer::singleShot(0, bar, [&] {
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            opened = menu != nullptr;
            if (opened) {
                action(*menu);
                menu->close();
            }
        });
        bar->popup(band);
        EXPECT_TRUE(opened);
    }

    QWidget window;
    Toolbar* bar = nullptr;
    QLineEdit* field = nullptr;
    QStringList clicks;
    QStringList picks;
    Connection clicking;
    Connection picking;
};

TEST_F(ToolbarTest, clickRaisesTheToolAndLeavesTheFocus) {
    click("tooAdd");
    EXPECT_EQ(clicks, QStringList("tooAdd"));
    EXPECT_TRUE(field->hasFocus());
    EXPECT_EQ(button("tooAdd")->accessibleName(), "Add note");
    EXPECT_EQ(button("tooAdd")->toolTip(), "Add note (Ctrl+A)");
    bar->findTool("tooAdd")->setCaption("&R && D");
    EXPECT_EQ(button("tooAdd")->text(), "R && D");
}

TEST_F(ToolbarTest, toolsNeverToggleByThemselves) {
    click("tooBold");
    EXPECT_FALSE(bar->findTool("tooBold")->isChecked());
    EXPECT_FALSE(button("tooBold")->isChecked());
    bar->findTool("tooBold")->setChecked(true);
    EXPECT_TRUE(button("tooBold")->isChecked());
    click("tooBold");
    EXPECT_TRUE(button("tooBold")->isChecked());
    EXPECT_EQ(clicks.size(), 2);
}

TEST_F(ToolbarTest, disabledToolsAndBandsDoNothing) {
    bar->findTool("tooAdd")->setEnabled(false);
    click("tooAdd");
    bar->activate("tooAdd");
    bar->activate("tooMissing");
    bar->findBand("bndFormatting")->setEnabled(false);
    EXPECT_FALSE(bar->findTool("tooBold")->isEnabled());
    bar->activate("tooBold");
    click("tooBold");
    EXPECT_TRUE(clicks.isEmpty());
    bar->findBand("bndFormatting")->setEnabled(true);
    bar->activate("TOOBOLD");
    EXPECT_EQ(clicks, QStringList("tooBold"));
    EXPECT_FALSE(bar->findTool("tooAdd")->isEnabled());
}

TEST_F(ToolbarTest, comboRaisesForTheUserAlone) {
    ITool* const tool = bar->findTool("tooListType");
    auto* const combo = bar->findChild<QComboBox*>("tooListType");
    EXPECT_EQ(tool->listIndex(), 0);
    tool->setListIndex(2);
    EXPECT_EQ(combo->currentText(), "Done");
    tool->setList({"Done", "Other"});
    EXPECT_EQ(tool->listIndex(), 1);
    tool->setText("Loose");
    EXPECT_EQ(combo->currentIndex(), -1);
    EXPECT_EQ(combo->placeholderText(), "Loose");
    EXPECT_EQ(tool->listIndex(), 0);
    QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, -120}, Qt::NoButton, Qt::NoModifier, {}, false);
    QApplication::sendEvent(combo, &wheel); // the user is not in it
    EXPECT_TRUE(picks.isEmpty());
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down);
    EXPECT_EQ(picks, QStringList("tooListType=Done#1"));
    EXPECT_TRUE(clicks.isEmpty());
}

TEST_F(ToolbarTest, comboCanBeFilledWhenItIsDropped) {
    auto* const combo = bar->findChild<QComboBox*>("tooListType");
    const Connection filling = bar->ComboDrop.connect([](ITool& tool) {
        tool.setList({"Sans", "Serif"});
    });
    QTest::mouseClick(combo, Qt::LeftButton);
    EXPECT_EQ(combo->count(), 2);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    QTest::keyClick(combo->view(), Qt::Key_End);
    QTest::keyClick(combo->view(), Qt::Key_Return);
    EXPECT_EQ(picks, QStringList("tooListType=Serif#2"));
}

TEST_F(ToolbarTest, popupRaisesBandOpenFirstAndClickAfterwards) {
    QStringList order;
    const Connection opening = bar->BandOpen.connect([&](IBand& band) {
        order.append("open " + band.key());
        band.addTool(50800, "tooNotes").setCaption("&Notes");
    });
    const Connection clicked = bar->Click.connect([&](ITool& tool) { order.append(tool.key()); });
    popup("bndNotePopup", [](QMenu& menu) { QTest::keyClick(&menu, Qt::Key_N); });
    EXPECT_EQ(order, QStringList({"open bndNotePopup", "tooNotes"}));
    bar->popup("bndNone");
    EXPECT_EQ(order.size(), 2);
}

TEST_F(ToolbarTest, aToolOpensItsMenuBelowItself) {
    QPoint place;
    const Connection opening = bar->Click.connect(
        [&](ITool&) { popup("bndNotePopup", [&](const QMenu& menu) { place = menu.pos(); }); });
    click("tooDelete");
    EXPECT_EQ(place, button("tooDelete")->mapToGlobal(QPoint(0, button("tooDelete")->height())));
}

TEST_F(ToolbarTest, menuShowsStatesShortcutsAndGroups) {
    popup("bndNotePopup", [](QMenu& menu) {
        QStringList texts;
        for (const QAction* action : menu.actions()) {
            texts.append(action->isSeparator() ? QStringLiteral("-") : action->text());
        }
        EXPECT_EQ(texts, QStringList({"&Edit...\tEnter", "&Done", "Acti&ve", "-", "&Off"}));
        EXPECT_TRUE(menu.findChild<QAction*>("tooDone")->isChecked());
        EXPECT_FALSE(menu.findChild<QAction*>("tooOff")->isEnabled());
        QTest::keyClick(&menu, Qt::Key_O);
        QTest::keyClick(&menu, Qt::Key_D);
    });
    EXPECT_EQ(clicks, QStringList("tooDone"));
    EXPECT_TRUE(bar->findTool("tooDone")->isChecked());
}

TEST_F(ToolbarTest, toolsComeAndGoAtRunTime) {
    IBand& band = bar->addBand("bndAddins", false);
    ITool& tool = band.addTool(50801, "tooNotes");
    tool.setCaption("&Notes");
    EXPECT_THROW(band.addTool(1, "TOONOTES"), AutomationError);
    EXPECT_THROW(bar->addBand("BNDaddins", true), AutomationError);
    bar->recalcLayout();
    click("tooNotes");
    tool.setVisible(false);
    EXPECT_EQ(button("tooNotes"), nullptr);
    tool.setVisible(true);
    const Connection removing = bar->Click.connect([&](ITool&) { band.removeTool("tooNotes"); });
    click("tooNotes");
    EXPECT_EQ(button("tooNotes"), nullptr);
    band.removeTool("tooNotes");
    bar->removeBand("bndAddins");
    bar->removeBand("bndAddins");
    EXPECT_EQ(bar->findToolById(50801), nullptr);
    EXPECT_EQ(clicks.size(), 2);
}

TEST_F(ToolbarTest, handlerMayDestroyTheToolbar) {
    const GuardedPtr<IToolbar> guard(bar);
    const Connection ending = bar->Click.connect([this](ITool&) { delete bar; });
    popup("bndNotePopup", [](QMenu& menu) {
        QTimer::singleShot(0, &menu, [] {});
        QTest::keyClick(&menu, Qt::Key_E);
    });
    EXPECT_FALSE(guard);
}

TEST_F(ToolbarTest, narrowBarOffersTheRestInAMenu) {
    bar->addBand("bndWide", false);
    bar->setFixedWidth(150);
    bar->recalcLayout();
    auto* const more = bar->findChild<QToolButton*>("bndRecordsOverflow");
    ASSERT_TRUE(more->isVisible());
    EXPECT_FALSE(bar->findChild<QComboBox*>("tooListType")->isVisible());
    const Connection filling = bar->ComboDrop.connect([](ITool& tool) {
        tool.setList({"Active", "Done", "Late"}); // filled when its entries are shown, here too
    });
    QTimer::singleShot(0, bar, [this] {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        auto* const entries = menu->findChild<QMenu*>("tooListType");
        ASSERT_NE(entries, nullptr);
        menu->setActiveAction(entries->menuAction());
        QTest::keyClick(menu, Qt::Key_Right);
        QTest::keyClick(entries, Qt::Key_Up);
        QTest::keyClick(entries, Qt::Key_Return);
    });
    QTest::mouseClick(more, Qt::LeftButton);
    EXPECT_EQ(picks, QStringList("tooListType=Late#3"));
    bar->setFixedWidth(2000);
    EXPECT_FALSE(more->isVisible());
    EXPECT_TRUE(bar->findChild<QComboBox*>("tooListType")->isVisible());
    bar->findBand("bndFormatting")->addTool(7, "tooLast").setCaption("Gives way first");
    bar->setFixedWidth(bar->sizeHint().width() - 20);
    EXPECT_TRUE(bar->findChild<QToolButton*>("bndFormattingOverflow")->isVisible());
    EXPECT_FALSE(bar->findChild<QToolButton*>("bndRecordsOverflow")->isVisible());
}

TEST_F(ToolbarTest, keysWalkAlongTheTools) {
    QTest::keyClick(&window, Qt::Key_F10);
    EXPECT_TRUE(button("tooAdd")->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    EXPECT_TRUE(button("tooDelete")->hasFocus());
    bar->findTool("tooAdd")->setCaption("&New note"); // the controls are made anew
    EXPECT_TRUE(button("tooDelete")->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(clicks, QStringList({"tooDelete", "tooDelete"}));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_End);
    EXPECT_TRUE(button("tooBold")->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    EXPECT_TRUE(button("tooAdd")->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Home);
    EXPECT_TRUE(button("tooAdd")->hasFocus());
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Tab);
    EXPECT_TRUE(bar->isAncestorOf(QApplication::focusWidget()));
}

TEST_F(ToolbarTest, iconsTakeTheColourOfTheText) {
    const QPalette before = QApplication::palette();
    for (const QColor& colour : {QColor(Qt::white), QColor(Qt::black)}) {
        QPalette palette = before;
        palette.setColor(QPalette::Active, QPalette::ButtonText, colour);
        QApplication::setPalette(palette);
        const QImage image = toolIcon("document-new").pixmap(QSize(16, 16), 2).toImage();
        ASSERT_FALSE(image.isNull());
        EXPECT_EQ(image.width(), 32);
        const auto isPainted = [](const QColor& pixel) { return pixel.alpha() == 255; };
        const auto isOther = [&](const QColor& pixel) {
            return isPainted(pixel) && pixel.rgb() != colour.rgb();
        };
        EXPECT_GT(test::pixelsOf(image, isPainted), 20);
        EXPECT_EQ(test::pixelsOf(image, isOther), 0);
    }
    QApplication::setPalette(before);
    EXPECT_TRUE(toolIcon("no-such-icon").isNull());
}

// Every drawing is one of its own, drawn at the size asked for, in ink that shows on the palette.
TEST_F(ToolbarTest, drawingsAreSharpAtEveryScaleOnLightAndDark) {
    const QPalette before = QApplication::palette();
    QSet<QByteArray> seen;
    for (const QColor& button : {QColor(0xef, 0xef, 0xef), QColor(0x35, 0x35, 0x35)}) {
        QApplication::setPalette(QPalette(button));
        for (const QString& name : drawnIconNames()) {
            for (const qreal scale : {1.0, 1.5, 2.0}) {
                const QImage image = drawnIcon(name).pixmap(QSize(16, 16), scale).toImage();
                EXPECT_EQ(image.size(), QSize(16, 16) * scale) << name.toStdString();
                const int seenPixels = test::pixelsOf(image, [&](const QColor& pixel) {
                    return pixel.alpha() == 255 && contrast(pixel, button) >= 3;
                });
                EXPECT_GE(seenPixels, 10 * scale) << name.toStdString() << " at " << scale;
                seen.insert(QByteArray(reinterpret_cast<const char*>(image.constBits()),
                                       image.sizeInBytes()));
            }
        }
    }
    EXPECT_GE(seen.size(), 3 * drawnIconNames().size());
    QApplication::setPalette(before);
}

TEST_F(ToolbarTest, noShippedToolTurnsIntoTextWithoutAnIconTheme) {
    (void)toolIcon("list-add"); // themes are looked for once
    const QString theme = QIcon::themeName();
    const QString fallback = QIcon::fallbackThemeName();
    const QStringList paths = QIcon::themeSearchPaths();
    QIcon::setThemeSearchPaths({});
    QIcon::setFallbackThemeName("none");
    QIcon::setThemeName("none");
    QFile layout(YRW_SOURCE_DIR "/template/DB/YRWNOTES/support/Notes/Menus.tb");
    ASSERT_TRUE(layout.open(QIODevice::ReadOnly));
    bar->loadLayoutText(layout.readAll(), "Menus.tb");
    int buttons = 0;
    for (QToolButton* const each : bar->findChildren<QToolButton*>(QRegularExpression("^too"))) {
        ++buttons;
        EXPECT_NE(each->toolButtonStyle(), Qt::ToolButtonTextOnly)
            << each->objectName().toStdString();
    }
    EXPECT_GT(buttons, 25);
    EXPECT_FALSE(toolIcon("window-close").isNull());
    QIcon::setThemeSearchPaths(paths);
    QIcon::setFallbackThemeName(fallback);
    QIcon::setThemeName(theme);
}

TEST_F(ToolbarTest, aComboTellsReadersItsNameItsTextAndWhatItIsFor) {
    auto* const combo = bar->findChild<QComboBox*>("tooListType");
    QAccessibleInterface* const reader = QAccessible::queryAccessibleInterface(combo);
    bar->findTool("tooListType")->setListIndex(2);
    EXPECT_EQ(reader->text(QAccessible::Name), "Show");
    EXPECT_EQ(reader->text(QAccessible::Value), "Done");
    EXPECT_FALSE(reader->text(QAccessible::Description).isEmpty());
    EXPECT_EQ(reader->role(), QAccessible::ComboBox);
    bar->findTool("tooListType")->setText("Odd"); // none of its entries
    EXPECT_EQ(reader->text(QAccessible::Value), "Odd");
    reader->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    EXPECT_TRUE(combo->view()->isVisible());
    EXPECT_TRUE(reader->state().expanded);
    combo->hidePopup();
}

} // namespace
