// A desk with the add-in that does not end by its user's hand: a child of this program, in one
// state after the other.
#include "tests/landing/Ending.h"

#include "addin/AddIn.h"
#include "host/desk/DeskWindow.h"
#include "host/desk/EndSignals.h"
#include "host/desk/ProgramServices.h"
#include "host/desk/SessionEnd.h"
#include "platform/files/FileSystem.h"
#include "platform/richtext/LocalFiles.h"
#include "platform/richtext/RichTextBox.h"
#include "store/NotesDatabase.h"
#include "tests/support/NotesFixture.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <cstdio>

namespace yrw::test {

namespace {

constexpr const char* kState = "YRW_ENDING_STATE";
constexpr const char* kFolder = "YRW_ENDING_FOLDER";

QString dataFolder(const QString& folder) {
    return folder + QStringLiteral("/data");
}

int draftsBelow(const QString& folder) {
    QDirIterator found(folder, {"*.draft"}, QDir::Files, QDirIterator::Subdirectories);
    int count = 0;
    for (; found.hasNext(); found.next()) {
        ++count;
    }
    return count;
}

/// The child's desk, and what its user does.
class EndingDesk : public QObject {
public:
    EndingDesk() {
        Module1::instance().setTemplateFolder(shippedTemplateFolder());
        const QString data = dataFolder(qEnvironmentVariable(kFolder));
        QDir().mkpath(data);
        createNotesDatabase(FileSystem(), shippedTemplateFolder(), data);
        DeskOptions options;
        options.start.folder = data;
        options.start.customers = 5;
        options.createObject = [this](const QString&) {
            m_addIn = make<AddIn>();
            return Ref<Counted>(m_addIn);
        };
        m_window = std::make_unique<DeskWindow>(m_program.services, options);
    }
    int run() {
        SessionEnd ending([this] {
            m_addIn.reset();
            m_window->endSession();
        });
        const EndSignals signals([&ending] { ending.begin(); });
        m_window->open();
        QObject::connect(m_window.get(), &DeskWindow::closed, qApp, [] { QApplication::exit(); });
        addNote();
        QTimer::singleShot(0, this, [this] { begin(); });
        return QApplication::exec();
    }

private:
    static void ready(const QString& copy = QString()) {
        std::printf("ready %s\n", copy.toUtf8().constData());
        std::fflush(stdout);
    }
    void addNote() {
        Application& application = Module1::instance().application();
        application.Notes()->Add({{"Subject", "typed into"},
                                  {"PlainNote", "before"},
                                  {"RTFNote", "{\\rtf1 before\\par}"}},
                                 nullptr, m_note, true);
        const QDateTime due = Clock::instance().now().addSecs(-60);
        for (int i = 0; i < 3; ++i) {
            qint64 id = 0;
            application.Reminders()->Add(
                {{"NoteID", m_note}, {"UserID", 1}, {"OriginalDate", due}, {"NextDate", due}},
                nullptr, id, true);
        }
    }
    void begin() {
        if (m_state == "popups" || m_state == "all") {
            m_addIn->CheckForReminders();
        }
        if (m_state == "idle" || m_state == "popups") {
            ready();
            return;
        }
        QTimer::singleShot(50, this, [this] { typeNote(); });
        const Ref<AddIn> addIn = m_addIn;
        addIn->ShowNotes(nullptr, m_note);
    }
    void typeNote() {
        QWidget& notes = *QApplication::activeModalWidget();
        auto& editor = *notes.findChild<RichTextBox*>();
        editor.setFocus();
        QTest::keyClicks(&editor, "typed");
        if (m_state == "notes" || m_state == "all") {
            ready();
        } else if (m_state == "asked") {
            // As the desktop's session manager has the toolkit ask; no handler uses the manager.
            QObject manager;
            QMetaObject::invokeMethod(qApp, "commitDataRequest", Qt::DirectConnection,
                                      QGenericArgument("QSessionManager&", &manager));
            ready();
        } else if (m_state == "attachment") {
            editor.objects().insertFile(QStringLiteral(YRW_SOURCE_DIR "/README.md"),
                                        ObjectDisplay::Icon);
            const QString copy = editor.objects().copy(0);
            const bool isKept = QTest::qWaitFor(
                [] { return draftsBelow(qEnvironmentVariable("XDG_STATE_HOME")) > 0; });
            ready(isKept ? copy : QString());
        } else if (m_state == "conflict") {
            const auto workspace = dao::createWorkspace({Clock::instance(), m_files});
            workspace->OpenDatabase(dataFolder(qEnvironmentVariable(kFolder)) + "/Notes.mdb")
                ->RunScript("UPDATE tblNotes SET RTFNote='{\\rtf1 theirs\\par}',"
                            "ChangeDate='2030-01-01 00:00:00'");
            ready();
        } else {
            whenUp([] { ready(); });
            const Qt::KeyboardModifiers control = Qt::ControlModifier;
            m_state == "question"     ? QTest::keyClick(&editor, Qt::Key_D, control)
            : m_state == "properties" ? QTest::keyClick(&editor, Qt::Key_F2)
                                      : QTest::mouseClick(editor.viewport(), Qt::RightButton);
        }
    }
    /// Does something once a box, a dialog or a menu lies over the notes window.
    void whenUp(const std::function<void()>& act) {
        QTimer::singleShot(10, this, [this, act, notes = QApplication::activeModalWidget()] {
            const bool isUp = QApplication::activeModalWidget() != notes ||
                              QApplication::activePopupWidget() != nullptr;
            isUp ? act() : whenUp(act);
        });
    }

    QByteArray m_state = qgetenv(kState);
    ProgramServices m_program;
    FileSystem m_files;
    Ref<AddIn> m_addIn;
    std::unique_ptr<DeskWindow> m_window;
    qint64 m_note = 0;
};

class Ending : public testing::Test {
protected:
    /// Starts a child and waits until it is in a state.
    void start(const char* state) {
        m_folder = std::make_unique<QTemporaryDir>();
        QDir(m_folder->path()).mkpath("tmp");
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(kState, state);
        environment.insert(kFolder, m_folder->path());
        environment.insert("TMPDIR", m_folder->filePath("tmp"));
        for (const char* home : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"}) {
            environment.insert(home, m_folder->filePath(home));
        }
        child = std::make_unique<QProcess>();
        child->setProcessEnvironment(environment);
        child->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child->start(QCoreApplication::applicationFilePath(), QStringList());
        while (!child->canReadLine() && child->waitForReadyRead(30000)) {
        }
        said = QString::fromUtf8(child->readLine()).trimmed();
        ASSERT_TRUE(said.startsWith("ready")) << said.toStdString();
    }
    void end(int signal) {
        ::kill(static_cast<pid_t>(child->processId()), signal);
        ASSERT_TRUE(child->waitForFinished(15000));
    }
    /// The values of a field, joined; read from the file.
    QString stored(const QString& table, const QString& field) {
        const auto workspace = dao::createWorkspace({clock, files});
        const auto rows = workspace->OpenDatabase(dataFolder(m_folder->path()) + "/Notes.mdb")
                              ->OpenRecordset("SELECT * FROM " + table);
        QStringList values;
        for (; !rows->AtEof(); rows->MoveNext()) {
            const QVariant value = rows->value(field);
            values += value.typeId() == QMetaType::QDateTime
                          ? QString::number(now.secsTo(value.toDateTime()) / 60)
                          : value.toString();
        }
        return values.join(' ');
    }
    /// Folders that programs left for their private files.
    [[nodiscard]] QStringList left() const {
        return QDir(m_folder->filePath("tmp")).entryList({"yarrowen-*"});
    }
    [[nodiscard]] int drafts() const { return draftsBelow(m_folder->filePath("XDG_STATE_HOME")); }

    Clock& clock = Clock::instance();
    FileSystem files;
    QDateTime now = clock.now();
    std::unique_ptr<QProcess> child;
    QString said;

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

TEST_F(Ending, BySignalSavesTheTextClosesThePopupsAndLeavesNothing) {
    const struct {
        const char* state;
        int signal;
        const char* text;     ///< of the note afterwards
        const char* statuses; ///< of its reminders
    } cases[] = {
        {"idle", SIGTERM, "before", "1 1 1"},
        {"popups", SIGTERM, "before", "2 2 2"},
        {"notes", SIGTERM, "typedbefore", "1 1 1"},
        {"all", SIGTERM, "typedbefore", "2 2 2"},
        {"notes", SIGHUP, "typedbefore", "1 1 1"},
        {"question", SIGINT, "typedbefore", "1 1 1"},
        {"properties", SIGTERM, "typedbefore", "1 1 1"},
        {"menu", SIGHUP, "typedbefore", "1 1 1"},
        {"conflict", SIGTERM, "typedbefore", "1 1 1"},
        {"attachment", SIGTERM, "typed", "1 1 1"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(std::string(each.state) + ' ' + std::to_string(each.signal));
        start(each.state);
        end(each.signal);
        EXPECT_EQ(child->exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(child->exitCode(), 0);
        EXPECT_TRUE(stored("tblNotes", "PlainNote").startsWith(each.text))
            << stored("tblNotes", "PlainNote").toStdString();
        EXPECT_EQ(stored("tblReminders", "Status").toStdString(), each.statuses);
        if (QByteArray(each.state) == "popups") {
            EXPECT_EQ(stored("tblReminders", "NextDate"), "15 15 15");
        }
        EXPECT_EQ(left(), QStringList());
        EXPECT_EQ(drafts(), 0);
    }
}

TEST_F(Ending, WhatIsTypedIsKeptAsSoonAsTheSessionAsks) {
    start("asked");
    end(SIGKILL);
    EXPECT_EQ(drafts(), 1);
}

TEST_F(Ending, OfAKilledProgramTheNextOneClearsTheFolders) {
    start("attachment");
    const QString copy = said.section(' ', 1);
    ASSERT_TRUE(QFile::exists(copy));
    const QByteArray before = qgetenv("TMPDIR");
    qputenv("TMPDIR", QFileInfo(copy).dir().path().section('/', 0, -3).toUtf8());
    richtext::removeLeftCopies();
    EXPECT_TRUE(QFile::exists(copy)) << "its program lives";
    end(SIGKILL);
    EXPECT_TRUE(QFile::exists(copy));
    EXPECT_EQ(drafts(), 1);
    richtext::removeLeftCopies();
    qputenv("TMPDIR", before);
    EXPECT_EQ(left(), QStringList());
}

} // namespace

bool isEndingChild() {
    return qEnvironmentVariableIsSet(kState);
}

int runEndingChild() {
    return EndingDesk().run();
}

} // namespace yrw::test
