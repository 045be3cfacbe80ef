#include "tests/addin/ReminderChildren.h"
#include "tests/support/OtherUser.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (const int other = yrw::test::runOtherUser(argc, argv); other >= 0) {
        return other;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    const int child = yrw::test::runReminderChild(QApplication::arguments());
    if (child >= 0) {
        return child;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
