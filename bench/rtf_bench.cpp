#include "platform/richtext/RichTextBox.h"
#include "platform/rtf/Reader.h"
#include "platform/rtf/Writer.h"

#include <QApplication>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextDocument>

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

// Reader and writer against a converter's run on the same file, and loading the editor against
// loading the same content as HTML. Each line ends in the ratio and its target.

namespace {

constexpr int kRounds = 7;

/// Milliseconds of the fastest of several runs.
double fastest(const std::function<void()>& work, int rounds = kRounds) {
    double best = 1e9;
    for (int i = 0; i < rounds; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> passed =
            std::chrono::steady_clock::now() - start;
        best = std::min(best, passed.count());
    }
    return best;
}

/// Stamped lines like a long log's, with bold, colours, lists and accents.
QByteArray sample(qsizetype size) {
    QByteArray rtf =
        "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fnil\\fcharset0 "
        "Comic Sans MS;}{\\f1\\fnil\\fcharset2 Symbol;}}\r\n{\\colortbl "
        ";\\red255\\green0\\blue0;}\r\n\\viewkind4\\uc1\\pard\\cf0\\fs20 ";
    for (int i = 0; rtf.size() < size; ++i) {
        rtf += "\\cf1\\b [24/11/26 14:05 Anna Berg] - \\cf0\\b0 Line " + QByteArray::number(i) +
               ": the bay is shut, caf\\'e9 na\\u239?ve \\i use\\i0  the side gate.\\par\r\n";
        if (i % 20 == 0) {
            rtf +=
                "\\pard{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{\\pntxtb\\'B7}}"
                "\\fi-360\\li720 two keys\\par\r\n{\\pntext\\f1\\'B7\\tab}the blue "
                "folder\\par\r\n\\pard ";
        }
    }
    return rtf + "}\r\n";
}

void againstConverter(const QByteArray& rtf) {
    yrw::rtf::Document model;
    QByteArray written;
    const double reading = fastest([&] { model = yrw::rtf::read(QByteArrayView(rtf)); });
    const double writing = fastest([&] { written = yrw::rtf::write(model); });
    std::printf("read %.1f MB in %.2f ms, write in %.2f ms\n", rtf.size() / 1e6, reading, writing);
    const QString unrtf = QStandardPaths::findExecutable(QStringLiteral("unrtf"));
    if (unrtf.isEmpty()) {
        std::printf("unrtf is not installed: no ratio\n");
        return;
    }
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("sample.rtf")));
    if (!file.open(QIODevice::WriteOnly) || file.write(rtf) != rtf.size()) {
        std::printf("the sample could not be written\n");
        return;
    }
    file.close();
    const double run = fastest(
        [&] {
            QProcess process;
            process.start(unrtf, {QStringLiteral("--html"), file.fileName()});
            process.waitForFinished(-1);
        },
        3);
    std::printf("unrtf %.1f ms: %.1f x (target >= 50 x)\n", run, run / (reading + writing));
}

/// The command as a filter against the converter, both with their start.
void againstConverterAsFilter(const QByteArray& rtf) {
    const QString ours = QCoreApplication::applicationDirPath() + QStringLiteral("/yrwnotes");
    const QString unrtf = QStandardPaths::findExecutable(QStringLiteral("unrtf"));
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("sample.rtf")));
    if (!QFile::exists(ours) || unrtf.isEmpty() || !file.open(QIODevice::WriteOnly) ||
        file.write(rtf) != rtf.size()) {
        std::printf("filter: yrwnotes or unrtf is missing: no ratio\n");
        return;
    }
    file.close();
    const auto run = [&](const QString& program, const QStringList& arguments) {
        return fastest(
            [&] {
                QProcess process;
                process.start(program, arguments);
                process.waitForFinished(-1);
            },
            2);
    };
    const double filter = run(ours, {QStringLiteral("rtf"), file.fileName(), QStringLiteral("--to"),
                                     QStringLiteral("html")});
    const double converter = run(unrtf, {QStringLiteral("--html"), file.fileName()});
    std::printf("filter %.0f MB to HTML %.0f ms, unrtf %.0f ms: %.1f x (target >= 20 x)\n",
                rtf.size() / 1e6, filter, converter, converter / filter);
}

/// Time and memory of a file that nobody should keep in a note.
void readLarge(const QByteArray& rtf) {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const long before = usage.ru_maxrss;
    const double reading = fastest([&] { (void)yrw::rtf::read(QByteArrayView(rtf)); }, 1);
    getrusage(RUSAGE_SELF, &usage);
    std::printf("read %.0f MB in %.0f ms: %.0f ms per 10 MB (target <= 1000), %.1f x its size more "
                "memory\n",
                rtf.size() / 1e6, reading, reading / (rtf.size() / 1e7),
                double(usage.ru_maxrss - before) * 1024 / rtf.size());
}

void againstHtml(const QByteArray& rtf) {
    yrw::RichTextBox box;
    const QString text = QString::fromLatin1(rtf);
    box.setTextRTF(text);
    const QString html = box.document()->toHtml();
    const double ours = fastest([&] { box.setTextRTF(text); });
    QTextEdit plain;
    const double theirs = fastest([&] { plain.setHtml(html); });
    std::printf("editor from RTF %.1f ms, from HTML %.1f ms: %.2f x (target <= 0.3 x)\n", ours,
                theirs, ours / theirs);
    const double saving = fastest([&] { (void)box.TextRTF(); });
    std::printf("editor to RTF %.1f ms\n", saving);
}

QByteArray rowsOfTable(int rows) {
    QByteArray rtf = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}";
    for (int i = 0; i < rows; ++i) {
        rtf += "\\trowd\\cellx2000\\cellx5000\\pard\\intbl " + QByteArray::number(i) +
               "\\cell some text\\cell\\row\r\n";
    }
    return rtf + "\\pard end\\par}";
}

QByteArray itemsOfList(int items) {
    QByteArray rtf = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}";
    for (int i = 0; i < items; ++i) {
        rtf += "\\pard{\\pntext "
               "1.\\tab}{\\*\\pn\\pnlvlbody\\pndec\\pnstart1{\\pntxta.}}\\fi-360\\li720 "
               "item " +
               QByteArray::number(i) + " of a long list\\par\r\n";
    }
    return rtf + "}";
}

/// A long note in a window: until it is read, until its beginning is painted, and a save.
void openLarge(const char* what, const QByteArray& rtf) {
    yrw::RichTextBox box;
    box.resize(800, 400);
    box.show();
    QCoreApplication::processEvents();
    const QString text = QString::fromLatin1(rtf);
    const double opened = fastest([&] { box.setTextRTF(text); }, 1);
    const double painted = fastest([&] { (void)box.grab(); }, 1);
    const double idle = fastest([] { QCoreApplication::processEvents(); }, 1);
    const double saved = fastest([&] { (void)box.texts(); }, 1);
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%s, %.0f MB: opened in %.0f ms, painted in %.0f ms, events %.0f ms: %.0f ms per "
                "10 MB (target <= 1000); texts to save in %.0f ms; peak %ld MB\n",
                what, rtf.size() / 1e6, opened, painted, idle,
                (opened + painted + idle) / (rtf.size() / 1e7), saved, usage.ru_maxrss / 1024);
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    if (argc > 1) { // one large note, so that the peak of memory is its own
        const int megabytes = QByteArray(argv[1]).toInt();
        if (megabytes > 0) {
            openLarge("text", sample(megabytes * 1000LL * 1000));
        } else if (qstrcmp(argv[1], "list") == 0) {
            openLarge("list", itemsOfList(argc > 2 ? QByteArray(argv[2]).toInt() : 100 * 1000));
        } else {
            openLarge("table", rowsOfTable(100 * 1000));
        }
        return 0;
    }
    const QByteArray rtf = sample(1000 * 1000);
    againstConverter(rtf);
    againstHtml(rtf);
    againstConverterAsFilter(sample(10 * 1000 * 1000));
    readLarge(sample(50 * 1000 * 1000));
    return 0;
}
