// What another program reads of a note: the same text.
#include "tests/rtf/Helpers.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace yrw::rtf {
namespace {

TEST(OtherConverter, SeesTheSameTextBesideObjects) {
    const QString unrtf = QStandardPaths::findExecutable(QStringLiteral("unrtf"));
    ASSERT_FALSE(unrtf.isEmpty()) << "unrtf is not installed";
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
