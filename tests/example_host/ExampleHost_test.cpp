// The component in a host that has nothing but the contract's headers.
#include "examples/host/ExampleHost.h"
#include "examples/host/PlainToolbar.h"
#include "platform/clock/Clock.h"
#include "platform/files/FileSystem.h"
#include "tests/support/PromptScript.h"

#include <QApplication>
#include <QFile>
#include <QLibrary>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace yrw;

namespace {

class ExampleHostTest : public testing::Test {
protected:
    ExampleHostTest() {
        for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
            qputenv(name, QFile::encodeName(folder.filePath(QLatin1String(name))));
        }
        QLibrary component(QStringLiteral(YRW_COMPONENT_FILE));
        component.setLoadHints(QLibrary::PreventUnloadHint);
        const auto enter =
            reinterpret_cast<RegisterServerFunction>(component.resolve("DllRegisterServer"));
        EXPECT_TRUE(enter != nullptr && enter() == kComponentOk);
    }
    [[nodiscard]] QPushButton* notesButton() const {
        return toolbar->findChild<QPushButton*>(QStringLiteral("tooAddinNotes"));
    }

    QTemporaryDir folder;
    FileSystem files;
    PromptScript prompt;
    example::PlainToolbar* toolbar = new example::PlainToolbar;
    Ref<example::Application> application =
        make<example::Application>(dao::EngineServices{Clock::instance(), files}, folder.path());
    example::HostWindow window{application, *toolbar};
};

TEST_F(ExampleHostTest, LoadsTheAddInShowsNotesAndLetsGo) {
    toolbar->setParent(&window);
    window.show();
    for (int round = 0; round < 2; ++round) {
        if (round == 0) {
            prompt.answer(PromptAnswer::Yes); // to making the notes database
        }
        ASSERT_TRUE(window.loadAddIn());
        ASSERT_NE(notesButton(), nullptr);
        QString caption;
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
            if (QWidget* const open = QApplication::activeModalWidget()) {
                caption = open->windowTitle();
                QTest::keyClick(open, Qt::Key_Escape);
            }
        });
        watch.start(5);
        QTest::mouseClick(notesButton(), Qt::LeftButton);
        EXPECT_TRUE(caption.startsWith(QStringLiteral("YRW"))) << caption.toStdString();
        window.unloadAddIn();
        EXPECT_EQ(notesButton(), nullptr);
    }
    EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("Notes.mdb"))));
}

} // namespace
