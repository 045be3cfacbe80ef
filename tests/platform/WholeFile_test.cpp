// Everything that writes a file, on a disk that fills at each byte of it.
#include "platform/component/AutomationError.h"
#include "platform/component/ClassRegistry.h"
#include "platform/disk/Unfinished.h"
#include "platform/disk/WholeFile.h"
#include "platform/settings/SettingsStore.h"
#include "tests/support/FullDisk.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;
using namespace yrw;

namespace {

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not there)");
}

/// Writes into a file; false when the writer says that it could not.
using Writer = std::function<bool(const QString& path, const QByteArray& content)>;

bool writeByRegistry(const QString& path, const QByteArray& content) {
    try {
        ClassRegistry(path).registerClass({u"Test.Class"_s, u"{id}"_s, u'/' + QString(content)});
        return true;
    } catch (const AutomationError&) {
        return false;
    }
}

bool writeSetting(const QString& path, const QByteArray& content) {
    SettingsStore store(QFileInfo(path).path());
    return store.save(QFileInfo(path).completeBaseName(), u"Section"_s, u"Key"_s, content);
}

TEST(WholeFileTest, OnADiskThatFillsTheOldFileStaysAndTheWriterSaysSo) {
    const struct {
        const char* name;
        Writer write;
        int most; ///< bytes of the largest disk tried
    } writers[] = {
        {"whole",
         [](const QString& path, const QByteArray& content) {
             return !writeWholeFile(path, content);
         },
         120},
        {"setting", writeSetting, 20000},
        {"class", writeByRegistry, 20000},
    };
    for (const auto& writer : writers) {
        SCOPED_TRACE(writer.name);
        const QTemporaryDir folder;
        const QString path = folder.filePath("file.ini");
        ASSERT_TRUE(writer.write(path, "the old content"));
        const QByteArray old = contentOf(path);
        const QByteArray content(80, 'n');
        bool written = false;
        // Every byte of what is written, and then in steps up to what is asked for in advance.
        for (int room = 0; room < writer.most; room += room < 600 ? 1 : 997) {
            {
                const test::FullDisk full{rlim_t(room)};
                written = writer.write(path, content);
            }
            ASSERT_EQ(contentOf(path) == old, !written) << room << ' ' << contentOf(path).data();
            ASSERT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
                      QStringList{"file.ini"})
                << room;
            if (written) {
                ASSERT_TRUE(contentOf(path).contains(content));
                break;
            }
        }
        EXPECT_TRUE(written);
    }
}

TEST(WholeFileTest, AKilledProgramLeavesNothingThatStays) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("file");
    const auto names = [&] {
        return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    };
    WholeFile file(path);
    ASSERT_TRUE(file.open());
    ASSERT_TRUE(file.write("half"));
    EXPECT_TRUE(names().isEmpty()) << "it has no name before it is whole";
    // Where it cannot be so, the next one sees to what was left.
    QString first;
    QString second;
    ::close(makeUnfinished(path, first, 0600));
    ::close(makeUnfinished(folder.filePath("file2"), second, 0600));
    const QStringList kept{"file.unfinished-notes.mdb", QFileInfo(second).fileName()};
    for (const QString& old : kept + QStringList(QFileInfo(first).fileName())) {
        QFile left(folder.filePath(old));
        ASSERT_TRUE(left.open(QIODevice::ReadWrite));
        ASSERT_TRUE(left.setFileTime(QDateTime::currentDateTime().addSecs(-4000),
                                     QFileDevice::FileModificationTime));
    }
    QString third;
    ::close(makeUnfinished(path, third, 0600));
    QStringList expected = kept + QStringList(QFileInfo(third).fileName());
    expected.sort();
    EXPECT_EQ(names(), expected);
}

TEST(WholeFileTest, WhatFailedOnceIsNeverPutInPlace) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("file");
    WholeFile file(path);
    ASSERT_TRUE(file.open(true));
    {
        const test::FullDisk full(10);
        EXPECT_FALSE(file.write(QByteArray(100000, 'x')));
    }
    EXPECT_FALSE(file.problem().isEmpty());
    EXPECT_FALSE(file.write("y"));
    EXPECT_FALSE(file.commit());
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_FALSE(writeWholeFile(path, "private", true));
    EXPECT_EQ(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), 0);
    EXPECT_TRUE(writeWholeFile(folder.filePath("no/such/folder"), "z"));
}

} // namespace
