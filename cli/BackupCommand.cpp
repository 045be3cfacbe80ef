// backup: a copy of the notes database, made while others work.
#include "cli/CommandContext.h"
#include "cli/OutputFile.h"
#include "platform/dao/Database.h"
#include "platform/dao/OnlineBackup.h"

#include <QFileInfo>

namespace yrw {

namespace {
constexpr int kSliceMs = 200;
} // namespace

ExitStatus backUpNotes(const CommandContext& context) {
    const QString path = QFileInfo(context.line.argument()).absoluteFilePath();
    requireOther(path, context.store->databaseFiles());
    ProgressLine progress = context.progress(QStringLiteral("slices copied"));
    const auto backup = context.store->database()->beginBackup(path, dao::ExistingCopy::Replace);
    while (backup->step(kSliceMs)) {
        progress.step();
    }
    return kExitDone;
}

} // namespace yrw
