// Size, state, splitter, columns and the layout of the toolbar.
#include "tests/notes_window/WindowFixture.h"

#include <QScreen>

namespace yrw::test {

class WindowLayout : public WindowFixture {
protected:
    void setStored(const char* key, const QString& text) {
        addIn->settings().setText(QLatin1String(key), text);
    }
    [[nodiscard]] QString storedText(const char* key) {
        return addIn->settings().text(QLatin1String(key), QString());
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
    void writeLayout(const QByteArray& content) const {
        QFile file(store.folder() + QStringLiteral("/Support/Notes/Menus.tb"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
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
    for (int column = 0; column < list().columns(); ++column) {
        all += list().columnWidth(column);
    }
    EXPECT_EQ(all, view->width()); // the subject takes what the others leave
    list().setColumnWidth(0, 200);
    list().setColumnWidth(2, 90);
    list().setColumnWidth(4, 110);
    click("tooShowMyNotes"); // takes the user column away
    open(customer);
    click("tooShowMyNotes");
    EXPECT_EQ(list().columnWidth(0), 200);
    EXPECT_EQ(list().columnWidth(2), 90);
    EXPECT_EQ(list().columnWidth(4), 110);
}

TEST_F(WindowLayout, EveryToolHasItsPlaceAndId) {
    struct Case {
        const char* band;
        const char* tool;
        int id;
    };
    const QList<Case> cases{
        {"bndRecords", "tooAdd", 20100},
        {"bndRecords", "tooDelete", 20101},
        {"bndRecords", "tooSave", 20003},
        {"bndRecords", "tooListType", 40020},
        {"bndNotesShowType", "tooShowActive", 20300},
        {"bndNotesShowType", "tooShowDone", 20301},
        {"bndNotesShowType", "tooShowAll", 20302},
        {"bndNotesShowType", "tooShowMyNotes", 20303},
        {"bndNotesShowType", "tooCheckReminders", 20304},
        {"bndNotesShowType", "tooCheckAutoNotes", 20305},
        {"bndNotesShowType", "tooShowAutoPopup", 20306},
        {"bndNotesShowType", "tooHighlightNotesRow", 20307},
        {"bndNotesShowType", "tooFlagNotesRow", 20309},
        {"bndFormatting", "tooBold", 20045},
        {"bndFormatting", "tooFont", 20055},
        {"bndInsert", "tooInsertDate", 20061},
        {"bndInsert", "tooInsertTime", 20062},
        {"bndInsert", "tooInsertContent", 20063},
        {"bndInsert", "tooInsertIcon", 20064},
        {"bndStandard", "tooPrint", 20008},
        {"bndNotePopup", "tooEdit", 20200},
        {"bndTextPopup", "tooClear", 40012},
    };
    open(customer);
    for (const Case& each : cases) {
        SCOPED_TRACE(each.tool);
        const IBand* band = toolbar().findBand(each.band);
        ASSERT_NE(band, nullptr);
        const ITool* found = band->findTool(each.tool);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->id(), each.id);
    }
}

TEST_F(WindowLayout, AnyOtherToolDoesNothing) {
    writeLayout(R"({"version": 1, "bands": [{"key": "bndRecords", "tools": [
        {"id": 20053, "key": "tooOne", "caption": "One"},
        {"id": 20063, "key": "tooTwo", "caption": "Two"},
        {"id": 999999, "key": "tooThree", "caption": "Three"}]}]})");
    open(customer);
    for (const char* key : {"tooOne", "tooTwo", "tooThree"}) {
        click(key);
    }
    EXPECT_TRUE(script.asked.isEmpty());
    click("tooListType"); // a layout may lack tools: the window works all the same
    EXPECT_EQ(window->windowTitle(), "YRW Notes - (Customer: Quill & Son)");
}

TEST_F(WindowLayout, ABrokenLayoutIsNamedOnceAndAnotherOneServes) {
    writeLayout("{ broken");
    script.expectMessage(1);
    open(customer);
    EXPECT_TRUE(script.asked.last().contains("Menus.tb"));
    EXPECT_NE(toolbar().findTool("tooAdd"), nullptr);
    close();
    ASSERT_TRUE(QFile::remove(store.folder() + "/Support/Notes/Menus.tb"));
    open(customer); // a missing one is no fault
    EXPECT_NE(toolbar().findTool("tooAdd"), nullptr);
}

TEST_F(WindowLayout, WhatAUserCanPressHasAName) {
    open(customer);
    const QList<QWidget*> widgets = window->findChildren<QWidget*>();
    for (const QWidget* widget : widgets) {
        const bool canBePressed = widget->focusPolicy() != Qt::NoFocus ||
                                  qobject_cast<const QAbstractButton*>(widget) != nullptr;
        if (canBePressed && widget->isVisible() && !widget->objectName().startsWith("qt_")) {
            EXPECT_FALSE(widget->accessibleName().isEmpty())
                << widget->metaObject()->className() << " " << widget->objectName().toStdString();
        }
    }
}

} // namespace yrw::test
