#include "tests/support/NotesFixture.h"

#include <cstdio>

namespace {

/// Opens a notes database as a program of its own.
int openAsChild(const QString& file) {
    yrw::FileSystem files;
    yrw::HostDataHelper helper;
    try {
        const auto workspace = yrw::dao::createWorkspace({yrw::Clock::instance(), files});
        return openNotesDatabase(helper, workspace, file)->SchemaVersion();
    } catch (const yrw::AutomationError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return -1;
    }
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == u"--open") {
        return openAsChild(arguments[2]);
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
