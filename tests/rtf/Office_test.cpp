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

} // namespace
} // namespace yrw::rtf
