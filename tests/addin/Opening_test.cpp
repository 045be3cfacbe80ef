// Opening the notes database, and making one.
#include "framework/Settings.h"
#include "platform/prompt/ErrorLog.h"
#include "tests/addin/AddInFixture.h"

#include <ostream>

using namespace yrw;
using namespace yrw::test;

namespace {

const QString kQuestion = QStringLiteral(
    "New Notes Database: There is not a Notes database in the current database directory.\r\r"
    "Would you like to create a new Notes database now?");

class Opening : public AddInFixture {};

TEST_F(Opening, AProgramIdMayComeLate) {
    makeNotesDatabase();
    world.host->trouble.set(HostAnswer::ProgID, Giving::Missing);
    create();
    world.host->trouble.set(HostAnswer::ProgID, Giving::Given);
    EXPECT_TRUE(addIn->Activate());
    EXPECT_EQ(Module1::instance().hostProgID(), kFakeHostProgID);
}

TEST_F(Opening, RefusingToMakeADatabaseLeavesEverythingAsItWas) {
    create();
    prompt.answer(PromptAnswer::No);
    EXPECT_FALSE(addIn->Activate());
    EXPECT_EQ(prompt.asked, QStringList{kQuestion});
    EXPECT_EQ(prompt.lastIcon, PromptIcon::Question);
    EXPECT_FALSE(QFile::exists(world.notesPath()));
    EXPECT_EQ(showNotesTool(), nullptr);
    EXPECT_EQ(addIn->UpperTimerForm(), nullptr);
    EXPECT_EQ(prompt.pointer, MousePointer::Default);
    EXPECT_EQ(window().status, QString());
}

TEST_F(Opening, WhatAColleagueMakesMeanwhileIsOpenedAndLeftAsItIs) {
    create();
    prompt.answer(PromptAnswer::Yes);
    const Ref<dao::Workspace> colleague = dao::createWorkspace({clock, files});
    prompt.whileOpen = [&] {
        makeNotesDatabase();
        colleague->OpenDatabase(world.notesPath())
            ->RunScript(QStringLiteral("INSERT INTO tblNotes (RecordID, Subject, Status) VALUES "
                                       "(71, 'The colleague''s', 1);"));
    };
    EXPECT_TRUE(addIn->Activate());
    EXPECT_EQ(Module1::instance()
                  .application()
                  .Notes()
                  ->Item(QVariant(71))
                  ->value(QStringLiteral("Subject")),
              QStringLiteral("The colleague's"));
    EXPECT_EQ(QDir(world.folder()).entryList({QStringLiteral("Notes.mdb*")}, QDir::Files),
              (QStringList{QStringLiteral("Notes.mdb"), QStringLiteral("Notes.mdb-shm"),
                           QStringLiteral("Notes.mdb-wal")}));
    colleague->Close();
}

struct Broken {
    const char* name;
    bool answersYes;     ///< to the question that comes when the file is missing
    const char* content; ///< of Notes.mdb; nullptr: missing
    const char* inReason;
};

void PrintTo(const Broken& broken, std::ostream* out) {
    *out << broken.name;
}

class BrokenOpening : public Opening, public testing::WithParamInterface<Broken> {};

TEST_P(BrokenOpening, ReportsOnceNamingTheFileAndLeavesTheHostUsable) {
    const Broken& broken = GetParam();
    if (broken.content != nullptr) {
        QFile file(world.notesPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(broken.content).repeated(400));
    } else {
        Module1::instance().setTemplateFolder(QStringLiteral("/nowhere/DB/YRWNOTES"));
        prompt.answer(PromptAnswer::Yes);
    }
    create();
    prompt.expectReport();
    EXPECT_FALSE(addIn->Activate());
    ASSERT_EQ(prompt.reports.size(), 1);
    EXPECT_EQ(prompt.reports[0].source, QStringLiteral("YRWNOTES.AddIn.OpenDatabase"));
    EXPECT_EQ(prompt.reports[0].message, QStringLiteral("Could Not Notes Open Database"));
    EXPECT_EQ(prompt.reports[0].title, QStringLiteral("Database Problem"));
    EXPECT_TRUE(prompt.reports[0].description.contains(QLatin1String(broken.inReason)))
        << prompt.reports[0].description.toStdString();
    EXPECT_EQ(prompt.pointer, MousePointer::Default);

    window().showRecords();
    window().grab(); // paints; no mark, no error
    clickGridNotes();
    EXPECT_FALSE(gridBand().findTool(kNotesToolKey)->isEnabled());
    addIn->ShowNotes(nullptr, 0);

    // A good database in its place: everything works, the tool again too.
    Module1::instance().setTemplateFolder(shippedTemplateFolder());
    QFile::remove(world.notesPath());
    makeNotesDatabase();
    EXPECT_TRUE(addIn->Activate());
    EXPECT_TRUE(gridBand().findTool(kNotesToolKey)->isEnabled());
}

INSTANTIATE_TEST_SUITE_P(
    Files, BrokenOpening,
    testing::Values(Broken{"MissingTemplate", true, nullptr, "/nowhere/DB/YRWNOTES/Notes.mdb"},
                    Broken{"NoDatabase", false, "no database at all ", "Notes.mdb"}),
    [](const auto& broken) { return broken.param.name; });

TEST_F(Opening, WithoutAComponentItReportsAndStaysClosed) {
    addIn = make<AddIn>();
    prompt.expectReport();
    EXPECT_FALSE(addIn->Activate());
}

TEST_F(Opening, ADatabaseDeletedMeanwhileIsNotWorkedOnAnyLonger) {
    activate();
    ASSERT_TRUE(QFile::remove(world.notesPath()));
    prompt.answer(PromptAnswer::No);
    EXPECT_FALSE(addIn->Activate());
    EXPECT_FALSE(Module1::instance().isDatabaseOpen());
    EXPECT_EQ(showNotesTool(), nullptr);
    EXPECT_EQ(addIn->UpperTimerForm(), nullptr);
}

TEST_F(Opening, SettingsThatCannotBeWrittenAreToldOfOnce) {
    activate();
    QFile inTheWay(qEnvironmentVariable("XDG_CONFIG_HOME")); // where the folder should be
    QDir(inTheWay.fileName()).removeRecursively();
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    prompt.expectMessage();
    whenShown(QStringLiteral("frmMain"), [&](Form& form) { form.unload(); }); // keeps its size
    addIn->ShowNotes(nullptr, 0);
    NotesSettings(Module1::instance().services().settings).set(setting::kShowUserNotes, true);
    settle();
    ASSERT_EQ(prompt.asked.size(), 1);
    EXPECT_TRUE(prompt.asked[0].contains(inTheWay.fileName())) << prompt.asked[0].toStdString();
    QFile log(errorLogFile());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_EQ(log.readAll().count("Yarrowen.ini"), 1);
}

TEST_F(Opening, AnUnreadableSettingsFileCostsOneWarningAndDefaults) {
    // A folder in the file's place.
    QDir().mkpath(qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/Yarrowen.ini"));
    prompt.expectMessage();
    create();
    for (const NotesSwitch which :
         {NotesSwitch::CheckAutoNotes, NotesSwitch::CheckForReminders, NotesSwitch::FlagNotesRow,
          NotesSwitch::HighlightNotesRow, NotesSwitch::ShowPopupWindow}) {
        EXPECT_TRUE(Module1::instance().switchOn(which));
    }
}

} // namespace
