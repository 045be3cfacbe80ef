#include "tests/notes_window/Crash.h"

#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    if (yrw::test::isTypingChild()) {
        return yrw::test::typeUntilKilled();
    }
    const QTemporaryDir state;
    qputenv("XDG_STATE_HOME", state.path().toUtf8());
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
