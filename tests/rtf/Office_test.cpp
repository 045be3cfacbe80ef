// What another program reads of our own files: the same text.
#include "tests/rtf/Helpers.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace yrw::rtf {
namespace {

QString contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The words of a text; the marks that the office writes before the items of lists are left out.
QStringList wordsOf(QString text) {
    static const QRegularExpression marks(QStringLiteral("^ {4,}(\\S+[.)]|\\W) |^ {4,}"),
                                          QRegularExpression::MultilineOption);
    text.remove(QChar(0xFEFF)).remove(marks);
    return text.simplified().split(u' ', Qt::SkipEmptyParts);
}

TEST(Office, ReadsTheSameTextOfOurFiles) {
    const QString office = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (office.isEmpty()) {
        GTEST_SKIP() << "LibreOffice is not installed: nothing to compare with";
    }
    const QDir seeds(QStringLiteral(YRW_SOURCE_DIR "/tests/fuzz/seeds"));
    const QTemporaryDir folder;
    QStringList arguments{QStringLiteral("--headless"),
                          QStringLiteral("-env:UserInstallation=file://") + folder.path() +
                              QStringLiteral("/profile"),
                          QStringLiteral("--convert-to"),
                          QStringLiteral("txt:Text (encoded):UTF8"),
                          QStringLiteral("--outdir"),
                          folder.path()};
    const QStringList names = seeds.entryList({QStringLiteral("*.rtf")});
    for (const QString& name : names) {
        arguments.append(seeds.filePath(name));
    }
    QProcess process;
    process.start(office, arguments);
    ASSERT_TRUE(process.waitForFinished(120000));
    int compared = 0;
    for (const QString& name : names) {
        const QString theirs = folder.filePath(name.chopped(4) + QStringLiteral(".txt"));
        if (!QFile::exists(theirs)) {
            continue; // it opens only what is well formed
        }
        QFile ours(seeds.filePath(name));
        ASSERT_TRUE(ours.open(QIODevice::ReadOnly));
        EXPECT_EQ(wordsOf(contentOf(theirs)), wordsOf(readBytes(ours.readAll()).plainText()))
            << name.toStdString();
        ++compared;
    }
    EXPECT_GE(compared, 5);
}

TEST(Office, AnotherConverterSeesTheSameTextBesideObjects) {
    const QString unrtf = QStandardPaths::findExecutable(QStringLiteral("unrtf"));
    if (unrtf.isEmpty()) {
        GTEST_SKIP() << "unrtf is not installed: nothing to compare with";
    }
    const QTemporaryDir folder;
    for (const char* body :
         {"a{\\object\\objemb{\\*\\objdata 01}{\\result shown}}b", "a {\\pict\\pngblip 00} b",
          "a{\\object{\\*\\objdata 01050000}{\\result {\\b two}\\par lines}} b",
          "{\\object{\\*\\objdata 01}} a"}) {
        const QByteArray rtf = QByteArray("{\\rtf1\\ansi ") + body + "\\par}";
        QFile file(folder.filePath(QStringLiteral("a.rtf")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(rtf);
        file.close();
        QProcess process;
        process.setWorkingDirectory(folder.path()); // it leaves pictures there
        process.start(unrtf, {QStringLiteral("--text"), file.fileName()});
        ASSERT_TRUE(process.waitForFinished(60000));
        QString theirs = QString::fromUtf8(process.readAllStandardOutput());
        theirs.remove(0, theirs.indexOf(QLatin1String("-----")));
        static const QRegularExpression remarks(QStringLiteral("^-+$|###[^\n]*\n|pict\\d+\\.\\w+"),
                                                QRegularExpression::MultilineOption);
        theirs.remove(remarks);
        const QString ours = readBytes(rtf).plainText();
        EXPECT_EQ(theirs.trimmed().split(u'\n'), QString(ours).remove(u'\r').trimmed().split(u'\n'))
            << body;
    }
}

} // namespace
} // namespace yrw::rtf
