// Under a real window manager, with real keys: the popup never takes the keyboard by itself.
#include "tests/landing/LandingFixture.h"

#include "framework/Settings.h"
#include "platform/forms/ScreenMetrics.h"
#include "platform/toolbar/Toolbar.h"

#include <QLineEdit>
#include <QProcess>

using namespace yrw;
using namespace yrw::test;

namespace {

class FocusUnderAWindowManager : public LandingFixture {
protected:
    void SetUp() override {
        ASSERT_EQ(QGuiApplication::platformName(), u"xcb") << "needs a window manager";
        open();
        addNote(QStringLiteral("cu"), 3, QStringLiteral("Ring"));
    }
    /// Starts the program that presses keys and buttons of the display.
    static std::unique_ptr<QProcess> hands(const QStringList& arguments) {
        auto process = std::make_unique<QProcess>();
        process->start(QStringLiteral("xdotool"), arguments);
        EXPECT_TRUE(process->waitForStarted());
        return process;
    }
    static void doByHand(const QStringList& arguments) {
        const auto process = hands(arguments);
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return process->state() == QProcess::NotRunning; }, 20000));
        EXPECT_EQ(process->exitCode(), 0) << qPrintable(process->readAllStandardError());
        QTest::qWait(50);
    }
    void land() {
        upperGrid().setCurrentRow(0);
        upperGrid().setCurrentRow(2);
        ASSERT_TRUE(comesUp({QStringLiteral("Ring")}));
        ASSERT_TRUE(QTest::qWaitFor([&] { return timer().isActive(); }, 3000));
    }
    [[nodiscard]] QTimer& timer() { return addIn->UpperTimerForm()->AutoNoteTimer(); }
    static QString numberOf(const QWidget& widget) { return QString::number(widget.winId()); }
};

TEST_F(FocusUnderAWindowManager, ThePopupComesWhileTheUserTypesAndEveryKeyArrives) {
    window().run(DeskCommand::Find);
    auto& field = find<QLineEdit>("txtFind");
    ASSERT_TRUE(QTest::qWaitFor([&] { return field.hasFocus(); }));
    const QString text = QStringLiteral("abcdefghij").repeated(8);
    upperGrid().setCurrentRow(2); // the popup is due while the keys come
    const auto typing =
        hands({QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("25"), text});
    ASSERT_TRUE(comesUp({QStringLiteral("Ring")}));
    EXPECT_LT(field.text().size(), text.size()) << "the popup came too late to disturb";
    EXPECT_TRUE(QTest::qWaitFor([&] { return field.text().size() >= text.size(); }, 20000));
    typing->waitForFinished();
    EXPECT_EQ(field.text(), text);
    EXPECT_TRUE(field.hasFocus());
    EXPECT_TRUE(window().isActiveWindow());
    EXPECT_EQ(shownSubjects(), QStringList{QStringLiteral("Ring")});
}

TEST_F(FocusUnderAWindowManager, StandsWhereItShouldWithItsFrame) {
    land();
    QTest::qWait(200);
    const QRect frame = popup()->frameGeometry();
    EXPECT_EQ(frame.top(), systemMetric(SystemMetric::CaptionHeight));
    EXPECT_NEAR(frame.right(),
                window().frameGeometry().right() - systemMetric(SystemMetric::SizingFrameWidth), 4);
}

TEST_F(FocusUnderAWindowManager, AClickIntoItGivesItTheKeyboardAndEscapeGivesItBack) {
    upperGrid().setFocus();
    land();
    const QPoint place = popup()->mapToGlobal(QPoint(40, popup()->height() - 40));
    doByHand({QStringLiteral("mousemove"), QString::number(place.x()), QString::number(place.y()),
              QStringLiteral("click"), QStringLiteral("1")});
    EXPECT_TRUE(QTest::qWaitForWindowActive(popup()));
    QTest::qWait(1200); // two ticks of the focus check, were it still on
    EXPECT_EQ(shownSubjects(), QStringList{QStringLiteral("Ring")});
    doByHand({QStringLiteral("key"), QStringLiteral("Escape")});
    EXPECT_TRUE(goesAway());
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
    doByHand({QStringLiteral("key"), QStringLiteral("Down")});
    EXPECT_EQ(upperGrid().currentRow(), 3);
}

TEST_F(FocusUnderAWindowManager, LeavingOrMinimisingTheHostClosesIt) {
    land();
    QWidget other;
    other.resize(200, 100);
    other.show();
    other.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_TRUE(goesAway());
    EXPECT_EQ(statusText(), QString());
    other.close();
    window().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    land();
    window().showMinimized();
    EXPECT_TRUE(goesAway());
}

TEST_F(FocusUnderAWindowManager, ASizeGivenByHandIsFoundAgain) {
    land();
    doByHand({QStringLiteral("windowsize"), numberOf(*popup()), QStringLiteral("420"),
              QStringLiteral("333")});
    EXPECT_TRUE(QTest::qWaitFor([] { return popup()->size() == QSize(420, 333); }));
    EXPECT_FALSE(timer().isActive()); // that was the user
    upperGrid().setCurrentRow(5);
    for (int round = 0; round < 3; ++round) {
        land();
        EXPECT_EQ(popup()->size(), QSize(420, 333)) << round;
    }
}

/// Places of windows in the window manager's pile, the lowest first; -1 for one that is not there.
QList<qsizetype> placesInPile(const QWidgetList& windows) {
    QProcess asking;
    asking.start(QStringLiteral("xprop"),
                 {QStringLiteral("-root"), QStringLiteral("_NET_CLIENT_LIST_STACKING")});
    asking.waitForFinished();
    const QStringList pile =
        QString::fromLatin1(asking.readAll()).section(u'#', 1).remove(u' ').trimmed().split(u',');
    QList<qsizetype> places;
    for (const QWidget* window : windows) {
        places += window == nullptr || !window->isVisible()
                      ? -1
                      : pile.indexOf(QStringLiteral("0x%1").arg(window->winId(), 0, 16));
    }
    return places;
}

TEST_F(FocusUnderAWindowManager, AFloatingBandLiesOverItsOwnWindowAndUnderAnyOther) {
    auto& hostBar = find<Toolbar>("atbInterface");
    hostBar.setArrangement(QStringLiteral("bndRecord:0@420,380"));
    const auto bandOf = [](const QWidget& owner, const char* name) {
        return owner.findChild<QWidget*>(QString::fromLatin1(name));
    };
    QPointer<QWidget> hostBand = bandOf(window(), "bndRecordWindow");
    ASSERT_TRUE(QTest::qWaitFor([&] { return placesInPile({hostBand})[0] > 0; }));
    EXPECT_GT(placesInPile({hostBand})[0], placesInPile({&window()})[0]);
    NotesSettings(Module1::instance().services().settings)
        .set(setting::kToolbarBands,
             QStringLiteral("bndRecords:0;bndStandard:0;bndFormatting:1;bndInsert:1@500,420"));
    int looks = 0;
    QTimer looking;
    QObject::connect(&looking, &QTimer::timeout, &looking, [&] {
        QWidget* const notes = QApplication::activeModalWidget();
        QWidget* const band = notes == nullptr ? nullptr : bandOf(*notes, "bndInsertWindow");
        if (band == nullptr || placesInPile({band})[0] < 0) {
            return;
        }
        if (++looks == 2) { // as a click into the window's title does
            doByHand({QStringLiteral("windowraise"), numberOf(*notes)});
        } else if (looks == 3) {
            window().raise();
            QTest::qWait(200);
        }
        EXPECT_GT(placesInPile({band})[0], placesInPile({notes})[0]) << looks;
        EXPECT_LT(placesInPile({hostBand})[0], placesInPile({notes})[0]) << looks;
        if (looks == 4) {
            looking.stop();
            QTest::keyClick(notes, Qt::Key_Escape);
        }
    });
    looking.start(300);
    addIn->ShowNotes(nullptr, 0);
    EXPECT_EQ(looks, 4);
    EXPECT_TRUE(QTest::qWaitFor([&] { return placesInPile({hostBand})[0] > 0; }));
}

} // namespace
