// A notes database of the older format where the host's should be.
#include "addin/ConversionProgress.h"
#include "store/FormatSwap.h"
#include "store/NotesImport.h"
#include "tests/addin/AddInFixture.h"
#include "tests/support/OldDatabase.h"

#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>

#include <cstdio>
#include <random>

using namespace yrw;
using namespace yrw::test;

namespace {

const QString kConvert = QStringLiteral(
    "Convert Notes Database: The notes database in this folder has an older format. Would you like "
    "to convert it now? The old file is kept.");

/// A clock that runs, and goes ahead a little each time that it is looked at.
class PassingClock final : public Clock {
public:
    explicit PassingClock(qint64 msPerLook) : m_msPerLook(msPerLook) { m_timer.start(); }
    [[nodiscard]] QDateTime now() const override { return {{2026, 3, 10}, {9, 0}}; }
    [[nodiscard]] qint64 monotonicMs() const override {
        return m_timer.elapsed() + m_msPerLook * ++m_looks;
    }

private:
    QElapsedTimer m_timer;
    qint64 m_msPerLook;
    mutable qint64 m_looks = 0;
};

/// Does something with the progress window as soon as it is shown. Posted, since a timer may have
/// to wait for the next look at the events.
class OnProgress final : public QObject {
public:
    explicit OnProgress(std::function<void(QProgressDialog&)> action)
        : m_action(std::move(action)) {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* const dialog = qobject_cast<QProgressDialog*>(watched);
        if (dialog != nullptr && event->type() == QEvent::Show) {
            QMetaObject::invokeMethod(
                dialog, [this, dialog] { m_action(*dialog); }, Qt::QueuedConnection);
        }
        return false;
    }

private:
    std::function<void(QProgressDialog&)> m_action;
};

class OldFormatTest : public AddInFixture {
protected:
    [[nodiscard]] QString inFolder(const QString& name) const {
        return FileSystem::join(world.folder(), name);
    }
    [[nodiscard]] QString oldFile() const {
        return inFolder(QStringLiteral("Notes (old format).mdb"));
    }
    static QByteArray bytesOf(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// What is there of the notes, in order.
    [[nodiscard]] QStringList notesFiles() const {
        return QDir(world.folder())
            .entryList({QStringLiteral("Notes*")}, QDir::Files | QDir::Hidden, QDir::Name);
    }
    [[nodiscard]] static qint64 notesStored() {
        return Module1::instance()
            .database()
            ->OpenRecordset(schema::kTblNotes, dao::RecordsetType::Snapshot)
            ->RecordCount();
    }
    /// What another program does that converts.
    void convertElsewhere() {
        const MakeNotesFile make = [this](const QString& from, const QString& to) {
            ImportReport report;
            EXPECT_EQ(importIntoNewFile(from, to, {clock, files}, {}, {}, report),
                      ImportEnd::Imported);
            return std::optional(QStringList());
        };
        ConvertedNotes converted;
        EXPECT_EQ(FormatSwap(files, world.folder())
                      .convert(
                          make, [] { return false; }, converted),
                  FormatSwap::End::Converted);
    }

    OldDatabase old;
};

TEST_F(OldFormatTest, YesConvertsItBesideTheOriginalAndOpens) {
    old.write(world.notesPath());
    create();
    prompt.answer(PromptAnswer::Yes);
    ASSERT_TRUE(addIn->Activate());
    EXPECT_EQ(prompt.asked, QStringList{kConvert});
    EXPECT_EQ(prompt.lastIcon, PromptIcon::Question);
    EXPECT_EQ(prompt.lastButtons, PromptButtons::YesNo);
    EXPECT_EQ(prompt.lastDefault, PromptAnswer::No);
    EXPECT_EQ(prompt.pointer, MousePointer::Default);
    EXPECT_EQ(notesStored(), 12);
    EXPECT_EQ(bytesOf(oldFile()), old.bytes());
    EXPECT_NE(showNotesTool(), nullptr);
    EXPECT_GT(addNote(QStringLiteral("cu"), 1), 12);
}

TEST_F(OldFormatTest, NoLeavesItClosedAndAsItWas) {
    old.write(world.notesPath());
    create();
    prompt.answer(PromptAnswer::No);
    EXPECT_FALSE(addIn->Activate());
    // The old format's own lock file: another question, which tells of the computers.
    QFile lock(inFolder(QStringLiteral("Notes.ldb")));
    ASSERT_TRUE(lock.open(QIODevice::WriteOnly) && lock.write("DESK-7") > 0);
    lock.close();
    prompt.answer(PromptAnswer::Yes);
    prompt.answer(PromptAnswer::No);
    EXPECT_FALSE(addIn->Activate());
    ASSERT_EQ(prompt.asked.size(), 3);
    EXPECT_TRUE(prompt.asked[2].contains(QStringLiteral("(DESK-7)")));
    EXPECT_EQ(showNotesTool(), nullptr);
    EXPECT_EQ(bytesOf(world.notesPath()), old.bytes());
    EXPECT_EQ(notesFiles(),
              (QStringList{QStringLiteral("Notes.ldb"), QStringLiteral("Notes.mdb")}));
}

TEST_F(OldFormatTest, WhatSomebodyConvertsMeanwhileIsOpened) {
    for (const PromptAnswer answer : {PromptAnswer::Yes, PromptAnswer::No}) {
        old.write(world.notesPath());
        create();
        prompt.answer(answer);
        prompt.whileOpen = [this] { convertElsewhere(); };
        EXPECT_TRUE(addIn->Activate());
        EXPECT_EQ(notesStored(), 12);
        EXPECT_FALSE(QFile::exists(inFolder(QStringLiteral("Notes (old format 2).mdb"))));
        addIn.reset();
        QFile::remove(oldFile());
        QFile::remove(world.notesPath());
    }
}

TEST_F(OldFormatTest, AHalfDoneSwapIsCompletedUnasked) {
    makeNotesDatabase();
    ASSERT_TRUE(QFile::rename(world.notesPath(), inFolder("Notes.mdb.converted")));
    old.write(oldFile());
    QFile report(inFolder("Notes.mdb.converted.txt"));
    ASSERT_TRUE(report.open(QIODevice::WriteOnly));
    create();
    prompt.expectMessage();
    EXPECT_TRUE(addIn->Activate());
    ASSERT_EQ(prompt.asked.size(), 1);
    EXPECT_TRUE(prompt.asked[0].contains(inFolder("Notes (old format).txt")));
    EXPECT_EQ(notesStored(), 0);
}

TEST_F(OldFormatTest, TheUserCanStopIt) {
    PassingClock running(600); // so that it takes long
    Clock::setInstance(&running);
    old.write(world.notesPath());
    create();
    prompt.answer(PromptAnswer::Yes);
    OnProgress cancel([](QProgressDialog& dialog) {
        EXPECT_TRUE(dialog.isModal());
        EXPECT_FALSE(dialog.findChild<QProgressBar*>()->accessibleName().isEmpty());
        QTest::mouseClick(dialog.findChild<QPushButton*>(), Qt::LeftButton);
    });
    EXPECT_FALSE(addIn->Activate());
    EXPECT_EQ(window().findChild<QProgressDialog*>(), nullptr);
    EXPECT_EQ(notesFiles(), QStringList{QStringLiteral("Notes.mdb")});
    EXPECT_EQ(bytesOf(world.notesPath()), old.bytes());
    addIn.reset();
    Clock::setInstance(&clock);
}

/// A copy with a fault of one of four kinds.
QByteArray damaged(QByteArray bytes, int kind, std::mt19937& random) {
    constexpr qsizetype page = 4096;
    const qsizetype at = page * qsizetype(random() % unsigned(bytes.size() / page));
    const auto anyByte = [&] { return char(random()); };
    switch (kind) {
    case 0:
        return bytes.left(at + qsizetype(random() % page));
    case 1:
        return bytes.replace(at, page, QByteArray(page, '\0'));
    case 2:
        std::generate_n(bytes.begin() + at, page, anyByte);
        break;
    default:
        for (int i = 0; i < 400; ++i) {
            bytes[qsizetype(random() % unsigned(bytes.size()))] = anyByte();
        }
    }
    return bytes;
}

// YRW_DAMAGED raises the number of copies.
TEST_F(OldFormatTest, ADamagedOneGivesWhatCanBeHadOrOneMessage) {
    PassingClock real(0);
    Clock::setInstance(&real);
    const QByteArray good = old.bytes();
    std::mt19937 random(26);
    const int count = qMax(8, qEnvironmentVariableIntValue("YRW_DAMAGED"));
    qint64 longestMs = 0;
    int opened = 0;
    int withLosses = 0;
    for (int i = 0; i < count; ++i) {
        old.bytes() = damaged(good, i % 4, random);
        old.write(world.notesPath());
        create();
        prompt.asked.clear();
        prompt.whileOpen = [&] {
            if (prompt.asked.size() == 1) {
                prompt.answer(PromptAnswer::Yes);
            } else {
                prompt.expectMessage(); // of what was lost, or the only one
            }
        };
        if (!FormatSwap(files, world.folder()).isOldFormat()) {
            prompt.whileOpen = [&] { prompt.expectReport(); };
        }
        QElapsedTimer timer;
        timer.start();
        const bool isOpen = addIn->Activate();
        longestMs = qMax(longestMs, timer.elapsed());
        opened += isOpen ? 1 : 0;
        withLosses += isOpen && prompt.asked.size() == 2 ? 1 : 0;
        EXPECT_LE(prompt.asked.size(), 2) << i;
        EXPECT_EQ(bytesOf(isOpen ? oldFile() : world.notesPath()), old.bytes()) << i;
        addIn.reset();
        EXPECT_EQ(notesFiles().size(), isOpen ? prompt.asked.size() + 1 : 1)
            << i << ": " << notesFiles().join(u' ').toStdString();
        for (const QString& name : notesFiles()) {
            QFile::remove(inFolder(name));
        }
    }
    EXPECT_LT(longestMs, 20'000);
    std::printf("%d damaged copies: %d opened, %d of them with losses; longest %lld ms\n", count,
                opened, withLosses, longestMs);
    Clock::setInstance(&clock);
}

} // namespace
