// yrwnotes import: where old notes go, and what is said.
#include "tests/cli/CommandFixture.h"
#include "tests/support/OldDatabase.h"

namespace yrw::test {
namespace {

class ImportCommand : public CommandFixture {
protected:
    ImportCommand() {
        OldDatabase().write(oldFile);
        QFile::remove(notesPath());
    }
    Outcome import(const QString& options = {}) {
        return run(QStringList{QStringLiteral("import"), oldFile} +
                   options.split(u' ', Qt::SkipEmptyParts));
    }
    [[nodiscard]] QStringList notes() {
        return run("list --json").column(QStringLiteral("Subject"));
    }

    QString oldFile = folder.filePath(QStringLiteral("old.mdb"));
};

TEST_F(ImportCommand, PutsOldNotesWhereTheyAreWanted) {
    const Outcome dry = import(QStringLiteral("--dry-run"));
    EXPECT_EQ(dry.status, kExitDone);
    EXPECT_TRUE(dry.out.contains(u"tblNotes: 12 row(s) read, 12 written"));
    EXPECT_FALSE(QFile::exists(notesPath()));
    EXPECT_EQ(import().status, kExitDone);
    EXPECT_EQ(notes().size(), 12);
    // What is there is never replaced.
    const Outcome again = import();
    EXPECT_EQ(again.status, kExitFailed);
    EXPECT_TRUE(again.err.contains(u"--merge"));
    const Outcome merged = import(QStringLiteral("--merge"));
    EXPECT_EQ(merged.status, kExitDone) << qPrintable(merged.out);
    EXPECT_EQ(notes().size(), 12);
}

TEST_F(ImportCommand, TellsWhatDidNotArrive) {
    createNotesDatabase(files, shippedTemplateFolder(), folder.path());
    const QString report = folder.filePath(QStringLiteral("report.txt"));
    const Outcome merged = import(QStringLiteral("--merge --map-user TOM=ANNA --report ") + report);
    EXPECT_EQ(merged.status, kExitNothing);
    EXPECT_TRUE(merged.err.contains(oldFile)) << qPrintable(merged.err);
    EXPECT_EQ(merged.out, QString());
    QFile file(report);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("tblReminders 7: left out: its note 5 is not in the file"));
    EXPECT_FALSE(run("list --json")
                     .column(QStringLiteral("RecordUserCode"))
                     .contains(QStringLiteral("TOM")));
}

TEST_F(ImportCommand, ANewFileTakesThePlaceOfTheOldOne) {
    OldDatabase().write(notesPath());
    const Outcome converted = runBare({QStringLiteral("import"), notesPath()});
    EXPECT_EQ(converted.status, kExitDone) << qPrintable(converted.err);
    EXPECT_EQ(notes().size(), 12);
    QFile kept(folder.filePath(QStringLiteral("Notes (old format).mdb")));
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), OldDatabase().bytes());
}

TEST_F(ImportCommand, SaysInOneLineWhatIsWrong) {
    const struct {
        const char* options;
        ExitStatus status;
        const char* said;
    } cases[] = {{"--map-key cu", kExitUsage, "--map-key takes OLD=NEW"},
                 {"--map-user =A", kExitUsage, "--map-user takes OLD=NEW"},
                 {"--code-page latin", kExitUsage, "--code-page takes a number"},
                 {"--merge", kExitFailed, "There is no notes database"},
                 {"--data /nowhere", kExitFailed, "There is no folder"},
                 {"--report /nowhere/r", kExitFailed, "/nowhere/r"}};
    for (const auto& [options, status, said] : cases) {
        const Outcome outcome = import(QString::fromLatin1(options));
        EXPECT_EQ(outcome.status, status) << options;
        EXPECT_TRUE(outcome.err.contains(QLatin1String(said))) << qPrintable(outcome.err);
        EXPECT_EQ(outcome.err.count(u'\n'), 1) << options;
    }
    oldFile = folder.filePath(QStringLiteral("none.mdb"));
    EXPECT_TRUE(import().err.contains(u"is not there"));
}

} // namespace
} // namespace yrw::test
