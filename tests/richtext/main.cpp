#include "tests/richtext/DragPeer.h"
#include "tests/richtext/HostileNotes.h"

#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
    // The build lists the tests by running this program, on machines without a display too.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    if (yrw::test::isDragPeer()) {
        return yrw::test::runDragPeer();
    }
    if (yrw::test::isHostileChild()) {
        return yrw::test::runHostileChild();
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
