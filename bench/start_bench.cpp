// What the add-in costs when a program starts: from its creation to Activate's return, with 100,000
// notes in the database, beside the reference host's own start without it.
#include "addin/AddIn.h"
#include "host/desk/DeskWindow.h"
#include "host/desk/ProgramServices.h"
#include "store/NotesDatabase.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>

using namespace yrw;

namespace {

constexpr int kNotes = 100'000;
constexpr int kRounds = 7;

double milliseconds(const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e6;
}

void addNotes(const QString& folder, FileSystem& files) {
    const auto workspace = dao::createWorkspace({Clock::instance(), files});
    const auto database = workspace->OpenDatabase(folder + QStringLiteral("/Notes.mdb"));
    database->RunScript(
        QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < "
                       "%1) INSERT INTO tblNotes (Subject, OwnerComponentProgID, OwnerObjectKey, "
                       "OwnerRecordID, RecordUserID, RecordUserCode, Date, PlainNote, RTFNote) "
                       "SELECT 'Note ' || i, 'YRWDesk.Application', 'cu', i % 1000, 1, 'ANNA', "
                       "'2026-06-01 12:00:00', printf('%.*c', 600, 'p'), printf('%.*c', 1800, "
                       "'r') FROM n")
            .arg(kNotes));
}

/// A start of the desk in milliseconds, and what the add-in then takes.
std::pair<double, double> startOnce(const Services& services, const QString& folder) {
    DeskOptions options;
    options.start.folder = folder;
    options.addInProgID.clear();
    std::unique_ptr<DeskWindow> window;
    const double host = milliseconds([&] {
        window = std::make_unique<DeskWindow>(services, options);
        window->open();
        QApplication::processEvents();
    });
    Ref<IAddIn> addIn;
    const double added = milliseconds([&] {
        addIn = make<AddIn>();
        addIn->setComponent(&window->component());
        if (!addIn->Activate()) {
            qFatal("the add-in does not start");
        }
    });
    addIn->DeActivate();
    addIn.reset();
    window->shutDown();
    return {host, added};
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
    const QApplication application(argc, argv);
    ProgramServices program;
    const QTemporaryDir folder;
    const QString shipped = QApplication::applicationDirPath() + QStringLiteral("/DB/YRWNOTES");
    createNotesDatabase(program.files, shipped, folder.path());
    Module1::instance().setTemplateFolder(shipped);
    addNotes(folder.path(), program.files);

    startOnce(program.services, folder.path()); // makes the desk's database
    double host = 1e9;
    double added = 1e9;
    for (int i = 0; i < kRounds; ++i) {
        const auto [hosts, addIns] = startOnce(program.services, folder.path());
        host = std::min(host, hosts);
        added = std::min(added, addIns);
    }
    std::printf("add-in to Activate's return, %d notes  %8.1f ms  the host's own start %8.1f ms  "
                "ratio %.3f  (<= 50 ms)\n",
                kNotes, added, host, added / host);
    return 0;
}
