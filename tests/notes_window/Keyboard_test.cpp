// Who has the keyboard after a box has closed: the window that asked, and in it the control that
// the user goes on with. Runs offscreen and, by tools/with-display.sh, under a window manager.
#include "dialogs/frmNoteProperties.h"
#include "dialogs/frmReminder.h"
#include "notes_window/frmMain.h"
#include "platform/forms/WidgetPrompt.h"
#include "platform/toolbar/Toolbar.h"
#include "store/ReminderOperations.h"
#include "tests/support/FakeAddIn.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace yrw::test {

class Keyboard : public testing::Test {
protected:
    void SetUp() override {
        host.setCentralWidget(new QLineEdit);
        host.show();
        host.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&host));
        prompt.setParentWindow(&host);
        store.host().hasHelp = false;
        customer = store.hostRecord("cu", 1);
    }
    void TearDown() override {
        if (window) {
            window->unload();
        }
    }
    void open() {
        store.addNote("Note", customer);
        window = std::make_unique<frmMain>(store);
        window->Initialise(addIn, customer, 0);
        show(*window);
    }
    static void show(Form& form) {
        form.setWindowModality(Qt::ApplicationModal);
        form.show();
        form.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    }
    /// Does something that opens a box or dialog, which is closed once it has the keyboard; its
    /// title.
    QString closing(const std::function<void()>& act) {
        QString title;
        QTimer eyes;
        const QWidget* const under = QApplication::activeModalWidget();
        QObject::connect(&eyes, &QTimer::timeout, &eyes, [&] {
            QWidget* const box = QApplication::activeModalWidget();
            if (box != nullptr && box != under && box->isActiveWindow()) {
                title = box->windowTitle();
                box->close();
            }
        });
        eyes.start(10);
        act();
        return title;
    }
    /// "window control" that has the keyboard, once it is the one hoped for or time is up.
    static std::string keyboardIn(const QWidget& owner, const QString& name) {
        const auto now = [] {
            const QWidget* const focus = QApplication::focusWidget();
            return focus == nullptr ? QStringLiteral("nobody")
                                    : focus->window()->objectName() + ' ' + focus->objectName();
        };
        const QString hoped = owner.objectName() + ' ' + name;
        (void)QTest::qWaitFor([&] { return now() == hoped; }, 3000);
        QTest::qWait(100); // and it stays there; a window manager may give it twice
        (void)QTest::qWaitFor([&] { return now() == hoped; }, 1000);
        return now().toStdString();
    }

    TestStore store;
    WidgetPrompt prompt{store.clock()};
    Ref<FakeAddIn> addIn = make<FakeAddIn>(store, prompt);
    Ref<IRecord> customer;
    QMainWindow host;
    std::unique_ptr<frmMain> window;
};

TEST_F(Keyboard, ComesBackFromEachBoxOfTheNotesWindow) {
    const struct {
        const char* from;
        const char* keys; ///< a shortcut, or
        const char* tool; ///< the tool clicked
        const char* title;
        const char* to = nullptr; ///< where another control makes more sense
    } cases[] = {
        {"rtxMain", "Ctrl+D", "", "Confirmation"},
        {"lsvMain", "Ctrl+D", "", "Confirmation"},
        {"lsvMain", "F2", "", "Edit Note"},
        {"rtxMain", "F2", "", "Edit Note"},
        {"rtxMain", "Ins", "", "Add Note"},
        {"lsvMain", "F1", "", "Keys of the Notes Window"},
        {"rtxMain", "", "tooCancelReminders", "Cancel Reminders"},
        {"lsvMain", "", "tooChooseFont", "Select Font"},
        {"rtxMain", "", "tooColour", "Select Color"},
        {"lsvMain", "Ctrl+P", "", "Print Note"},
        {"rtxMain", "", "tooPreview", "Print Preview"},
        {"rtxMain", "", "tooExportPdf", "Export as PDF"},
        {"lsvMain", "Ctrl+Shift+F", "", "Insert Attachment", "rtxMain"},
        {"rtxMain", "", "tooDone", "Note Done"},
    };
    open();
    for (const auto& each : cases) {
        SCOPED_TRACE(std::string(each.from) + ' ' + each.keys + each.tool);
        auto* const from = window->findChild<QWidget*>(each.from);
        from->setFocus();
        const QString title = closing([&] {
            if (QByteArray(each.tool).isEmpty()) {
                const QKeyCombination key = QKeySequence(each.keys)[0];
                QTest::keyClick(from, key.key(), key.keyboardModifiers());
            } else {
                window->findChild<Toolbar*>("atbMain")->activate(each.tool);
            }
        });
        EXPECT_EQ(title.toStdString(), each.title);
        // Without a note the text is off.
        const char* const to = each.to != nullptr                   ? each.to
                               : QByteArray(each.tool) == "tooDone" ? "lsvMain"
                                                                    : each.from;
        EXPECT_EQ(keyboardIn(*window, to), std::string("frmMain ") + to);
    }
}

TEST_F(Keyboard, ComesBackFromAReportAndFromTheQuestionAboutADraft) {
    open();
    auto* const text = window->findChild<QWidget*>("rtxMain");
    store.database()->RunScript(
        "CREATE TRIGGER refuse BEFORE UPDATE ON tblNotes BEGIN SELECT RAISE(ABORT, 'full'); END");
    text->setFocus();
    QTest::keyClicks(text, "kept");
    EXPECT_EQ(closing([&] { QTest::keyClick(text, Qt::Key_S, Qt::ControlModifier); }),
              "Notes Problem");
    EXPECT_EQ(keyboardIn(*window, "rtxMain"), "frmMain rtxMain");
    auto* const list = window->findChild<QWidget*>("lsvMain");
    list->setFocus();
    EXPECT_EQ(closing([&] { window->BuildNotesList(); }), "Unsaved Text");
    EXPECT_EQ(keyboardIn(*window, "lsvMain"), "frmMain lsvMain");
}

TEST_F(Keyboard, GoesToWhatIsMissingInTheProperties) {
    frmNoteProperties dialog(store);
    dialog.Initialise(addIn, nullptr);
    show(dialog);
    const auto click = [&](const char* name) { dialog.findChild<QAbstractButton*>(name)->click(); };
    const auto ok = [&] { click("cmdForm(0)"); };
    dialog.findChild<QWidget*>("cmdForm(0)")->setFocus();
    EXPECT_EQ(closing(ok), "Input Check");
    EXPECT_EQ(keyboardIn(dialog, "txtSubject"), "frmNoteProperties txtSubject");
    dialog.findChild<QLineEdit*>("txtSubject")->setText("Subject");
    click("chkReminder");
    click("optReminder(2)");
    EXPECT_EQ(closing(ok), "User Check");
    EXPECT_EQ(keyboardIn(dialog, "tvwRemindUsers"), "frmNoteProperties tvwRemindUsers");
    dialog.unload();
}

TEST_F(Keyboard, StaysInThePopupThatRefusedAnAnswer) {
    const Ref<Note> note = store.addNote("Ring back", customer);
    addReminder(store.application(), store.clock(), *note, store.clock().now(), 1);
    const QPointer<frmReminder> popup(new frmReminder(store));
    popup->showModeless(&host, false);
    popup->Initialise(*addIn, dueReminders(store.application(), kFakeHostProgID, 1, [](qint64) {
                                  return true;
                              }).front());
    ASSERT_TRUE(QTest::qWaitForWindowExposed(popup));
    popup->takeKeys();
    ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == popup; }));
    store.manualClock().advance(1);
    popup->findChild<QCheckBox*>("chkFinish")->setChecked(true);
    EXPECT_EQ(closing([&] {
                  QTest::mouseClick(popup->findChild<QPushButton*>("cmdForm(0)"), Qt::LeftButton);
              }),
              "Cannot Finish Note");
    EXPECT_EQ(keyboardIn(*popup, "chkFinish"), "frmReminder chkFinish");
    QTest::keyClick(popup, Qt::Key_Escape); // and its keys work
    EXPECT_TRUE(QTest::qWaitFor([&] { return popup.isNull(); }));
}

TEST_F(Keyboard, ComesBackFromAToolbarsDroppedListAndStaysWithTheArrowKeys) {
    open();
    auto* const combo = window->findChild<QComboBox*>("tooListType");
    for (const char* from : {"lsvMain", "rtxMain"}) {
        window->activateWindow(); // offscreen a list that closes leaves no window active
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        window->findChild<QWidget*>(from)->setFocus();
        combo->setFocus();
        QTest::keyClick(combo, Qt::Key_Down);
        EXPECT_EQ(keyboardIn(*window, "tooListType"), "frmMain tooListType");
        combo->showPopup();
        QTest::keyClick(combo->view(), Qt::Key_Home);
        QTest::keyClick(combo->view(), Qt::Key_Return);
        EXPECT_TRUE(QTest::qWaitFor([&] { return window->focusWidget()->objectName() == from; }))
            << from << " but " << window->focusWidget()->objectName().toStdString();
    }
}

} // namespace yrw::test
