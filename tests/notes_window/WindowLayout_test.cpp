// Size, state, splitter, columns and the layout of the toolbar.
#include "tests/notes_window/WindowFixture.h"

#include <QDir>
#include <QPointer>
#include <QProcess>
#include <QScreen>
#include <QTemporaryDir>

namespace yrw::test {

class WindowLayout : public WindowFixture {
protected:
    void setStored(const char* key, const QString& text) {
        storeText(addIn->settings(), QLatin1String(key), text);
    }
    [[nodiscard]] QString storedText(const char* key) {
        return test::storedText(addIn->settings(), QLatin1String(key));
    }
    [[nodiscard]] QWidget& split() const {
        return *window->findChild<QWidget*>(QStringLiteral("picHSplit"));
    }
    void drag(int from, int to) const {
        const QPoint grip(split().width() / 2, 2);
        QTest::mousePress(&split(), Qt::LeftButton, Qt::NoModifier, grip);
        QMouseEvent move(QEvent::MouseMove, QPointF(grip.x(), grip.y() + to - from),
                         split().mapToGlobal(QPointF(grip.x(), grip.y() + to - from)),
                         Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&split(), &move);
        QTest::mouseRelease(&split(), Qt::LeftButton, Qt::NoModifier, grip);
    }
    /// On a display as a person does: a window manager gives the keyboard to another window only
    /// for input that is newer than what gave it last, and made-up keys are of no time.
    static void pressWhereTheKeyboardIs(const char* keys) {
        if (QGuiApplication::platformName() == u"xcb") {
            EXPECT_EQ(QProcess::execute("xdotool", {"key", keys}), 0);
        } else {
            const QKeyCombination pressed = QKeySequence(keys)[0];
            QTest::keyClick(QApplication::focusWidget(), pressed.key(),
                            pressed.keyboardModifiers());
        }
    }
};

TEST_F(WindowLayout, StoredSizes) {
    const int screen = QGuiApplication::primaryScreen()->size().height();
    open(customer);
    const int designed = window->height();
    struct Case {
        QString stored;
        int height;
    };
    const QList<Case> cases{{QString::number(300 * 15), 300},
                            {QString::number((screen + 1) * 15), designed},
                            {"-100", designed},
                            {"0", designed},
                            {"tall", designed}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.stored.toStdString());
        close();
        setStored("Height", each.stored);
        open(customer);
        EXPECT_EQ(window->height(), each.height);
    }
    window->resize(700, 400);
    close();
    EXPECT_EQ(storedText("Width"), QString::number(700 * 15));
    EXPECT_EQ(storedText("Height"), QString::number(400 * 15));
    EXPECT_EQ(storedText("WindowState"), "0");
}

TEST_F(WindowLayout, TheSmallestSizeShowsThreeLinesAndTheStatusBar) {
    setStored("Height", QString::number(90 * 15));
    open(customer);
    window->show();
    const auto& status = *window->findChild<QWidget*>(QStringLiteral("stbMain"));
    for (const QSize& size : {window->size(), QSize(700, 500), QSize(10, 10)}) {
        window->resize(size);
        QCoreApplication::processEvents();
        EXPECT_GE(editor().viewport()->height(), 3 * editor().fontMetrics().lineSpacing())
            << size.width() << 'x' << size.height() << " in " << window->width() << 'x'
            << window->height() << ", editor at " << editor().y() << " with " << editor().height();
        EXPECT_TRUE(window->rect().contains(status.geometry()));
        EXPECT_GE(list().height(), 60);
        if (size.height() == 500) {
            drag(split().y(), window->height() - 60); // where the user wants it, until it shrinks
        }
    }
    EXPECT_LT(window->height(), 400);
    EXPECT_EQ(storedText("Height"), QString::number(90 * 15));
}

TEST_F(WindowLayout, MaximisedKeepsTheNormalSize) {
    setStored("Height", "6000");
    setStored("Width", "9000");
    setStored("WindowState", "2");
    open(customer);
    EXPECT_EQ(window->windowStateCode(), WindowStateCode::Maximised);
    close();
    EXPECT_EQ(storedText("WindowState"), "2");
    EXPECT_EQ(storedText("Height"), "6000");
    EXPECT_EQ(storedText("Width"), "9000");
}

TEST_F(WindowLayout, Splitter) {
    open(customer);
    const int inner = window->height();
    const int start = split().y();
    drag(start, start + 60);
    EXPECT_EQ(split().y(), start + 60);
    EXPECT_EQ(list().geometry().bottom() + 1, start + 60);
    EXPECT_EQ(editor().y(), split().geometry().bottom() + 1);
    drag(split().y(), inner - 49); // too near to the bottom
    EXPECT_EQ(split().y(), start + 60);
    drag(split().y(), list().y() + 59); // the list keeps its header and two rows
    EXPECT_EQ(split().y(), start + 60);
    drag(split().y(), inner - 50);
    EXPECT_EQ(split().y(), inner - 50);
    QTest::mouseDClick(&split(), Qt::LeftButton);
    const QWidget& status = *window->findChild<QWidget*>("stbMain");
    EXPECT_EQ(split().y(), list().y() + (status.y() - list().y()) / 2);
    const int middle = split().y();
    split().setFocus();
    press(Qt::Key_Down);
    EXPECT_EQ(split().y(), middle + 10);
    press(Qt::Key_PageUp);
    EXPECT_EQ(split().y(), middle - 50);
    EXPECT_EQ(script.pointer, MousePointer::Default);
    window->resize(window->width(), 700);
    EXPECT_EQ(split().y(), middle - 50); // kept
}

TEST_F(WindowLayout, ColumnWidthsAreRemembered) {
    open(customer);
    const QWidget* view = list().viewport();
    int all = 0;
    for (int column = 0; column < list().items().columnCount(); ++column) {
        all += list().columnWidth(column);
    }
    EXPECT_EQ(all, view->width()); // the subject takes what the others leave
    list().setColumnWidth(0, 200);
    list().setColumnWidth(2, 90);
    list().setColumnWidth(4, 110);
    click("tooShowMyNotes"); // takes the user column away
    open(customer);
    EXPECT_EQ(list().items().columnCount(), 4); // holds for the next window
    click("tooShowMyNotes");
    EXPECT_EQ(list().columnWidth(0), 200);
    EXPECT_EQ(list().columnWidth(2), 90);
    EXPECT_EQ(list().columnWidth(4), 110);
}

TEST_F(WindowLayout, BandsStayWhereTheUserPutThem) {
    setStored("ToolbarBands", "what;is:this");
    store.addNote("One", customer); // so that no tool is off
    open(customer);
    EXPECT_EQ(toolbar().arrangement(), ""); // as the layout says
    const int height = toolbar().height();
    const int editorTop = list().y();
    for (const char* grip : {"bndFormattingGrip", "bndInsertGrip"}) {
        auto* const handle = toolbar().findChild<QWidget*>(grip);
        QTest::mousePress(handle, Qt::LeftButton, {}, QPoint(3, 5));
        QTest::mouseMove(handle, QPoint(40, 300));
        QTest::mouseRelease(handle, Qt::LeftButton, {}, QPoint(40, 300));
    }
    EXPECT_EQ(toolbar().height(), height / 2);
    EXPECT_EQ(list().y(), editorTop - height / 2);
    const QString arrangement = toolbar().arrangement();
    EXPECT_EQ(arrangement.count('@'), 2) << arrangement.toStdString();
    EXPECT_EQ(storedText("ToolbarBands"), arrangement);
    open(customer);
    EXPECT_EQ(toolbar().arrangement(), arrangement);
    EXPECT_EQ(toolbar().height(), height / 2);
    const QPointer<QWidget> bold = toolbar().findChild<QWidget*>("tooBold");
    ASSERT_TRUE(QTest::qWaitFor([&] { return bold->isVisible(); }));
    // With the keyboard in a floating band the window's keys work as ever.
    ASSERT_TRUE(QTest::qWaitFor([&] { return list().hasFocus(); }));
    const auto goIntoBand = [&] {
        press(Qt::Key_F10);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left); // the last one
        return QTest::qWaitFor([&] {
            const QWidget* const active = QApplication::activeWindow();
            return active != nullptr && active != window.get();
        });
    };
    ASSERT_TRUE(goIntoBand());
    pressWhereTheKeyboardIs("F6");
    ASSERT_TRUE(QTest::qWaitFor([&] { return list().hasFocus(); }));
    ASSERT_TRUE(goIntoBand());
    pressWhereTheKeyboardIs("ctrl+f");
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return !window->findChild<QWidget*>("picFind")->isHidden(); }));
    auto* const field = window->findChild<QWidget*>("txtFind");
    EXPECT_TRUE(QTest::qWaitFor([&] { return field->hasFocus(); }));
    close();
    EXPECT_TRUE(bold == nullptr || !bold->isVisible());
}

TEST_F(WindowLayout, TheFirstLayoutThatCanBeReadServesAndBrokenOnesAreNamedInOneMessage) {
    struct Case {
        const char* ofHost; ///< the key of its only tool; "" is missing, "{" is broken
        const char* shipped;
        const char* served;
        int named;
    };
    const Case cases[] = {{"tooHost", "{", "tooHost", 0},
                          {"", "tooShipped", "tooShipped", 0},
                          {"{", "tooShipped", "tooShipped", 1},
                          {"{", "{", "tooAdd", 2},
                          {"", "{", "tooAdd", 1},
                          {"", "", "tooAdd", 2}};
    const QTemporaryDir shipped;
    QDir(shipped.path()).mkpath("support/Notes");
    store.templateDirectory = shipped.path();
    const auto write = [](const QString& path, const QByteArray& what) {
        QFile file(path);
        file.remove();
        if (!what.isEmpty() && file.open(QIODevice::WriteOnly)) {
            file.write(what == "{"
                           ? what
                           : R"({"version":1,"bands":[{"key":"b","tools":[{"id":20063,"key":")" +
                                 what + R"(","caption":"c"}]}]})");
        }
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::string(each.ofHost) + ", " + each.shipped);
        close();
        write(store.folder() + "/Support/Notes/Menus.tb", each.ofHost);
        write(shipped.filePath("support/Notes/Menus.tb"), each.shipped);
        script.asked.clear();
        script.expectMessage(each.named > 0 ? 1 : 0);
        open(customer);
        EXPECT_EQ(script.asked.join(' ').count("Menus.tb"), each.named);
        ASSERT_NE(toolbar().findTool(each.served), nullptr);
        if (each.served != QByteArray("tooAdd")) {
            click(each.served);   // a tool of another kind does nothing,
            click("tooListType"); // and a layout may lack tools
        }
    }
}

TEST_F(WindowLayout, CannotBeMinimisedAndIsNotArrangedWhileItIs) {
    open(customer);
    EXPECT_FALSE(window->windowFlags() & Qt::WindowMinimizeButtonHint);
    EXPECT_TRUE(window->windowFlags() & Qt::WindowMaximizeButtonHint);
    const QRect before = list().geometry();
    window->setWindowStateCode(WindowStateCode::Minimised);
    window->resize(300, 300);
    EXPECT_EQ(list().geometry(), before);
    window->setWindowStateCode(WindowStateCode::Normal);
    window->resize(430, 410);
    EXPECT_EQ(list().width(), 430);
}

TEST_F(WindowLayout, TabGoesRoundWithoutATrapAndWhatTakesTheKeyboardHasAName) {
    store.addNote("One", customer);
    open(customer);
    window->resize(330, 420); // narrow: the bands offer the rest in menus
    press(Qt::Key_F, Qt::ControlModifier);
    QStringList passed;
    const auto go = [&](Qt::Key key, Qt::KeyboardModifiers shift) {
        for (int i = 0; i < 20 && window->focusWidget() != &editor(); ++i) {
            passed.append(window->focusWidget()->objectName());
            EXPECT_FALSE(window->focusWidget()->accessibleName().isEmpty())
                << passed.last().toStdString();
            press(key, shift);
        }
        passed.append(window->focusWidget()->objectName());
    };
    go(Qt::Key_Tab, Qt::NoModifier);
    press(Qt::Key_F6); // the tabulator is text in the editor: this leads out of it, to the list
    go(Qt::Key_Backtab, Qt::ShiftModifier);
    for (const char* name :
         {"txtFind", "cmdCloseFind", "lsvMain", "picHSplit", "rtxMain", "tooListType"}) {
        EXPECT_TRUE(passed.contains(name)) << name << " of " << passed.join(' ').toStdString();
    }
    for (const QWidget* widget : window->findChildren<QWidget*>()) {
        const bool canBePressed = widget->focusPolicy() != Qt::NoFocus ||
                                  qobject_cast<const QAbstractButton*>(widget) != nullptr;
        const bool ofToolkit = widget->objectName().startsWith("qt_");
        if (canBePressed && widget->isVisible() && !ofToolkit) {
            EXPECT_FALSE(widget->accessibleName().isEmpty())
                << widget->metaObject()->className() << " " << widget->objectName().toStdString();
        }
    }
}

} // namespace yrw::test
