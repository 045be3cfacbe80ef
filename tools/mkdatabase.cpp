// Makes a database file from a creation script: mkdatabase SCRIPT.sql OUT.mdb
//
// The file appears under its name only when it is complete.

#include "platform/clock/Clock.h"
#include "platform/dao/Database.h"
#include "platform/files/FileSystem.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <filesystem>

namespace {

int complain(const QString& words) {
    std::fprintf(stderr, "mkdatabase: %s\n", qPrintable(words));
    return 1;
}

void makeDatabase(const QString& script, const QString& path) {
    yrw::FileSystem files;
    const auto workspace = yrw::dao::createWorkspace({yrw::Clock::instance(), files});
    const auto database = workspace->CreateDatabase(path);
    database->RunScript(script);
    workspace->Close();
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        complain(QStringLiteral("usage: mkdatabase SCRIPT.sql OUT.mdb"));
        return 2;
    }
    QFile script(arguments[1]);
    if (!script.open(QIODevice::ReadOnly)) {
        return complain(QStringLiteral("%1: %2").arg(arguments[1], script.errorString()));
    }
    const QString unfinished = arguments[2] + u".new";
    QFile::remove(unfinished);
    try {
        makeDatabase(QString::fromUtf8(script.readAll()), unfinished);
        // Replaces an older file in one step.
        std::filesystem::rename(unfinished.toStdString(), arguments[2].toStdString());
    } catch (const std::exception& error) {
        QFile::remove(unfinished);
        return complain(QString::fromUtf8(error.what()));
    }
    return 0;
}
