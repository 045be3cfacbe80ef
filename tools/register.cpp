// yrwregister [--unregister] LIBRARY: enters a component into the current user's class registry,
// or takes it out, by calling its own entry point.

#include "platform/component/AutomationError.h"
#include "platform/component/ClassFactory.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QLibrary>
#include <QTextStream>

namespace {

constexpr int kDone = 0;
constexpr int kWrongUse = 2;
constexpr int kFailed = 3;

int complain(const QString& text) {
    QTextStream(stderr) << "yrwregister: " << text << Qt::endl;
    return kFailed;
}

int callEntryPoint(const QString& file, const char* name) {
    QLibrary library(QFileInfo(file).absoluteFilePath());
    // Code of the window toolkit in a library must never be unloaded.
    library.setLoadHints(QLibrary::PreventUnloadHint);
    if (!library.load()) {
        return complain(
            QStringLiteral("%1 could not be loaded: %2").arg(file, library.errorString()));
    }
    const auto entry = reinterpret_cast<yrw::RegisterServerFunction>(library.resolve(name));
    if (entry == nullptr) {
        return complain(QStringLiteral("%1 is not a component.").arg(file));
    }
    if (entry() != yrw::kComponentOk) {
        return complain(QStringLiteral("%1 could not change the class registry.").arg(file));
    }
    return kDone;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption unregister(QStringLiteral("unregister"),
                                        QStringLiteral("Take the component out of the registry."));
    parser.addOption(unregister);
    parser.addPositionalArgument(QStringLiteral("LIBRARY"),
                                 QStringLiteral("The component's file."));
    parser.process(application);
    const QStringList files = parser.positionalArguments();
    if (files.size() != 1) {
        complain(QStringLiteral("which library? Usage: yrwregister [--unregister] LIBRARY"));
        return kWrongUse;
    }
    try {
        return callEntryPoint(files.first(), parser.isSet(unregister) ? "DllUnregisterServer"
                                                                      : "DllRegisterServer");
    } catch (...) {
        return complain(yrw::currentError().description());
    }
}
