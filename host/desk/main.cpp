#include "host/desk/DeskWindow.h"
#include "host/desk/EndSignals.h"
#include "host/desk/ProgramServices.h"
#include "host/desk/SessionEnd.h"
#include "platform/component/UserFolders.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QLocale>
#include <QProgressDialog>
#include <QTextStream>

#include <algorithm>
#include <memory>
#include <optional>

using namespace yrw;

namespace {

enum ExitStatus { kWrongUse = 2, kFailed = 3 };

/// Below this many customers the making is over before anybody could read about it.
constexpr qint64 kWorthProgress = 5000;

int fail(ExitStatus status, const QString& text) {
    QTextStream(stderr) << "yrwhost: " << text << '\n';
    return status;
}

QString defaultDataFolder() {
    return userfolders::data() + QStringLiteral("/yarrowen-desk");
}

/// Shows how far the making of a large database is.
class MakingProgress {
public:
    void show(qint64 done, qint64 all) {
        if (all < kWorthProgress) {
            return;
        }
        if (!m_dialog) {
            m_dialog = std::make_unique<QProgressDialog>(
                QStringLiteral("Making %1 customers…").arg(QLocale(QLocale::English).toString(all)),
                QString(), 0, int(all));
            m_dialog->setWindowTitle(QStringLiteral("Yarrowen Desk"));
            m_dialog->setMinimumDuration(0);
        }
        m_dialog->setValue(int(done));
        QApplication::processEvents();
    }

private:
    std::unique_ptr<QProgressDialog> m_dialog;
};

void nameProgram() {
    QCoreApplication::setApplicationName(QStringLiteral("yrwhost"));
    QCoreApplication::setApplicationVersion(QStringLiteral("%1.%2.%3")
                                                .arg(YRW_VERSION_MAJOR)
                                                .arg(YRW_VERSION_MINOR)
                                                .arg(YRW_VERSION_REVISION));
}

/// True when the arguments only ask for a text, which needs no display.
bool asksForText(int argc, char** argv) {
    return std::any_of(argv + 1, argv + argc, [](const QByteArray& argument) {
        return argument == "-h" || argument == "--help" || argument == "--help-all" ||
               argument == "-v" || argument == "--version";
    });
}

/// The options, or what is wrong with them.
std::optional<DeskOptions> readOptions(const QCoreApplication& application, QString& problem) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("A small business program: customers, orders and their notes."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption data(QStringLiteral("data"),
                                  QStringLiteral("Folder of the database Desk.mdb."),
                                  QStringLiteral("DIR"), defaultDataFolder());
    const QCommandLineOption user(QStringLiteral("user"),
                                  QStringLiteral("Code of the user who works, e.g. ANNA."),
                                  QStringLiteral("CODE"));
    const QCommandLineOption records(
        QStringLiteral("records"),
        QStringLiteral("Customers that a new database gets (1 to %1).").arg(kMostCustomers),
        QStringLiteral("N"), QString::number(kDefaultCustomers));
    parser.addOptions({data, user, records});
    if (!parser.parse(QCoreApplication::arguments())) {
        problem = parser.errorText();
        return std::nullopt;
    }
    parser.process(application); // answers the questions for help and version

    bool isNumber = false;
    DeskOptions options;
    options.start.folder = parser.value(data);
    options.start.userCode = parser.value(user);
    options.start.customers = parser.value(records).toLongLong(&isNumber);
    if (!isNumber || options.start.customers < 1 || options.start.customers > kMostCustomers) {
        problem = QStringLiteral("--records takes a number from 1 to %1, not '%2'.")
                      .arg(kMostCustomers)
                      .arg(parser.value(records));
        return std::nullopt;
    }
    if (!parser.positionalArguments().isEmpty()) {
        problem = QStringLiteral("'%1' is not an option.").arg(parser.positionalArguments().at(0));
        return std::nullopt;
    }
    return options;
}

} // namespace

int main(int argc, char** argv) {
    nameProgram();
    QString problem;
    if (argc > 1 && asksForText(argc, argv)) {
        const QCoreApplication withoutDisplay(argc, argv);
        static_cast<void>(readOptions(withoutDisplay, problem)); // ends the program with the text
        return fail(kWrongUse, problem);
    }
    QApplication application(argc, argv);
    std::optional<DeskOptions> options = readOptions(application, problem);
    if (!options) {
        return fail(kWrongUse, problem);
    }
    ProgramServices program;
    // What lies in the user's own folder is nobody else's; who shares names a folder.
    if (options->start.folder == defaultDataFolder() &&
        !FileSystem::makePrivateFolder(options->start.folder)) {
        return fail(kFailed,
                    QStringLiteral("The folder cannot be made: %1").arg(options->start.folder));
    }

    auto progress = std::make_unique<MakingProgress>();
    options->start.progress = [&progress](qint64 done, qint64 all) { progress->show(done, all); };
    DeskWindow window(program.services, *options);
    SessionEnd ending([&window] { window.endSession(); });
    const EndSignals signals([&ending] { ending.begin(); });
    try {
        window.open();
    } catch (const AutomationError& error) {
        return fail(error.number() == kErrorRecordNotFound ? kWrongUse : kFailed,
                    error.description());
    }
    progress.reset();
    if (ending.hasEnded()) {
        return 0; // before there was an event loop to leave
    }
    // Whatever window an add-in may have left open, the desk's end is the program's.
    QObject::connect(&window, &DeskWindow::closed, &application, [] { QApplication::exit(); });
    return QApplication::exec();
}
