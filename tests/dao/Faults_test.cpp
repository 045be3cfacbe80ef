#include "tests/dao/DaoFixture.h"
#include "tests/dao/FaultyDisk.h"

#include <QEventLoop>
#include <QTimer>

namespace yrw::dao {

namespace {

class FaultsTest : public DaoTest, public testing::WithParamInterface<FaultyDisk::Fault> {
protected:
    FaultsTest() {
        // The fixture's own connection does not go through the shim.
        database->Close();
        shimmed = createWorkspace({clock, files})->OpenDatabase(path());
    }

    /// One note with its reminder, in one transaction.
    void addPair() {
        Transaction transaction(*shimmed);
        const qint64 note = add(*shimmed, u"tblNotes"_qs, {{u"PlainNote"_qs, QString(9000, u'n')}});
        add(*shimmed, u"tblReminders"_qs, {{u"NoteID"_qs, note}});
        transaction.commit();
    }

    FaultyDisk disk;
    Ref<Database> shimmed;
};

INSTANTIATE_TEST_SUITE_P(, FaultsTest,
                         testing::Values(FaultyDisk::Fault::Write, FaultyDisk::Fault::Sync,
                                         FaultyDisk::Fault::Space));

TEST_P(FaultsTest, EveryFailureIsAnErrorAndTheFileStaysLegal) {
    qint64 acknowledged = 0;
    int failures = 0;
    for (int calls = 0; calls < 40; ++calls) {
        disk.failAfter(GetParam(), calls);
        const int number = errorOf([&] { addPair(); });
        const bool failed = disk.hasFailed();
        disk.heal();
        if (number == 0) {
            ++acknowledged;
        } else {
            ++failures;
            EXPECT_TRUE(failed);
            EXPECT_EQ(number, kErrorDiskFull);
        }
        ASSERT_TRUE(shimmed->CheckIntegrity().isEmpty());
        ASSERT_EQ(errorOf([&] { addPair(); }), 0) << "the connection goes on";
        ++acknowledged;
    }
    EXPECT_GT(failures, 0);
    shimmed->Close();
    const auto after = workspace->OpenDatabase(path());
    EXPECT_TRUE(after->CheckIntegrity().isEmpty());
    const auto notes = after->OpenRecordset(u"SELECT Count(*) FROM tblNotes"_qs);
    const auto reminders = after->OpenRecordset(u"SELECT Count(*) FROM tblReminders"_qs);
    EXPECT_EQ(notes->value(0).toLongLong(), acknowledged);
    EXPECT_EQ(reminders->value(0), notes->value(0)) << "no half note";
}

class DiskCallsTest : public FaultsTest {};
INSTANTIATE_TEST_SUITE_P(, DiskCallsTest, testing::Values(FaultyDisk::Fault::None));

TEST_P(DiskCallsTest, SeeksOfOneTurnShareTheirReadTransaction) {
    constexpr int kRows = 400;
    addPair();
    const auto seek = shimmed->OpenRecordset(u"tblNotes"_qs, RecordsetType::Table, kReadOnlyOption);
    seek->setIndex(u"OwnerComponentProgID:OwnerObjectKey:OwnerRecordID:Status"_qs);
    long calls = 0;
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&] {
        seek->Seek(u"=", {u"Desk"_qs, u"cu"_qs, 0, 1});
        const long before = disk.calls();
        for (int row = 1; row <= kRows; ++row) {
            seek->Seek(u"=", {u"Desk"_qs, u"cu"_qs, row, 1});
        }
        calls = disk.calls() - before;
        loop.quit();
    });
    loop.exec();
    EXPECT_LE(double(calls) / kRows, 0.1);
}

} // namespace

} // namespace yrw::dao
