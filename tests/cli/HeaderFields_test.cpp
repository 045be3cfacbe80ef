#include "tests/cli/CommandFixture.h"

namespace yrw::test {
namespace {

using HeaderFieldsTest = CommandFixture;

QByteArray read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

/// Opens the notes database as a host does; its error's words, empty for none.
QString errorOfHost(const dao::EngineServices& engine, const QString& path) {
    HostDataHelper helper;
    try {
        const Ref<dao::Workspace> workspace = dao::createWorkspace(engine);
        static_cast<void>(
            openNotesDatabase(helper, workspace, path)->OpenRecordset(schema::kQryNotes));
        return {};
    } catch (const AutomationError& error) {
        return error.description();
    }
}

struct HeaderField {
    const char* name;
    int offset;
    int bytes;
};

void PrintTo(const HeaderField& field, std::ostream* stream) {
    *stream << field.name;
}

/// The fields of a database file's first hundred bytes.
constexpr HeaderField kFields[] = {
    {"magic", 0, 16},          {"page_size", 16, 2},
    {"write_version", 18, 1},  {"read_version", 19, 1},
    {"reserved", 20, 1},       {"fractions", 21, 3},
    {"change_counter", 24, 4}, {"pages", 28, 4},
    {"first_free", 32, 4},     {"free_pages", 36, 4},
    {"schema_cookie", 40, 4},  {"schema_format", 44, 4},
    {"cache_size", 48, 4},     {"largest_root", 52, 4},
    {"encoding", 56, 4},       {"user_version", 60, 4},
    {"vacuum_mode", 64, 4},    {"application_id", 68, 4},
    {"unused", 72, 20},        {"version_valid_for", 92, 4},
    {"engine_version", 96, 4},
};

class FlippedBits : public HeaderFieldsTest, public testing::WithParamInterface<HeaderField> {};

INSTANTIATE_TEST_SUITE_P(, FlippedBits, testing::ValuesIn(kFields),
                         [](const auto& field) { return std::string(field.param.name); });

TEST_P(FlippedBits, OpenOrAreRefusedByHostAndCommandInWordsThatNameTheFile) {
    const QByteArray good = read(notesPath());
    const auto& [name, offset, bytes] = GetParam();
    for (int bit = 0; bit < bytes * 8; ++bit) {
        QByteArray flipped = good;
        char& at = flipped[offset + bit / 8];
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
    const int copies = GetParam().offset == 60 ? 4 : 0;
    EXPECT_LE(QDir(folder.path()).entryList({QStringLiteral("*.schema*")}).size(), copies);
}

} // namespace
} // namespace yrw::test
