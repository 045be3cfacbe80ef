#include "platform/rtf/Reader.h"
#include "tests/cli/CommandFixture.h"
#include "tests/support/ZoneClock.h"

#include <algorithm>

#include <QLocale>
#include <QScopeGuard>

namespace yrw::test {
namespace {

using CommandsTest = CommandFixture;

TEST_F(CommandsTest, WrongUseIsOneLineAndStatusTwo) {
    const char* const cases[] = {"",
                                 "frobnicate",
                                 "list --nonsense",
                                 "list extra",
                                 "list --status perhaps",
                                 "list --owner cu",
                                 "list --owner cu:x",
                                 "list --owner cu:1 --system",
                                 "list --from yesterday",
                                 "list --sort size",
                                 "show",
                                 "show abc",
                                 "show -- -1",
                                 "show 1 --text --rtf",
                                 "add",
                                 "add --subject a --remind me",
                                 "add --subject a --at 2026-03-11",
                                 "add --subject a --remind nobody --at 2026-03-11",
                                 "add --subject a --remind users: --at 2026-03-11",
                                 "add --subject a --remind users:,, --at 2026-03-11",
                                 "list --to 10000-01-01",
                                 "list --to 2026-03-10T25:00",
                                 "add --subject a --text b --rtf c",
                                 "reminders --note x",
                                 "reminders --due --note 1",
                                 "export",
                                 "export --format pdf"};
    for (const char* const words : cases) {
        const Outcome outcome = run(QString::fromUtf8(words).split(u' ', Qt::SkipEmptyParts));
        EXPECT_EQ(outcome.status, kExitUsage) << words;
        EXPECT_EQ(outcome.err.count(u'\n'), 1) << words;
        EXPECT_TRUE(outcome.out.isEmpty()) << words;
    }
    EXPECT_EQ(runBare({QStringLiteral("list")}).status, kExitUsage);
    EXPECT_EQ(run({QStringLiteral("add"), QStringLiteral("--subject"), QString(256, u'x')}).status,
              kExitUsage);
}

TEST_F(CommandsTest, HelpAndVersionNeedNoData) {
    const Outcome help = runBare({QStringLiteral("add"), QStringLiteral("--help")});
    EXPECT_EQ(help.status, kExitDone);
    EXPECT_TRUE(help.out.contains(QStringLiteral("--remind")));
    EXPECT_EQ(runBare({QStringLiteral("--version")}).status, kExitDone);
}

TEST_F(CommandsTest, ListSortsTextsInTheUsersLanguage) {
    const auto restore = qScopeGuard([] { QLocale::setDefault(QLocale::c()); });
    const char* const notes[] = {"Zeta|BEN|2026-03-01", "Äpfel|ANNA|2026-03-03",
                                 "birnen|BEN|2026-02-09"};
    for (const char* const note : notes) {
        const QStringList parts = QString::fromUtf8(note).split(u'|');
        run(QStringList{"--user", parts[1], "add", "--subject", parts[0], "--date", parts[2]});
    }
    const struct {
        const char* locale;
        const char* sort;
        const char* ids;
    } cases[] = {{"de_DE", "subject", "231"},
                 {"sv_SE", "subject", "312"},
                 {"de_DE", "date", "312"},
                 {"de_DE", "author", "213"},
                 {"de_DE", "id", "123"}};
    for (const auto& each : cases) {
        QLocale::setDefault(QLocale(each.locale));
        const QStringList words{"list", "--sort", each.sort};
        EXPECT_EQ(run(words + QStringList("--json")).column("RecordID").join(""), each.ids);
        QString ids;
        for (const QString& line : run(words).out.split(u'\n', Qt::SkipEmptyParts)) {
            ids += line.trimmed().left(1);
        }
        EXPECT_EQ(ids, each.ids) << each.sort;
    }
}

TEST_F(CommandsTest, AddsANoteThatListAndShowGiveBack) {
    const QString text = QString::fromUtf8("Quotes \" ' and\nünïcödé \xF0\x9F\x97\x92");
    const Outcome added =
        run({"--user", "BEN", "add", "--subject", "Call \"Quill\"", "--text", text, "--owner",
             "cu:2", "--private", "--auto-show", "--remind", "me", "--at", "2026-03-11"});
    EXPECT_EQ(added.status, kExitDone) << qPrintable(added.err);
    EXPECT_EQ(added.out, QStringLiteral("1\n"));

    EXPECT_EQ(run("show 1 --text").out, text + u'\n');
    EXPECT_TRUE(run("show 1 --rtf").out.startsWith(QStringLiteral("{\\rtf1")));
    const QJsonObject note = QJsonDocument::fromJson(run("show 1 --json").out.toUtf8()).object();
    const QString plain = note.value(QStringLiteral("PlainNote")).toString();
    EXPECT_EQ(QString(plain).remove(u'\r'), text);
    const QJsonObject row = run("list --json").json().first().toObject();
    const struct {
        const char* field;
        QJsonValue value;
    } expected[] = {{"RecordID", 1},
                    {"Subject", QStringLiteral("Call \"Quill\"")},
                    {"Date", QStringLiteral("2026-03-10 09:00:00")},
                    {"Status", 1},
                    {"NoteType", 2},
                    {"AutomaticallyShow", true},
                    {"OwnerComponentProgID", QStringLiteral("YRWDesk.Application")},
                    {"OwnerProgID", QStringLiteral("YRWDesk.Customers")},
                    {"OwnerObjectKey", QStringLiteral("cu")},
                    {"OwnerRecordID", 2},
                    {"RecordUserID", 2},
                    {"RecordUserCode", QStringLiteral("BEN")},
                    {"ReminderType", 2},
                    {"ReminderDate", QStringLiteral("2026-03-11 00:00:00")}};
    for (const auto& e : expected) {
        EXPECT_EQ(row.value(QLatin1String(e.field)), e.value) << e.field;
    }
    run("add --subject plain");
    EXPECT_TRUE(run("list --json").json().last()["ReminderDate"].isNull());
}

TEST_F(CommandsTest, AddReadsRichTextFromStandardInput) {
    const Outcome added = run({QStringLiteral("add"), QStringLiteral("--subject"),
                               QStringLiteral("s"), QStringLiteral("--rtf"), QStringLiteral("-")},
                              "{\\rtf1 plain \\b bold\\b0\\par}");
    EXPECT_EQ(added.status, kExitDone) << qPrintable(added.err);
    EXPECT_EQ(run("show 1 --text").out.trimmed(), QStringLiteral("plain bold"));
    EXPECT_TRUE(run("show 1 --rtf").out.contains(QStringLiteral("\\b bold")));
}

TEST_F(CommandsTest, ListFilters) {
    run("add --subject one --owner cu:1 --date 2026-01-01");
    run("--user BEN add --subject two --owner cu:1 --text findme --date 2026-02-01");
    run("add --subject three --owner or:1");
    run("add --subject four");
    run("done 2");
    const struct {
        const char* words;
        const char* ids;
    } cases[] = {
        {"list", "1,2,3,4"},
        {"list --status all", "1,2,3,4"},
        {"list --status active", "1,3,4"},
        {"list --status done", "2"},
        {"list --owner cu:1", "1,2"},
        {"list --owner CU:1 --status active", "1"},
        {"list --system", "4"},
        {"--user BEN list --mine", "2"},
        {"list --find FINDME", "2"},
        {"list --find \"", ""},
        {"list --from 2026-02-01", "2,3,4"},
        {"list --to 2026-02-01", "1,2"},
        {"list --from 2026-01-02 --to 2026-03-10", "2,3,4"},
        {"list --to 9999-12-31", "1,2,3,4"},
        {"list --from 2026-03-10T09:00:00 --to 2026-03-10T09:00:00", "3,4"},
        {"list --to 2026-03-10T08:59", "1,2"},
    };
    for (const auto& c : cases) {
        QStringList words = QString::fromUtf8(c.words).split(u' ');
        words += QStringLiteral("--json");
        EXPECT_EQ(run(words).column(QStringLiteral("RecordID")).join(u','), QLatin1String(c.ids))
            << c.words;
    }
    EXPECT_EQ(run("list --find nowhere").status, kExitNothing);
    EXPECT_EQ(run("list --owner cu:3").status, kExitDone);
}

TEST_F(CommandsTest, RemindsWhomItIsTold) {
    const struct {
        const char* who;
        int kind;
        const char* userIDs;
    } cases[] = {{"me", 2, "2"},
                 {"group", 4, "1,2"},
                 {"everyone", 1, "1,2,3,4,5"},
                 {"users:cara,ANNA,CARA", 3, "1,3"}};
    qint64 id = 0;
    for (const auto& c : cases) {
        const Outcome added =
            run(QString("--user BEN add --subject s --at 2026-03-10T09:30 --remind %1")
                    .arg(c.who)
                    .split(u' '));
        EXPECT_EQ(added.out, QStringLiteral("%1\n").arg(++id)) << qPrintable(added.err);
        QStringList users =
            run({"reminders", "--note", QString::number(id), "--json"}).column("UserID");
        users.sort();
        EXPECT_EQ(users.join(u','), QLatin1String(c.userIDs)) << c.who;
        EXPECT_EQ(run("list --json").json().last()[QStringLiteral("ReminderType")], c.kind);
    }
    EXPECT_TRUE(run("reminders --due --json").json().isEmpty());
    clock.advance(30 * 60);
    EXPECT_EQ(run("--user CARA reminders --due --json").column(QStringLiteral("NoteID")),
              (QStringList{QStringLiteral("3"), QStringLiteral("4")}));
}

TEST_F(CommandsTest, FinishesReopensAndDeletes) {
    run("add --subject a --remind me --at 2026-03-11");
    const struct {
        const char* words;
        ExitStatus status;
    } steps[] = {
        {"reopen 1", kExitNothing}, {"done 1", kExitDone},    {"done 1", kExitNothing},
        {"reopen 1", kExitDone},    {"delete 1", kExitDone},  {"delete 1", kExitNothing},
        {"done 1", kExitNothing},   {"show 1", kExitNothing}, {"reminders --note 1", kExitNothing},
    };
    for (const auto& step : steps) {
        EXPECT_EQ(run(step.words).status, step.status) << step.words;
    }
    EXPECT_TRUE(run("reminders --json").json().isEmpty());
}

TEST_F(CommandsTest, AnErrorNamesWhatItIsAboutAndNothingIsDoneByHalves) {
    QTemporaryDir elsewhere;
    const QString file = elsewhere.filePath(QStringLiteral("no.rtf"));
    const QString add = "add --subject a ";
    const struct {
        QString words;
        QString begins;
        ExitStatus status = kExitNothing;
    } cases[] = {
        {"show 9999", "Note 9999 was not found."},
        {"done 9999", "Note 9999 was not found."},
        {"delete 9999", "Note 9999 was not found."},
        {"reminders --note 9999", "Note 9999 was not found."},
        {add + "--rtf " + file, file, kExitFailed},
        {"--user A\x1b[2J list", "There is no user 'A [2J'."},
        {"--user NOBODY " + add.trimmed(), "There is no user 'NOBODY'."},
        {add + "--owner cu:99", {}},
        {add + "--owner zz:1", {}},
        {add + "--remind users:ANNA,NOBODY --at 2026-03-11", {}},
    };
    for (const auto& c : cases) {
        const Outcome outcome = run(c.words.split(u' '));
        EXPECT_EQ(outcome.status, c.status) << qPrintable(c.words);
        EXPECT_EQ(outcome.err.count(u'\n'), 1) << qPrintable(c.words);
        EXPECT_TRUE(outcome.err.startsWith(u"yrwnotes: " + c.begins)) << qPrintable(outcome.err);
    }
    EXPECT_TRUE(run("list --json").json().isEmpty());
}

TEST_F(CommandsTest, ATimeThatTheClocksLeaveOutIsTakenAsTheOneAfterIt) {
    const InZone zone("Europe/Vienna");
    const Outcome added = run({"add", "--subject", "s", "--date", "2026-03-29 02:30", "--remind",
                               "me", "--at", "2026-03-29 02:40"});
    EXPECT_EQ(added.status, kExitDone) << qPrintable(added.err);
    EXPECT_EQ(run("list --json").column("Date"), QStringList("2026-03-29 03:30:00"));
    EXPECT_EQ(run("reminders --json").column("NextDate"), QStringList("2026-03-29 03:40:00"));
    EXPECT_EQ(run("list --json --from 2026-03-29T02:10 --to 2026-03-29T03:30").json().size(), 1);
    EXPECT_EQ(run("list --json --to 2026-03-29T02:59").json().size(), 0);
}

TEST_F(CommandsTest, ControlCharactersOfANoteAreNoCommandsToATerminal) {
    const QString hostile = QString::fromUtf8("a\x1b[2J\x7f\xc2\x9b"
                                              "31m\r\n\tb");
    run({"add", "--subject", hostile, "--text", hostile, "--remind", "me", "--at", "2026-03-11"});
    change("UPDATE tblNotes SET RTFNote = '{\\rtf1 ' || char(27) || '[2J}'");
    const struct {
        const char* words;
        int lines;
    } texts[] = {{"list", 1}, {"show 1", 8}, {"show 1 --text", 2}, {"reminders", 1}};
    const QString controls = QString::fromUtf8("\x1b\x7f\xc2\x9b\r");
    const auto hasControl = [&](const QString& out) {
        return std::any_of(controls.begin(), controls.end(),
                           [&](QChar c) { return out.contains(c); });
    };
    for (const auto& text : texts) {
        const QString out = run(text.words).out;
        EXPECT_FALSE(hasControl(out)) << text.words;
        EXPECT_EQ(out.count(u'\n'), text.lines) << text.words;
    }
    // For programs they stay, escaped or as they are; a terminal gets neither.
    const Outcome json = run("show 1 --json");
    EXPECT_FALSE(hasControl(json.out));
    EXPECT_EQ(QJsonDocument::fromJson(json.out.toUtf8())["Subject"], hostile);
    EXPECT_TRUE(run("show 1 --rtf").out.contains(u'\x1b'));
    const QStringList rtf{"--data", folder.path(), "show", "1", "--rtf"};
    EXPECT_FALSE(hasControl(runBare(rtf, {}, true).out));
}

TEST_F(CommandsTest, AddedTextIsInTheUsersFont) {
    settings.save("Yarrowen", "YRWNotes Settings", "DefaultFontName", "DejaVu Serif");
    settings.save("Yarrowen", "YRWNotes Settings", "DefaultFontSize", "13");
    settings.save("Yarrowen", "YRWNotes Settings", "DefaultFontItalic", "True");
    settings.save("Yarrowen", "YRWNotes Settings", "DefaultFontColour", "255");
    run({"add", "--subject", "s", "--text", "one\ntwo"});
    const rtf::Document body = rtf::read(QStringView(run("show 1 --rtf").out));
    ASSERT_EQ(body.runs.size(), 2U);
    for (const rtf::Run& part : body.runs) {
        const rtf::CharFormat& format = body.charFormats.at(size_t(part.format));
        EXPECT_EQ(body.fonts.at(size_t(format.font)).name, "DejaVu Serif");
        EXPECT_EQ(format.halfPoints, 26);
        EXPECT_TRUE(format.italic);
        EXPECT_FALSE(format.bold);
        EXPECT_EQ(format.colour, 0xFF0000);
    }
}

/// A folder whose host is another one: its database is not there.
class ForeignFolderTest : public CommandFixture {
protected:
    ForeignFolderTest() {
        run("add --subject a --owner cu:2 --remind me --at 2026-03-09");
        QFile::remove(folder.filePath("Desk.mdb"));
        change(
            "UPDATE tblNotes SET OwnerComponentProgID = 'Other.Application', RecordUserID = 71,"
            " RecordUserCode = 'ZOE'; UPDATE tblReminders SET UserID = 71;"
            "DELETE FROM tblUserNames;"
            "INSERT INTO tblUserNames VALUES (71, 'ZOE', 'Zoe Zelkova'), (80, 'PAT', 'Pat Pine')");
    }
};

TEST_F(ForeignFolderTest, HasTheUsersThatTheNotesKnowAndNoOthers) {
    const struct {
        const char* words;
        ExitStatus status;
        const char* says; ///< in what is printed
    } steps[] = {
        {"list", kExitDone, "ZOE"},
        {"reminders", kExitDone, "ZOE"},
        {"--user ANNA list", kExitNothing, "The users are PAT, ZOE."},
        {"--user zoe reminders --due", kExitDone, "ZOE"},
        {"reminders --due --json", kExitDone, "[\n]"},
        {"--user zoe list --mine", kExitDone, "ZOE"},
        {"add --subject b --owner cu:7", kExitFailed,
         "A note on a record needs the host's database"},
        {"add --subject b --remind group --at 2026-03-11", kExitFailed, "A group needs the host's"},
        {"add --subject b --remind users:ANNA --at 2026-03-11", kExitNothing, "no user 'ANNA'"},
        {"--user ZOE add --subject b --remind everyone --at 2026-03-11", kExitDone, "2"},
        {"done 1", kExitDone, ""},
        {"export --format ics", kExitDone, "CONTACT:Zoe Zelkova"},
    };
    for (const auto& step : steps) {
        const Outcome outcome = run(step.words);
        EXPECT_EQ(outcome.status, step.status) << step.words;
        const QString said = outcome.out + outcome.err;
        EXPECT_TRUE(said.contains(QLatin1String(step.says)))
            << step.words << ": " << qPrintable(said);
    }
    QStringList ids = run("reminders --note 2 --json").column("UserID");
    ids.sort();
    EXPECT_EQ(ids, (QStringList{"71", "80"}));
    EXPECT_EQ(run("list --json").column("RecordUserID"), (QStringList{"71", "71"}));
    EXPECT_FALSE(QFile::exists(folder.filePath("Desk.mdb")));
}

TEST_F(ForeignFolderTest, RefusesWhatItCannotKnow) {
    change("INSERT INTO tblNotes (OwnerComponentProgID, OwnerObjectKey) VALUES ('Third.App', 'x')");
    EXPECT_EQ(run("reminders --due").status, kExitFailed) << "whose reminders?";
    change("DELETE FROM tblUserNames");
    for (const char* words : {"add --subject b", "done 1", "list --mine", "reminders --due"}) {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.status, kExitFailed) << words;
        EXPECT_TRUE(outcome.err.contains("knows no users yet")) << qPrintable(outcome.err);
    }
    EXPECT_EQ(run("list").status, kExitDone);
    EXPECT_EQ(run("show 1").status, kExitDone);
}

} // namespace
} // namespace yrw::test
