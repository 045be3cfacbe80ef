#pragma once

// Another user of the same database, in a process of its own: the test program, started again.

#include "platform/clock/Clock.h"
#include "platform/dao/Database.h"

#include <QCoreApplication>
#include <QProcess>

#include <gtest/gtest.h>

#include <cstdio>

namespace yrw::test {

/// For a `main`, before it makes its application: "--elsewhere FILE SCRIPT" runs statements on a
/// database; the exit status, -1 when the arguments say no such thing.
inline int runOtherUser(int argc, char** argv) {
    if (argc != 4 || QByteArray(argv[1]) != "--elsewhere") {
        return -1;
    }
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    try {
        FileSystem files;
        const Ref<dao::Workspace> workspace = dao::createWorkspace({Clock::instance(), files});
        workspace->OpenDatabase(arguments.at(2))->RunScript(arguments.at(3));
        workspace->Close();
        return 0;
    } catch (const AutomationError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}

/// Runs statements in a process of their own; they are done when this returns. No event is handled
/// meanwhile.
inline void elsewhere(const QString& file, const QString& script) {
    QProcess other;
    other.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    other.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--elsewhere"), file, script});
    ASSERT_TRUE(other.waitForFinished(60'000));
    ASSERT_EQ(other.exitCode(), 0) << script.toStdString();
}

} // namespace yrw::test
