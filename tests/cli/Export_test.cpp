#include "cli/ProgressLine.h"
#include "tests/cli/CommandFixture.h"

#include <QRegularExpression>

#include <unistd.h>

namespace yrw::test {
namespace {

class ExportTest : public CommandFixture {
protected:
    ExportTest() {
        run({QStringLiteral("add"), QStringLiteral("--subject"), subject, QStringLiteral("--text"),
             text, QStringLiteral("--owner"), QStringLiteral("cu:1"), QStringLiteral("--remind"),
             QStringLiteral("users:ANNA,BEN"), QStringLiteral("--at"),
             QStringLiteral("2026-03-12 10:00")});
        run("add --subject second");
        change("UPDATE tblReminders SET Status = 4 WHERE UserID = 2");
    }

    /// Subject and text hold what each format must escape.
    const QString subject = QStringLiteral("a;b, c\\d \"e\" <script>");
    const QString text = QString(40, QChar(0x00e4)) + u'\n' + QString(60, u'x');
};

TEST_F(ExportTest, JsonHoldsEveryNoteWithItsReminders) {
    const QJsonArray notes = run("export --format json").json();
    ASSERT_EQ(notes.size(), 2);
    const QJsonObject note = notes.last().toObject();
    EXPECT_EQ(note.value(QStringLiteral("Subject")), subject);
    EXPECT_EQ(note.value(QStringLiteral("Reminders")).toArray().size(), 2);
}

TEST_F(ExportTest, CsvQuotesWhatItMust) {
    const QString csv = run("export --format csv").out;
    EXPECT_TRUE(csv.startsWith(QStringLiteral("RecordID,Subject,")));
    EXPECT_TRUE(csv.contains(QStringLiteral(",")));
    EXPECT_TRUE(csv.contains(QStringLiteral("\"a;b, c\\d \"\"e\"\" <script>\"")))
        << qPrintable(csv);
}

TEST_F(ExportTest, HtmlHasAPagePerRecordAndEscapes) {
    const QString html = run("export --format html").out;
    EXPECT_EQ(html.count(QStringLiteral("<section>")), 2);
    EXPECT_EQ(html.count(QStringLiteral("</section>")), 2);
    EXPECT_FALSE(html.contains(QStringLiteral("<script>")));
    EXPECT_TRUE(html.contains(QStringLiteral("<h1>System notes</h1>")));
    EXPECT_TRUE(html.contains(QStringLiteral("<h1>Customer ")));
}

TEST_F(ExportTest, CalendarLinesAreFoldedEscapedAndAlarmed) {
    const QString ics = run("export --format ics").out;
    for (const QString& line : ics.split(QStringLiteral("\r\n"))) {
        EXPECT_LE(line.toUtf8().size(), 75);
        EXPECT_FALSE(line.contains(u'\n'));
    }
    const QString unfolded = QString(ics).remove(QStringLiteral("\r\n "));
    const QStringList lines = unfolded.split(QStringLiteral("\r\n"));
    EXPECT_EQ(lines.count(QStringLiteral("BEGIN:VEVENT")), 2);
    EXPECT_EQ(lines.count(QStringLiteral("BEGIN:VALARM")), 1) << "a dismissed one rings no more";
    EXPECT_EQ(lines.count(QStringLiteral("DTSTART:20260312T100000")), 2);
    EXPECT_TRUE(lines.contains(QStringLiteral("SUMMARY:a\\;b\\, c\\\\d \"e\" <script>")));
    EXPECT_TRUE(lines.contains(QStringLiteral("DESCRIPTION:") +
                               QString(text).replace(u'\n', QStringLiteral("\\n"))));
}

TEST_F(ExportTest, WritesAFileWholeOrNotAtAll) {
    const QString path = folder.filePath(QStringLiteral("out.csv"));
    const QStringList words{QStringLiteral("export"), QStringLiteral("--format"),
                            QStringLiteral("csv"), QStringLiteral("--output")};
    EXPECT_EQ(run(words + QStringList(path)).status, kExitDone);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(file.readAll()), run("export --format csv").out);
    QTemporaryDir elsewhere;
    const QString nowhere = elsewhere.filePath(QStringLiteral("no/such/folder"));
    const Outcome failed = run(words + QStringList(nowhere));
    EXPECT_EQ(failed.status, kExitFailed);
    EXPECT_TRUE(failed.err.startsWith(u"yrwnotes: " + nowhere)) << qPrintable(failed.err);
}

TEST_F(ExportTest, NeverOverwritesTheData) {
    QTemporaryDir elsewhere;
    const auto link = [&](const char* name, const QString& to) {
        const QString path = elsewhere.filePath(QLatin1String(name));
        EXPECT_TRUE(QFile::link(to, path));
        return path;
    };
    const QString hard = elsewhere.filePath(QStringLiteral("hard"));
    ASSERT_EQ(::link(qPrintable(notesPath()), qPrintable(hard)), 0);
    const QString linkedFolder = link("folder", folder.path());
    const QString cases[] = {
        notesPath(),
        notesPath() + QStringLiteral("-wal"),
        notesPath() + QStringLiteral("-journal"),
        folder.filePath(QStringLiteral("./Desk.mdb")),
        link("soft", link("second", notesPath())),
        link("dangling", notesPath() + QStringLiteral("-journal")),
        linkedFolder + QStringLiteral("/Notes.mdb-journal"),
        hard,
    };
    for (const QString& path : cases) {
        const Outcome refused = run({QStringLiteral("export"), QStringLiteral("--format"),
                                     QStringLiteral("json"), QStringLiteral("--output"), path});
        EXPECT_EQ(refused.status, kExitFailed) << qPrintable(path);
        EXPECT_TRUE(refused.err.startsWith(u"yrwnotes: " + path)) << qPrintable(refused.err);
    }
    EXPECT_EQ(run("list --json").json().size(), 2);
    EXPECT_FALSE(QFile::exists(notesPath() + QStringLiteral("-journal")));
}

TEST_F(ExportTest, ConvertsRichText) {
    const QByteArray rtf = "{\\rtf1{\\colortbl ;\\red255\\green0\\blue0;}\\b bold\\b0  <&>\\par "
                           "{\\field{\\*\\fldinst HYPERLINK \"javascript:x\"}{\\fldrslt js}}\\par}";
    const auto convert = [&](const char* to, const QByteArray& from) {
        return runBare({QStringLiteral("rtf"), QStringLiteral("-"), QStringLiteral("--to"),
                        QString::fromLatin1(to)},
                       from);
    };
    EXPECT_EQ(convert("text", rtf).out, QStringLiteral("bold <&>\njs\n"));
    const QString html = convert("html", rtf).out;
    EXPECT_TRUE(html.contains(QStringLiteral("<b>bold</b>"))) << qPrintable(html);
    EXPECT_TRUE(html.contains(QStringLiteral("&lt;&amp;&gt;")));
    EXPECT_FALSE(html.contains(QStringLiteral("href")));
    const QByteArray nested =
        "{\\rtf1\\trowd\\cellx5000\\cellx9000\\pard\\intbl a\\par\\pard\\intbl\\itap2 b\\nestcell c"
        "\\nestcell{\\*\\nesttableprops\\trowd\\cellx1000\\cellx2000\\nestrow}d\\nestcell "
        "e\\nestcell"
        "{\\*\\nesttableprops\\trowd\\cellx1000\\cellx2000\\nestrow}\\pard\\intbl f\\cell "
        "g\\cell\\row"
        "\\intbl h\\cell i\\cell\\row\\pard j\\par}";
    const QString tables =
        convert("html", nested)
            .out.section(QStringLiteral("<body>"), 1)
            .remove(QRegularExpression(QStringLiteral("</?(p|span|body|html)\\b[^>]*>|\n")));
    EXPECT_EQ(tables, QStringLiteral("<table><tr><td>a<table><tr><td>b</td><td>c</td></tr>"
                                     "<tr><td>d</td><td>e</td></tr></table>f</td><td>g</td></tr>"
                                     "<tr><td>h</td><td>i</td></tr></table>j"));
    const QByteArray shown = "{\\rtf1{\\object{\\*\\objdata 01}{\\result{\\pict\\pngblip 89}}}"
                             "{\\object{\\*\\objdata 01}}}";
    EXPECT_TRUE(
        convert("html", shown)
            .out.contains(QRegularExpression(QStringLiteral("<img [^>]*iQ==.*\\[attachment\\]"))));
    EXPECT_TRUE(convert("rtf", rtf).out.endsWith(QStringLiteral("\r\n\\par\r\n}\r\n")));
    EXPECT_EQ(runBare({QStringLiteral("rtf"), QStringLiteral("/no/such/file")}).status,
              kExitFailed);
}

TEST(ProgressLineTest, IsSilentForASecondOrUnseenAndWipedAtTheEnd) {
    ManualClock clock(QDateTime(QDate(2026, 3, 10), QTime(9, 0)));
    QBuffer err;
    err.open(QIODevice::WriteOnly);
    const auto work = [&](int steps, bool isLookedAt) {
        ProgressLine progress(err, clock, QStringLiteral("notes"), isLookedAt);
        for (int i = 0; i < 200; ++i) {
            progress.step();
        }
        clock.advance(steps);
        for (int i = 0; i < 200; ++i) {
            progress.step();
        }
    };
    work(0, true);
    work(2, false);
    EXPECT_TRUE(err.data().isEmpty());
    work(2, true);
    EXPECT_TRUE(err.data().contains("256 notes ..."));
    EXPECT_TRUE(err.data().endsWith(" \r"));
    EXPECT_FALSE(err.data().contains('\n'));
}

} // namespace
} // namespace yrw::test
