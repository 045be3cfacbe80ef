// Popups on a real display with a window manager: tools/with-display.sh runs these.
#include "tests/addin/RemindersFixture.h"

#include "framework/ErrorGuards.h"

#include <QGuiApplication>
#include <QLineEdit>
#include <QProcess>
#include <QScreen>

using namespace yrw;
using namespace yrw::test;

namespace {

class OnDisplay : public RemindersFixture {
protected:
    void SetUp() override {
        ASSERT_EQ(QGuiApplication::platformName(), u"xcb") << "needs a window manager";
        RemindersFixture::SetUp();
        window().move(200, 150);
        window().resize(1000, 700);
        window().show();
        window().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    }
    /// Keeps a picture of the whole screen where YRW_PICTURES says, for people to look at.
    static void keepPicture(const QString& name) {
        const QString folder = qEnvironmentVariable("YRW_PICTURES");
        if (!folder.isEmpty()) {
            QTest::qWait(300);
            QGuiApplication::primaryScreen()->grabWindow(0).save(folder + u'/' + name + u".png");
        }
    }
    static QString output(const QString& program, const QStringList& arguments) {
        QProcess process;
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished()) << program.toStdString();
        return QString::fromUtf8(process.readAllStandardOutput());
    }
};

TEST_F(OnDisplay, ATextFieldKeepsEveryKeyWhileTwentyPopupsAppear) {
    QLineEdit field(&window());
    field.setGeometry(20, 20, 900, 30);
    field.show();
    field.setFocus();
    const qint64 note = addNote(QStringLiteral("cu"), 2);
    int shown = 0;
    QTimer dripping;
    QObject::connect(&dripping, &QTimer::timeout, &dripping, [&] {
        ignoreErrors([&] {
            if (shown < 20) {
                remind(note, shown++ - 100);
                EXPECT_TRUE(minuteTick());
            }
        });
    });
    QString typed;
    for (int i = 0; i < 120; ++i) {
        typed += QChar(u'a' + i % 26);
    }
    QProcess typist;
    typist.start(QStringLiteral("xdotool"),
                 {QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("25"), typed});
    ASSERT_TRUE(typist.waitForStarted());
    dripping.start(100);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return shown == 20 && typist.state() == QProcess::NotRunning; }, 30000));
    EXPECT_TRUE(QTest::qWaitFor([&] { return field.text().size() == typed.size(); }));
    EXPECT_EQ(field.text(), typed);
    EXPECT_TRUE(window().isActiveWindow());
    EXPECT_EQ(tags().size(), 20);
    keepPicture(QStringLiteral("cascade"));

    // The oldest promise lies in front of all others, whole; the window manager takes a moment.
    const auto inFront = [] {
        return output(QStringLiteral("xprop"), {QStringLiteral("-root"), QStringLiteral("-notype"),
                                                QStringLiteral("_NET_CLIENT_LIST_STACKING")})
            .section(QStringLiteral("0x"), -1)
            .trimmed()
            .toULongLong(nullptr, 16);
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return inFront() == popup().winId(); }));
}

TEST_F(OnDisplay, OneKeyReachesTheOldestAndOneAnswersIt) {
    const qint64 note = addNote(QStringLiteral("cu"), 2);
    const qint64 oldest = remind(note, -10);
    remind(note, -9);
    const auto press = [](const char* keys) {
        EXPECT_EQ(QProcess::execute(QStringLiteral("xdotool"),
                                    {QStringLiteral("key"), QLatin1String(keys)}),
                  0);
    };
    ASSERT_TRUE(minuteTick());
    press("Escape"); // is the host's
    press("ctrl+alt+r");
    EXPECT_TRUE(QTest::qWaitFor([] { return popup().isActiveWindow(); }));
    EXPECT_EQ(tags().size(), 2);
    keepPicture(QStringLiteral("reached"));
    press("alt+d");
    EXPECT_TRUE(QTest::qWaitFor([] { return tags().size() == 1; }));
    EXPECT_EQ(stored(oldest, "Status").toInt(), 4);
    press("Escape"); // was for the one that has gone
    QTest::qWait(200);
    EXPECT_EQ(tags().size(), 1);
}

} // namespace
