// Files dragged between the editor and another program, by a mouse on a real display.
#include "platform/richtext/RichTextBox.h"
#include "platform/rtf/EmbeddedObject.h"
#include "tests/driving/Select.h"
#include "tests/richtext/DragPeer.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDrag>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

namespace yrw::test {

namespace {

constexpr char kPeerFile[] = "YRW_DRAG_PEER";
constexpr QRect kPeer(900, 200, 300, 200);

class PeerWindow : public QWidget {
public:
    PeerWindow() { setAcceptDrops(true); }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override {
        if (event->mimeData()->hasFormat(QStringLiteral("text/uri-list"))) {
            event->acceptProposedAction();
        }
    }
    void dropEvent(QDropEvent* event) override {
        const QList<QUrl> urls = event->mimeData()->urls();
        QFile file(urls.value(0).toLocalFile());
        const bool opened = file.open(QIODevice::ReadOnly);
        QTextStream(stdout) << urls.value(0).fileName() << ' '
                            << (opened ? file.readAll().toHex() : QByteArray("?")) << Qt::endl;
        event->acceptProposedAction();
    }
    void mousePressEvent(QMouseEvent*) override {
        auto* const drag = new QDrag(this); // deletes itself when it is over
        auto* const mime = new QMimeData;   // the drag owns it
        mime->setUrls({QUrl::fromLocalFile(qEnvironmentVariable(kPeerFile))});
        drag->setMimeData(mime);
        drag->exec(Qt::CopyAction);
    }
};

class OnDisplay : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(QGuiApplication::platformName(), u"xcb") << "needs a window manager";
        m_box.setGeometry(100, 200, 500, 300);
        m_box.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_box));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QLatin1String(kPeerFile), file(QStringLiteral("given.dat"), m_content));
        m_peer.setProcessEnvironment(environment);
        m_peer.start(QCoreApplication::applicationFilePath(), QStringList());
        ASSERT_EQ(nextLine(), "ready");
    }
    void TearDown() override {
        m_peer.kill();
        m_peer.waitForFinished();
    }
    [[nodiscard]] QString file(const QString& name, const QByteArray& content) const {
        QFile out(m_folder.filePath(name));
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(content);
        return out.fileName();
    }
    /// What the other program says next.
    QByteArray nextLine() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return m_peer.canReadLine(); }, 20000));
        return m_peer.readLine().trimmed();
    }
    /// Drags at the speed of a hand; both programs go on meanwhile.
    static void drag(const QPoint& from, const QPoint& to) {
        QStringList moves;
        const auto moveTo = [&moves](const QPoint& at) {
            moves << QStringLiteral("mousemove") << QString::number(at.x())
                  << QString::number(at.y()) << QStringLiteral("sleep") << QStringLiteral("0.1");
        };
        moveTo(from);
        moves << QStringLiteral("mousedown") << QStringLiteral("1");
        for (int step = 1; step <= 10; ++step) {
            moveTo(from + (to - from) * step / 10);
        }
        moveTo(to + QPoint(2, 2));
        moves << QStringLiteral("mouseup") << QStringLiteral("1");
        QProcess hand;
        hand.start(QStringLiteral("xdotool"), moves);
        EXPECT_TRUE(
            QTest::qWaitFor([&hand] { return hand.state() == QProcess::NotRunning; }, 20000));
        EXPECT_EQ(hand.exitCode(), 0) << hand.errorString().toStdString();
    }

    QTemporaryDir m_folder;
    QByteArray m_content = QByteArray::fromHex("00ff0d0a1a80") + "own bytes";
    RichTextBox m_box;
    QProcess m_peer;
};

TEST_F(OnDisplay, AnAttachmentDraggedOutArrivesWithItsBytes) {
    m_box.objects().insertFile(file("list.dat", m_content), ObjectDisplay::Icon);
    const QString before = m_box.TextRTF();
    select(m_box, 0);
    const QPoint inside = m_box.cursorRect().topLeft() + QPoint(30, 30);
    ASSERT_EQ(m_box.objects().at(inside), 0);
    drag(m_box.viewport()->mapToGlobal(inside), kPeer.center());
    EXPECT_EQ(nextLine(), "list.dat " + m_content.toHex());
    EXPECT_EQ(m_box.TextRTF(), before); // they get a copy
}

TEST_F(OnDisplay, AFileDraggedInIsAttached) {
    drag(kPeer.center(), m_box.viewport()->mapToGlobal(QPoint(50, 50)));
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_box.objects().count() == 1; }));
    EXPECT_EQ(m_box.objects().file(0)->label, "given.dat");
    EXPECT_EQ(m_box.objects().file(0)->data, m_content);
}

} // namespace

bool isDragPeer() {
    return qEnvironmentVariableIsSet(kPeerFile);
}

int runDragPeer() {
    PeerWindow window;
    window.setGeometry(kPeer);
    window.setAttribute(Qt::WA_ShowWithoutActivating);
    window.show();
    if (QTest::qWaitForWindowExposed(&window)) {
        QTextStream(stdout) << "ready" << Qt::endl;
    }
    return QApplication::exec();
}

} // namespace yrw::test
