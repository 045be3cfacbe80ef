#include "tests/richtext/HostileNotes.h"

#include "platform/richtext/RichTextBox.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include <sys/resource.h>

namespace yrw::test {

namespace {

constexpr qsizetype kLarge = 10 * 1000 * 1000;
/// What hangs is ended by its processor time, so that a busy machine ends none; one that waits for
/// nothing, by the clock.
constexpr rlim_t kHangProcessorSeconds = 30;
constexpr int kHangMs = 240 * 1000;
/// A turn of the event loop that takes longer laid something out.
constexpr int kWorkMs = 15;
const QString kChild = QStringLiteral("YRW_HOSTILE_NOTE");

QByteArray note(const QByteArray& body) {
    return "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\fs20 " + body + "}";
}

/// A body of 10 MB.
QByteArray filled(const QByteArray& piece) {
    return note(piece.repeated(kLarge / piece.size()));
}

QByteArray png(int side, QImage::Format format) {
    QImage image(side, side, format);
    image.fill(0);
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG", 0);
    return data;
}

QByteArray pictures(int count, int side, QImage::Format format, const QByteArray& goal) {
    const QByteArray picture =
        "{\\pict\\pngblip" + goal + " " + png(side, format).toHex() + "}\\par ";
    return note(picture.repeated(count));
}

/// A table in each cell of another, so many deep.
QByteArray nested(int depth, int rows) {
    QByteArray body;
    for (int level = depth; level > 1; --level) {
        const QByteArray at = QByteArray::number(level);
        QByteArray inner;
        for (int row = 0; row < rows; ++row) {
            inner += "\\pard\\intbl\\itap" + at + " x\\nestcell " +
                     (level == depth || row > 0 ? QByteArray("\\pard\\intbl\\itap" + at + " y")
                                                : body + "\\pard\\intbl\\itap" + at) +
                     "\\nestcell{\\*\\nesttableprops\\trowd\\cellx2000\\cellx4000\\nestrow}";
        }
        body = inner;
    }
    return "\\trowd\\cellx9000 " + body + "\\pard\\intbl\\cell\\row ";
}

QByteArray manyFormats() {
    QByteArray body;
    for (int i = 0; body.size() < kLarge; ++i) {
        body += "\\fs" + QByteArray::number(2 + i % 3000) + "\\cf" + QByteArray::number(i / 3000) +
                " a";
    }
    QByteArray colours = "{\\colortbl;";
    for (int i = 0; i < 1000; ++i) {
        colours +=
            "\\red" + QByteArray::number(i % 256) + "\\blue" + QByteArray::number(i / 256) + ";";
    }
    return note(colours + "}" + body);
}

QByteArray manyParagraphFormats() {
    QByteArray body;
    for (int i = 0; body.size() < kLarge; ++i) {
        body += "\\li" + QByteArray::number(i % 30000) + "\\ri" + QByteArray::number(i / 30000) +
                "\\par ";
    }
    return note(body);
}

/// The most memory that this program had at a time; what its parent had before does not count.
int peakMegabytes() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QByteArray all = status.readAll();
    const qsizetype at = all.indexOf("VmHWM:");
    return at < 0 ? 0 : std::atoi(all.constData() + at + 6) / 1024;
}

/// Milliseconds of processor time: other programs on the machine change nothing.
int processorMs() {
    return static_cast<int>(std::clock() / (CLOCKS_PER_SEC / 1000));
}

} // namespace

const std::vector<HostileNote>& hostileNotes() {
    static const std::vector<HostileNote> notes = {
        {"plain", [] { return note("one line"); }},
        {"forty pictures", [] { return pictures(40, 5000, QImage::Format_Mono, ""); }},
        {"forty pictures in view",
         [] { return pictures(40, 5000, QImage::Format_Mono, "\\picwgoal400\\pichgoal400"); }},
        {"picture of 64 million dots", [] { return pictures(1, 8000, QImage::Format_RGB32, ""); }},
        {"10 MB of pictures", [] { return pictures(50, 5000, QImage::Format_RGB888, ""); }},
        {"a million pictures", [] { return filled("{\\pict}"); }},
        {"a million objects", [] { return filled("{\\object}a"); }},
        {"nested tables of 20 KB", [] { return note(nested(8, 15)); }},
        {"nested tables of 200 KB", [] { return note(nested(8, 15).repeated(13)); }},
        {"nested tables of 10 MB", [] { return note(nested(8, 8).repeated(1200)); }},
        {"deep groups", [] { return filled("{"); }},
        {"deep formats", [] { return filled("{\\li9\\b "); }},
        {"deep fields", [] { return filled("{\\field{\\*\\fldinst x}{\\fldrslt y"); }},
        {"long list",
         [] {
             return filled("{\\pntext\\tab}{\\*\\pn\\pnlvlbody\\pndec\\pnstart1{\\pntxta.}}"
                           "\\fi-360\\li720 i\\par ");
         }},
        {"short list items",
         [] { return note("{\\*\\pn\\pnlvlblt}" + QByteArray("i\\par ").repeated(kLarge / 6)); }},
        {"empty paragraphs", [] { return filled("\\par"); }},
        {"one paragraph", [] { return filled("lorem ipsum dolor sit amet "); }},
        {"one word", [] { return filled("lorem"); }},
        {"one paragraph of styles", [] { return filled("\\b a\\b0 b"); }},
        {"lines in one paragraph", [] { return filled("a\\line "); }},
        {"many formats", manyFormats},
        {"tall lines", [] { return note("\\fs3000 " + QByteArray("a\\line ").repeated(9000)); }},
        {"tall gaps", [] { return note("\\sb31000 " + QByteArray("a\\par ").repeated(9000)); }},
        {"tall pictures",
         [] { return pictures(5000, 2, QImage::Format_Mono, "\\picwgoal30000\\pichgoal30000"); }},
        {"many paragraph formats", manyParagraphFormats},
        {"a million columns",
         [] {
             return note("\\trowd" + QByteArray("\\cellx9").repeated(kLarge / 7) +
                         "\\intbl a\\cell\\row ");
         }},
        {"a million cells", [] { return note("\\trowd" + filled("\\cell ") + "\\row "); }},
        {"a million rows", [] { return filled("\\cell\\row "); }},
        {"rows of a width",
         [] {
             return filled("\\trowd\\cellx2000\\cellx5000\\pard\\intbl 1\\cell some text\\cell"
                           "\\row\r\n");
         }},
        {"wide rows",
         [] {
             return filled("\\trowd " + QByteArray("\\cellx9").repeated(63) + "\\intbl " +
                           QByteArray("a\\cell ").repeated(63) + "\\row ");
         }},
        {"cells full of text",
         [] {
             return filled("\\trowd\\cellx2000\\pard\\intbl " + QByteArray("word ").repeated(9999) +
                           "\\cell\\row ");
         }},
        {"one cell full of text",
         [] {
             return note("\\trowd\\cellx2000\\intbl " + QByteArray("word ").repeated(kLarge / 5) +
                         "\\cell\\row ");
         }},
        {"line breaks in numbers", [] { return filled("\\u10?\\u-1?"); }},
        {"ordinary",
         [] {
             return filled("\\cf0\\b [24/11/26 14:05 Anna Berg] - \\b0 Line: the bay is shut, "
                           "caf\\'e9 na\\u239?ve \\i use\\i0  the side gate.\\par\r\n");
         }},
    };
    return notes;
}

Opening openInChild(const char* name) {
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(kChild, QString::fromLatin1(name));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(), QStringList());
    Opening opening;
    if (!child.waitForFinished(kHangMs)) {
        child.kill();
        child.waitForFinished();
        return opening;
    }
    const QByteArray said = child.readAllStandardOutput();
    opening.finished = child.exitStatus() == QProcess::NormalExit &&
                       std::sscanf(said.constData(), "%d %d %d", &opening.longestMs,
                                   &opening.wholeMs, &opening.peakMegabytes) == 3;
    return opening;
}

bool isHostileChild() {
    return qEnvironmentVariableIsSet(kChild.toLatin1());
}

int runHostileChild() {
    const rlimit hang{kHangProcessorSeconds, kHangProcessorSeconds};
    setrlimit(RLIMIT_CPU, &hang);
    const QByteArray name = qgetenv(kChild.toLatin1());
    const auto& notes = hostileNotes();
    const auto found = std::find_if(notes.begin(), notes.end(),
                                    [&](const HostileNote& each) { return each.name == name; });
    if (found == notes.end()) {
        return 1;
    }
    const QString rtf = QString::fromLatin1(found->make());
    QFile forget(QStringLiteral("/proc/self/clear_refs"));
    if (forget.open(QIODevice::WriteOnly)) {
        forget.write("5"); // the peak begins anew
        forget.close();
    }
    RichTextBox box;
    box.resize(900, 500);
    box.show();
    QCoreApplication::processEvents();
    int longest = 0;
    const int begin = processorMs();
    int turn = begin;
    const auto look = [&] {
        const int now = processorMs();
        longest = std::max(longest, now - turn);
        turn = now;
        return true;
    };
    box.setTextRTF(rtf, [&](int) { return look(); });
    look();
    (void)box.grab();
    look();
    const int painted = processorMs() - begin;
    // What the toolkit lays out behind the reader's back, until it is done.
    for (int idle = 0; idle < 10; ++idle) {
        const int before = processorMs();
        turn = before;
        QCoreApplication::processEvents();
        look();
        QThread::msleep(10);
        idle = processorMs() - before > kWorkMs ? 0 : idle;
    }
    std::printf("%d %d %d\n", longest, painted, peakMegabytes());
    return 0;
}

} // namespace yrw::test
