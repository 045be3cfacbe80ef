#include "tests/driving/DrivenApplication.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    yrw::test::DrivenApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return application.runTests();
}
