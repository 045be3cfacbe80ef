// Popups on a real display with a window manager: tools/with-display.sh runs these.
#include "tests/addin/RemindersFixture.h"

#include "framework/ErrorGuards.h"

#include <QAccessible>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QGuiApplication>
#include <QLineEdit>
#include <QProcess>

using namespace yrw;
using namespace yrw::test;

namespace {

/// What a screen reader hears over the bus for assistive programs, and asks there.
class Reader : public QObject {
    Q_OBJECT

public:
    struct Shown {
        QString name;
        uint role = 0;
    };
    /// The role of what readers speak by themselves.
    static constexpr uint kNotification = 101;

    /// False where there is no such bus.
    bool listen() {
        QDBusInterface bus(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                           QStringLiteral("org.a11y.Bus"));
        const QDBusReply<QString> address = bus.call(QStringLiteral("GetAddress"));
        m_bus = QDBusConnection::connectToBus(address.value(), QStringLiteral("reader"));
        QDBusMessage wish = QDBusMessage::createMethodCall(
            QStringLiteral("org.a11y.atspi.Registry"), QStringLiteral("/org/a11y/atspi/registry"),
            QStringLiteral("org.a11y.atspi.Registry"), QStringLiteral("RegisterEvent"));
        wish << QStringLiteral("object:state-changed:showing");
        return m_bus.call(wish).type() == QDBusMessage::ReplyMessage &&
               m_bus.connect(QString(), QString(), QStringLiteral("org.a11y.atspi.Event.Object"),
                             QStringLiteral("StateChanged"), this,
                             SLOT(stateChanged(QDBusMessage)));
    }
    /// What came to show and is spoken.
    [[nodiscard]] QStringList spoken() const {
        QStringList names;
        for (const Shown& each : m_shown) {
            if (each.role == kNotification) {
                names += each.name;
            }
        }
        return names;
    }
    [[nodiscard]] std::size_t count() const { return m_shown.size(); }

private Q_SLOTS:
    void stateChanged(const QDBusMessage& event) {
        if (event.arguments().value(0) != u"showing"_qs || event.arguments().value(1) != 1) {
            return;
        }
        const std::size_t place = m_shown.size();
        m_shown.emplace_back();
        ask(event, QStringLiteral("org.a11y.atspi.Accessible"), QStringLiteral("GetRole"), {},
            [this, place](const QVariant& role) { m_shown[place].role = role.toUInt(); });
        ask(event, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
            {QStringLiteral("org.a11y.atspi.Accessible"), QStringLiteral("Name")},
            [this, place](const QVariant& name) {
                m_shown[place].name = name.value<QDBusVariant>().variant().toString();
            });
    }

private:
    /// Asks the object that an event came from; it lives in this process, so nobody may wait.
    void ask(const QDBusMessage& event, const QString& interface, const QString& method,
             const QVariantList& arguments, const std::function<void(const QVariant&)>& take) {
        QDBusMessage question =
            QDBusMessage::createMethodCall(event.service(), event.path(), interface, method);
        question.setArguments(arguments);
        auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, take] {
            take(watcher->reply().arguments().value(0));
            watcher->deleteLater();
        });
    }

    QDBusConnection m_bus{QString()};
    std::vector<Shown> m_shown;
};

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
    press("alt+d");
    EXPECT_TRUE(QTest::qWaitFor([] { return tags().size() == 1; }));
    EXPECT_EQ(stored(oldest, "Status").toInt(), 4);
    press("Escape"); // was for the one that has gone
    QTest::qWait(200);
    EXPECT_EQ(tags().size(), 1);
}

TEST_F(OnDisplay, AScreenReaderSpeaksOnceOfAllThatWait) {
    Reader reader;
    ASSERT_TRUE(reader.listen()) << "needs the bus for assistive programs";
    ASSERT_TRUE(QTest::qWaitFor([] { return QAccessible::isActive(); }));
    // Which events are wanted takes a moment to reach the program.
    ASSERT_TRUE(QTest::qWaitFor([&] {
        QLineEdit probe(&window());
        probe.show();
        QTest::qWait(50);
        return reader.count() > 0;
    }));
    const qint64 note = addNote(QStringLiteral("cu"), 2);
    for (int i = 0; i < 3; ++i) {
        remind(note, i - 10);
    }
    ASSERT_TRUE(minuteTick());
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return !reader.spoken().isEmpty() && !reader.spoken().first().isEmpty(); }));
    QTest::qWait(200);
    EXPECT_EQ(reader.spoken(),
              QStringList("YRW Reminder (Customer: Ferry Lane). Ring back. Due: 10/03/2026 08:50. "
                          "3 reminders are waiting. Ctrl+Alt+R goes there"));
    EXPECT_TRUE(window().isActiveWindow());
}

TEST_F(OnDisplay, OnePopupAsksForAttentionUntilItHasTheKeyboard) {
    const qint64 note = addNote(QStringLiteral("cu"), 2);
    for (int i = 0; i < 3; ++i) {
        remind(note, i - 10);
    }
    ASSERT_TRUE(minuteTick());
    const auto asking = [] {
        QStringList found;
        for (const Form* form : popups()) {
            const QString state = output(QStringLiteral("xprop"),
                                         {QStringLiteral("-id"), QString::number(form->winId()),
                                          QStringLiteral("_NET_WM_STATE")});
            if (state.contains(QStringLiteral("_NET_WM_STATE_DEMANDS_ATTENTION"))) {
                found += form->tag();
            }
        }
        return found;
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return asking() == QStringList{popup().tag()}; }));
    EXPECT_TRUE(window().isActiveWindow());
    popup().takeKeys();
    EXPECT_TRUE(QTest::qWaitFor([&] { return popup().isActiveWindow() && asking().isEmpty(); }));
}

} // namespace

#include "ReminderDisplay_test.moc"
