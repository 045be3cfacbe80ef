#include "cli/ProgressLine.h"
#include "tests/cli/CommandFixture.h"

#include <QProcess>
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
    change("UPDATE tblReminders SET NextDate = '2026-03-11 10:00:00' WHERE UserID = 2");
    const QJsonObject moved = run("export --format json").json().last().toObject();
    EXPECT_EQ(moved["Reminders"].toArray().first()["UserID"], 2) << "in the order of their dates";
}

/// Reads an export as its usual readers do and prints what they find: of CSV the second and the
/// fourth column, of HTML tags and texts, of a calendar the properties after unfolding and
/// unescaping.
constexpr const char* kReaders = R"(
import csv, html.parser, io, re, sys
kind, text = sys.argv[1], sys.stdin.buffer.read().decode('utf-8')
if kind == 'csv':
    for row in csv.reader(io.StringIO(text, newline='')):
        print(ascii(row[1]))
elif kind == 'html':
    class Reader(html.parser.HTMLParser):
        def handle_starttag(self, tag, attributes):
            if tag in ('script', 'img', 'a', 'b'): print('TAG', tag)
        def handle_data(self, data):
            if data.strip(): print(ascii(data.strip()))
    Reader().feed(text)
else:
    for line in re.sub('\r\n[ \t]', '', text).split('\r\n'):
        name, _, value = line.partition(':')
        if re.search('[\x00-\x08\x0a-\x1f\x7f-\x9f]', line): print('CONTROL', ascii(line))
        if name in ('SUMMARY', 'ATTENDEE', 'ATTACH'):
            print(name, ascii(re.sub(r'\\(.)', lambda m: '\n' if m[1] in 'nN' else m[1], value)))
)";

TEST_F(ExportTest, IsHarmlessToItsReaders) {
    const QString hostile[] = {
        u"=cmd|'/c calc'!A1"_qs,
        u"  +1"_qs,
        u"-1,2"_qs,
        u"@SUM(A1)"_qs,
        u"\t=1"_qs,
        u"a\x1b[2J\x07"_qs,
        u"x\"><script>alert(1)</script>&amp;"_qs,
        u"two\nlines"_qs,
        u"end\r\nEND:VEVENT\r\nATTACH:file:///etc/passwd\\n;,"_qs,
    };
    change("DELETE FROM tblNotes; DELETE FROM tblReminders");
    for (const QString& line : hostile) {
        run({"add", "--subject", line, "--text", line, "--remind", "me", "--at", "2026-03-12"});
    }
    const auto read = [&](const QString& format) {
        QProcess reader;
        reader.start("python3", {"-c", kReaders, format});
        reader.write(run({"export", "--format", format}).out.toUtf8());
        reader.closeWriteChannel();
        EXPECT_TRUE(reader.waitForFinished() && reader.exitCode() == 0)
            << reader.readAllStandardError().constData();
        return QString::fromUtf8(reader.readAllStandardOutput());
    };
    EXPECT_EQ(read("csv"), R"__('Subject'
"'=cmd|'/c calc'!A1"
"'  +1"
"'-1,2"
"'@SUM(A1)"
"'\t=1"
'a[2J'
'x"><script>alert(1)</script>&amp;'
'two\nlines'
'end\r\nEND:VEVENT\r\nATTACH:file:///etc/passwd\\n;,'
)__");
    const QString html = read("html");
    EXPECT_FALSE(html.contains("TAG")) << qPrintable(html);
    EXPECT_EQ(html.count(R"('x"><script>alert(1)</script>&amp;')"), 2) << qPrintable(html);
    EXPECT_FALSE(html.contains(R"(\x1b)"));
    const QString calendar = read("ics");
    EXPECT_EQ(calendar.count("SUMMARY"), int(std::size(hostile))) << qPrintable(calendar);
    EXPECT_FALSE(calendar.contains("\nATTACH") || calendar.contains("CONTROL"));
    EXPECT_TRUE(calendar.contains(R"('end\nEND:VEVENT\nATTACH:file:///etc/passwd\\n;,')"))
        << qPrintable(calendar);
}

TEST_F(ExportTest, HtmlHasAPagePerRecord) {
    run("add --subject third --owner cu:1");
    run("add --subject fourth --owner cu:2");
    run("add --subject fifth --owner or:2");
    const QString html = run("export --format html").out;
    EXPECT_EQ(html.count("</section>"), 4);
    const QRegularExpression heading("<section>\n<h1>([^<]*)</h1>");
    QStringList titles;
    for (const auto& match : heading.globalMatch(html)) {
        titles += match.captured(1);
    }
    EXPECT_EQ(titles.removeDuplicates(), 0) << qPrintable(titles.join(u'|'));
    const QStringList kinds{"System", "Customer", "Customer", "Order"};
    for (qsizetype i = 0; i < kinds.size(); ++i) {
        EXPECT_TRUE(titles.value(i).startsWith(kinds[i])) << qPrintable(titles.join(u'|'));
    }
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
    EXPECT_EQ(lines.count("CLASS:PUBLIC"), 2);
    run("done 1");
    run("add --subject p --private --remind me --at 2026-03-12");
    const QStringList then = run("export --format ics").out.split("\r\n");
    EXPECT_EQ(then.count("BEGIN:VALARM"), 1) << "a finished one rings no more";
    EXPECT_EQ(then.count("CLASS:PRIVATE"), 1);
    EXPECT_TRUE(lines.contains(QStringLiteral("SUMMARY:a\\;b\\, c\\\\d \"e\" <script>")));
    EXPECT_TRUE(lines.contains(QStringLiteral("DESCRIPTION:") +
                               QString(text).replace(u'\n', QStringLiteral("\\n"))));
}

TEST_F(ExportTest, WritesAFile) {
    const QString path = folder.filePath(QStringLiteral("out.csv"));
    const QStringList words{QStringLiteral("export"), QStringLiteral("--format"),
                            QStringLiteral("csv"), QStringLiteral("--output")};
    EXPECT_EQ(run(words + QStringList(path)).status, kExitDone);
    EXPECT_EQ(QString::fromUtf8(read(path)), run("export --format csv").out);
}

TEST_F(ExportTest, NeitherItNorABackupOverwritesTheData) {
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
        folder.path(),
        elsewhere.filePath(QStringLiteral("no/such/folder")),
    };
    for (const QString& path : cases) {
        for (const bool isBackup : {false, true}) {
            const QStringList words = isBackup
                                          ? QStringList{"backup"}
                                          : QStringList{"export", "--format", "json", "--output"};
            const QString named = isBackup ? QDir::cleanPath(path) : path;
            const Outcome refused = run(words + QStringList(path));
            EXPECT_EQ(refused.status, kExitFailed) << qPrintable(path);
            EXPECT_TRUE(refused.err.startsWith(u"yrwnotes: " + named)) << qPrintable(refused.err);
        }
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
    EXPECT_TRUE(convert("html", "{\\rtf1\\super up}").out.contains("<sup>up</sup>"));
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
