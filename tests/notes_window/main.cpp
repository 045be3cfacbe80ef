#include "tests/driving/DrivenApplication.h"
#include "tests/notes_window/Crash.h"
#include "tests/support/OtherUser.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (const int other = yrw::test::runOtherUser(argc, argv); other >= 0) {
        return other;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    yrw::test::DrivenApplication application(argc, argv);
    if (yrw::test::isCrashingChild()) {
        return yrw::test::crash();
    }
    const QTemporaryDir state;
    qputenv("XDG_STATE_HOME", state.path().toUtf8());
    testing::InitGoogleTest(&argc, argv);
    return application.runTests();
}
