#include "tests/driving/DrivenApplication.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// Two screens, the second one lower and to the right of the first.
constexpr const char* kScreens = R"({
    "windowFrameMargins": true, "screens": [
    {"name": "first", "x": 0, "y": 0, "width": 800, "height": 800,
     "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
    {"name": "second", "x": 800, "y": 150, "width": 1200, "height": 900,
     "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";

} // namespace

int main(int argc, char** argv) {
    const QTemporaryDir folder;
    QFile screens(folder.filePath(QStringLiteral("screens.json")));
    if (screens.open(QIODevice::WriteOnly)) {
        screens.write(kScreens);
        screens.close();
    }
    if (qgetenv("QT_QPA_PLATFORM") != "xcb") {
        qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(screens.fileName()));
    }
    yrw::test::DrivenApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return application.runTests();
}
