// Pictures of the window in its states, for people to look at:
//   [YRW_PICTURES=DIR] [YRW_DARK=1] [QT_SCALE_FACTOR=2] test_notes_window
//   --gtest_filter=*Pictures.*
#include "notes_window/LongWork.h"
#include "platform/forms/WidgetPrompt.h"
#include "tests/notes_window/WindowFixture.h"
#include "tests/support/Pictures.h"

#include <QComboBox>
#include <QMenu>

namespace yrw::test {

class WindowPictures : public WindowFixture {
protected:
    void SetUp() override {
        WindowFixture::SetUp();
        addIn = make<FakeAddIn>(store, m_prompt);
    }
    void keep(const QString& name) { m_pictures.keep(name, *window); }
    void toFront() const {
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    /// Keeps a picture of the menu or dialog that an action opens, and closes it.
    void keepDuring(const QString& name, const std::function<void()>& act) {
        bool kept = false;
        QTimer eyes;
        QObject::connect(&eyes, &QTimer::timeout, &eyes, [&] {
            QWidget* open = QApplication::activePopupWidget();
            open = open != nullptr ? open : QApplication::activeModalWidget();
            if (open != nullptr) {
                if (!std::exchange(kept, true)) {
                    keep(name);
                }
                QTest::keyClick(open, Qt::Key_Escape);
                open->close();
            }
        });
        toFront();
        eyes.start(200);
        act();
        QTest::qWait(kept ? 0 : 300);
        EXPECT_TRUE(kept) << name.toStdString();
    }
    void rightClick(QWidget& widget, const QPoint& place) {
        QCursor::setPos(widget.mapToGlobal(place));
        QTest::mouseClick(&widget, Qt::RightButton, {}, place);
    }
    void addMany() {
        for (int i = 1; i <= 40; ++i) {
            const Ref<Note> note = store.addNote(
                QStringLiteral("Note %1: what was said about the delivery").arg(i), customer);
            note->Field("AutomaticallyShow")->setValue(i % 3 == 0);
            note->Field("ReminderType")->setValue(i % 5 == 0 ? int(ReminderKind::Me) : 0);
            note->Field("RTFNote")->setValue(
                "{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}{\\colortbl;\\red200\\green0\\blue0;}\\f0"
                "\\fs28\\b Heading\\b0\\fs20\\par Some \\i italic\\i0 , \\ul underlined\\ulnone  "
                "and \\cf1 red\\cf0  words about the delivery.\\par\\qc centred\\par}");
            note->Field("PlainNote")->setValue("Heading words about the delivery centred");
            if (i % 7 == 0) {
                note->setDone(true);
            }
        }
    }

    WidgetPrompt m_prompt{store.clock()};
    yrw::Pictures m_pictures{QStringLiteral("notes-window-pictures")};
};

TEST_F(WindowPictures, OfEveryState) {
    open(customer);
    keep("empty");
    keepDuring("add-dialog", [&] { press(Qt::Key_Insert); });
    store.addNote("The only one", customer);
    click("tooShowActive");
    keep("one");
    addMany();
    click("tooShowActive");
    keep("many");
    addReminder(store.application(), store.clock(), *query<Note>(store.notesOf(customer)->Item(1)),
                store.clock().now(), 1);
    click("tooShowAll");
    list().selectKey(list().keyAt(4));
    clickRow(list().keyAt(4));
    keep("all-and-a-reminder-waits");
    click("tooShowDone");
    keep("done");
    click("tooShowActive");
    clickRow(list().keyAt(3));
    editor().setFocus();
    editor().selectAll();
    keep("text-marked");
    clickRow(list().keyAt(2));
    toFront();
    press(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(window->focusWidget(), "deliv");
    QTest::qWait(200);
    keep("find-hits");
    QTest::keyClicks(window->focusWidget(), "xyz");
    QTest::qWait(200);
    keep("find-nothing");
    press(Qt::Key_Escape);
    clickRow(list().keyAt(2));
    const auto button = [&](const char* key) {
        auto* const control = toolbar().findChild<QWidget*>(key);
        QTest::mouseClick(control, Qt::LeftButton);
    };
    keepDuring("view-menu", [&] { button("tooView"); });
    keepDuring("note-menu", [&] { rightClick(*list().viewport(), QPoint(200, 70)); });
    keepDuring("text-menu", [&] { rightClick(*editor().viewport(), QPoint(200, 40)); });
    keepDuring("list-type", [&] { button("tooListType"); });
    keepDuring("delete", [&] { press(Qt::Key_D, Qt::ControlModifier); });
    keepDuring("edit-dialog", [&] { press(Qt::Key_F2); });
    keepDuring("attachment", [&] { press(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier); });
    keepDuring("preview", [&] { click("tooPreview"); });
    store.host().hasHelp = false;
    keepDuring("keys", [&] { press(Qt::Key_F1); });
    keepDuring("done-message", [&] { click("tooCancelReminders"); });
    {
        LongWork work(store.clock(), window.get(), "Reading the notes: %1 so far.");
        store.manualClock().advance(1);
        for (int i = 0; i < 1024; ++i) {
            EXPECT_TRUE(work.goOn(i));
        }
        keep("long-work");
    }
    type("more");
    const qint64 id = list().selectedKey().mid(2).toLongLong();
    store.actAs(2);
    const Ref<IRecord> other = store.notesOf(customer)->Item(QVariant(id));
    other->Field("RTFNote")->setValue("{\\rtf1 theirs\\par}");
    other->Field("ChangeDate")->setValue(store.clock().now().addSecs(60));
    store.actAs(1);
    keepDuring("conflict", [&] { press(Qt::Key_S, Qt::ControlModifier); });
    store.database()->RunScript("CREATE TRIGGER refuse BEFORE UPDATE ON tblNotes BEGIN SELECT "
                                "RAISE(ABORT, 'attempt to write a readonly database'); END");
    type("lost");
    keepDuring("failed-save", [&] { press(Qt::Key_S, Qt::ControlModifier); });
    keep("after-failed-save");
    store.database()->RunScript("DROP TRIGGER refuse");
    clickRow(list().keyAt(0));
    keepDuring("draft", [&] {
        list().selectKey(QStringLiteral("xn%1").arg(id));
        window->ShowNote(QStringLiteral("xn%1").arg(id));
    });
    window->resize(330, 420);
    QTest::qWait(50);
    keep("narrow");
    keepDuring("overflow", [&] { button("bndRecordsOverflow"); });
    keepDuring("overflow-formatting", [&] { button("bndFormattingOverflow"); });
}

} // namespace yrw::test
