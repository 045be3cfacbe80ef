#include "cli/Command.h"

#include <QCoreApplication>
#include <QFile>

#include <csignal>

#include <unistd.h>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    // A reader that has gone shows as a failed write.
    std::signal(SIGPIPE, SIG_IGN);
    // So does a file that may not grow any more.
    std::signal(SIGXFSZ, SIG_IGN);
    QFile in;
    QFile out;
    QFile err;
    const bool isOpen = in.open(stdin, QIODevice::ReadOnly) &&
                        out.open(stdout, QIODevice::WriteOnly) &&
                        err.open(stderr, QIODevice::WriteOnly | QIODevice::Unbuffered);
    if (!isOpen) {
        return yrw::kExitFailed;
    }
    yrw::FileSystem files;
    yrw::SettingsStore settings;
    const yrw::CommandStreams streams{in, out, err, ::isatty(STDOUT_FILENO) != 0,
                                      ::isatty(STDERR_FILENO) != 0};
    const yrw::ExitStatus status = yrw::runCommand(QCoreApplication::arguments(), streams,
                                                   {{yrw::Clock::instance(), files}, settings});
    if (!out.flush() && status == yrw::kExitDone) {
        err.write("yrwnotes: The output could not be written.\n");
        return yrw::kExitFailed;
    }
    return status;
}
