#include "platform/clock/Clock.h"
#include "platform/component/AutomationError.h"
#include "platform/dao/Condition.h"
#include "platform/dao/Database.h"
#include "platform/files/FileSystem.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace yrw;
using namespace yrw::dao;

/// A table of three rows; lives as long as the process.
struct Table {
    QTemporaryDir folder;
    FileSystem files;
    Ref<Workspace> workspace = createWorkspace({Clock::instance(), files});
    Ref<Database> database = workspace->CreateDatabase(folder.filePath(QStringLiteral("f.mdb")));

    Table() {
        database->RunScript(QStringLiteral(
            "CREATE TABLE t (RecordID INTEGER PRIMARY KEY, A TEXT(255) COLLATE NOCASE, B LONG, "
            "D DATETIME); INSERT INTO t VALUES (1, 'one', 1, '2026-01-01 10:00:00'), "
            "(2, NULL, NULL, NULL), (3, 'it''s \"3\"', -3, '1899-12-30 00:00:00')"));
    }
    [[nodiscard]] qint64 rows(const QString& condition) const {
        const auto all = database->OpenRecordset(QStringLiteral("t"));
        all->setFilter(condition);
        const auto found = all->OpenRecordset(RecordsetType::Snapshot);
        return found->RecordCount();
    }
};

Table& table() {
    static Table instance;
    return instance;
}

/// Runs work; only the refusals that callers are told of may come.
template <typename Work>
bool accepted(const Work& work) {
    try {
        work();
        return true;
    } catch (const AutomationError& error) {
        if (error.number() != kErrorBadCondition && error.number() != kErrorNotInCollection) {
            std::abort();
        }
        return false;
    }
}

} // namespace

/// Any text is read or refused; what is read selects among the rows and changes none. A condition
/// and its opposite never select a row both.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    accepted([&] { static_cast<void>(table().database->OpenRecordset(text)); });
    accepted([&] { static_cast<void>(parseOrder(text)); });
    qint64 selected = 0;
    if (accepted([&] { selected = table().rows(text); })) {
        qint64 others = 0;
        const bool both = accepted([&] { others = table().rows(u"NOT (" + text + u')'); });
        if (both && selected + others > 3) {
            std::abort();
        }
    }
    if (table().database->OpenRecordset(QStringLiteral("t"))->RecordCount() != 3) {
        std::abort();
    }
    return 0;
}
