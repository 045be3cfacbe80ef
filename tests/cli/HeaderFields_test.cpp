#include "tests/cli/CommandFixture.h"
#include "tests/support/Raised.h"

namespace yrw::test {
namespace {

/// Opens the notes database as a host does; its error's words, empty for none.
QString errorOfHost(const dao::EngineServices& engine, const QString& path) {
    HostDataHelper helper;
    return raisedBy([&] {
               const Ref<dao::Workspace> workspace = dao::createWorkspace(engine);
               static_cast<void>(
                   openNotesDatabase(helper, workspace, path)->OpenRecordset(schema::kQryNotes));
           })
        .description();
}

constexpr int kHeaderBytes = 100;
constexpr int kBytesPerTest = 10;

/// Every field of a database file's header, a few bytes in each test.
class FlippedBits : public CommandFixture, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(, FlippedBits, testing::Range(0, kHeaderBytes, kBytesPerTest));

TEST_P(FlippedBits, OpenOrAreRefusedByHostAndCommandInWordsThatNameTheFile) {
    const QByteArray good = read(notesPath());
    for (int bit = GetParam() * 8; bit < (GetParam() + kBytesPerTest) * 8; ++bit) {
        QByteArray flipped = good;
        char& at = flipped[bit / 8];
        at = char(uchar(at) ^ (1U << (bit % 8)));
        for (const char* const suffix : {"-wal", "-shm", "-journal"}) {
            QFile::remove(notesPath() + QLatin1String(suffix));
        }
        write(notesPath(), flipped);
        const QString host = errorOfHost({clock, files}, notesPath());
        EXPECT_TRUE(host.isEmpty() || host.contains(notesPath())) << bit << qPrintable(host);
        write(notesPath(), flipped);
        const Outcome command = run("list");
        EXPECT_EQ(command.status == kExitDone, host.isEmpty()) << bit << qPrintable(command.err);
        EXPECT_TRUE(host.isEmpty() || command.err.contains(notesPath())) << bit;
    }
    // Two bits of the schema's number make it an older one, which host and command upgrade after a
    // copy.
    const int copies = GetParam() == 60 ? 4 : 0;
    EXPECT_LE(QDir(folder.path()).entryList({QStringLiteral("*.schema*")}).size(), copies);
}

} // namespace
} // namespace yrw::test
