#include "tests/dao/DaoFixture.h"
#include "tests/dao/FaultyDisk.h"

namespace yrw::dao {

namespace {

class FaultsTest : public DaoTest, public testing::WithParamInterface<FaultyDisk::Fault> {
protected:
    FaultsTest() {
        // The fixture's own connection does not go through the shim.
        database->Close();
        shimmed = createWorkspace({clock, files})->OpenDatabase(path());
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
        const int number = errorOf([&] { addNoteWithReminder(*shimmed); });
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
        ASSERT_EQ(errorOf([&] { addNoteWithReminder(*shimmed); }), 0) << "the connection goes on";
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

} // namespace

} // namespace yrw::dao
