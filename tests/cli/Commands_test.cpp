#include "tests/cli/CommandFixture.h"

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
    const Outcome added = run(
        {QStringLiteral("--user"), QStringLiteral("BEN"), QStringLiteral("add"),
         QStringLiteral("--subject"), QStringLiteral("Call \"Quill\""), QStringLiteral("--text"),
         text, QStringLiteral("--owner"), QStringLiteral("cu:2"), QStringLiteral("--private")});
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
                    {"AutomaticallyShow", false},
                    {"OwnerComponentProgID", QStringLiteral("YRWDesk.Application")},
                    {"OwnerProgID", QStringLiteral("YRWDesk.Customers")},
                    {"OwnerObjectKey", QStringLiteral("cu")},
                    {"OwnerRecordID", 2},
                    {"RecordUserID", 2},
                    {"RecordUserCode", QStringLiteral("BEN")},
                    {"ReminderDate", QJsonValue::Null}};
    for (const auto& e : expected) {
        EXPECT_EQ(row.value(QLatin1String(e.field)), e.value) << e.field;
    }
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
            run({QStringLiteral("--user"), QStringLiteral("BEN"), QStringLiteral("add"),
                 QStringLiteral("--subject"), QStringLiteral("s"), QStringLiteral("--remind"),
                 QString::fromLatin1(c.who), QStringLiteral("--at"),
                 QStringLiteral("2026-03-10 09:30")});
        EXPECT_EQ(added.out, QStringLiteral("%1\n").arg(++id)) << qPrintable(added.err);
        QStringList users = run(QStringList{QStringLiteral("reminders"), QStringLiteral("--note"),
                                            QString::number(id), QStringLiteral("--json")})
                                .column(QStringLiteral("UserID"));
        users.sort();
        EXPECT_EQ(users.join(u','), QLatin1String(c.userIDs)) << c.who;
        EXPECT_EQ(run("list --json").json().last()[QStringLiteral("ReminderType")], c.kind);
    }
    EXPECT_TRUE(run("reminders --due --json").json().isEmpty());
    clock.advance(30 * 60);
    EXPECT_EQ(run("--user CARA reminders --due --json").column(QStringLiteral("NoteID")),
              (QStringList{QStringLiteral("3"), QStringLiteral("4")}));
}

TEST_F(CommandsTest, AnAddThatCannotBeDoneWholeIsNotDone) {
    const char* const cases[] = {"add --subject a --owner cu:99", "add --subject a --owner zz:1",
                                 "add --subject a --remind users:ANNA,NOBODY --at 2026-03-11",
                                 "--user NOBODY add --subject a"};
    for (const char* const words : cases) {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.status, kExitNothing) << words;
        EXPECT_EQ(outcome.err.count(u'\n'), 1) << words;
    }
    EXPECT_TRUE(run("list --json").json().isEmpty());
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

TEST_F(CommandsTest, AControlCharacterCannotReachTheTerminal) {
    run({QStringLiteral("add"), QStringLiteral("--subject"), QStringLiteral("a\x1b[2J\nb")});
    const QString out = run("list").out;
    EXPECT_FALSE(out.contains(u'\x1b'));
    EXPECT_EQ(out.count(u'\n'), 1);
}

TEST_F(CommandsTest, AFolderWithoutAHostDatabaseIsServedToo) {
    QFile::remove(folder.filePath(QStringLiteral("Desk.mdb")));
    EXPECT_EQ(run("add --subject a --owner cu:7").status, kExitDone);
    EXPECT_EQ(run("list --owner cu:7 --json").json().size(), 1);
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("Desk.mdb"))));
}

} // namespace
} // namespace yrw::test
