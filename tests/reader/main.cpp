// What a screen reader is to the programs on a display: it asks the bus for assistive programs for
// every event of windows and for every key, and takes none of the keys. From then on the toolkit
// holds keys back until they were asked for. Says "ready" and stays until it is ended.
#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVirtualObject>

#include <cstdio>

namespace {

/// Leaves every key to the program that it was pressed in.
class Keys final : public QDBusVirtualObject {
public:
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        return message.member() == u"NotifyEvent" && bus.send(message.createReply(false));
    }
};

struct KeyDefinition {
    int code = 0;
    int symbol = 0;
    QString text;
    int unused = 0;
};
QDBusArgument& operator<<(QDBusArgument& out, const KeyDefinition& key) {
    out.beginStructure();
    out << key.code << key.symbol << key.text << key.unused;
    out.endStructure();
    return out;
}
const QDBusArgument& operator>>(const QDBusArgument& in, KeyDefinition& key) {
    in.beginStructure();
    in >> key.code >> key.symbol >> key.text >> key.unused;
    in.endStructure();
    return in;
}

struct KeyMode {
    bool synchronous = true;
    bool preemptive = true;
    bool global = false;
};
QDBusArgument& operator<<(QDBusArgument& out, const KeyMode& mode) {
    out.beginStructure();
    out << mode.synchronous << mode.preemptive << mode.global;
    out.endStructure();
    return out;
}
const QDBusArgument& operator>>(const QDBusArgument& in, KeyMode& mode) {
    in.beginStructure();
    in >> mode.synchronous >> mode.preemptive >> mode.global;
    in.endStructure();
    return in;
}

bool call(QDBusConnection& bus, const QString& path, const QString& interface,
          const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(QStringLiteral("org.a11y.atspi.Registry"),
                                                          path, interface, method);
    message.setArguments(arguments);
    const QDBusMessage answer = bus.call(message);
    if (answer.type() != QDBusMessage::ReplyMessage) {
        std::fprintf(stderr, "reader: %s: %s\n", qPrintable(method),
                     qPrintable(answer.errorMessage()));
    }
    return answer.type() == QDBusMessage::ReplyMessage;
}

} // namespace

Q_DECLARE_METATYPE(KeyDefinition)
Q_DECLARE_METATYPE(KeyMode)

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    qDBusRegisterMetaType<KeyDefinition>();
    qDBusRegisterMetaType<QList<KeyDefinition>>();
    qDBusRegisterMetaType<KeyMode>();

    QDBusInterface launcher(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                            QStringLiteral("org.a11y.Bus"));
    const QDBusReply<QString> address = launcher.call(QStringLiteral("GetAddress"));
    QDBusConnection bus =
        QDBusConnection::connectToBus(address.value(), QStringLiteral("assistive"));
    bool listens = bus.isConnected();
    for (const char* events : {"object:", "window:", "focus:"}) {
        listens = listens && call(bus, QStringLiteral("/org/a11y/atspi/registry"),
                                  QStringLiteral("org.a11y.atspi.Registry"),
                                  QStringLiteral("RegisterEvent"), {QLatin1String(events)});
    }
    const QString path = QStringLiteral("/org/a11y/atspi/listeners/0");
    Keys keys;
    bus.registerVirtualObject(path, &keys);
    // All keys, as presses and releases, with any of the modifiers.
    listens = listens && call(bus, QStringLiteral("/org/a11y/atspi/registry/deviceeventcontroller"),
                              QStringLiteral("org.a11y.atspi.DeviceEventController"),
                              QStringLiteral("RegisterKeystrokeListener"),
                              {QVariant::fromValue(QDBusObjectPath(path)),
                               QVariant::fromValue(QList<KeyDefinition>()), 0U, 3U,
                               QVariant::fromValue(KeyMode())});
    if (!listens) {
        std::fputs("reader: there is no bus for assistive programs\n", stderr);
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
