#include "tests/driving/DrivenApplication.h"
#include "tests/landing/Ending.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    yrw::test::DrivenApplication application(argc, argv);
    if (yrw::test::isEndingChild()) {
        return yrw::test::runEndingChild();
    }
    testing::InitGoogleTest(&argc, argv);
    return application.runTests();
}
