// import: brings notes of the older format along.
#include "cli/CommandContext.h"
#include "cli/Interrupt.h"
#include "cli/OutputFile.h"
#include "cli/SafeText.h"
#include "host/core/DeskApplication.h"
#include "platform/component/AutomationError.h"
#include "platform/jet/JetFile.h"
#include "store/FormatSwap.h"
#include "store/NotesImport.h"

#include <QFileInfo>

#include <optional>

namespace yrw {

namespace {

const QString kMerge = QStringLiteral("merge");
const QString kReport = QStringLiteral("report");

/// Imports as the command line asks.
class Import {
public:
    explicit Import(const CommandContext& context)
        : m_context(context), m_old(QFileInfo(context.line.argument()).absoluteFilePath()) {
        const QString data = context.line.value(QStringLiteral("data"));
        m_folder = context.engine.files.resolve(
            data.isEmpty() ? FileSystem::folderOf(m_old) : QFileInfo(data).absoluteFilePath());
        m_notes = context.engine.files.resolve(FileSystem::join(m_folder, kNotesDatabaseName));
        m_choices.codePage = context.line.number(QStringLiteral("code-page"));
        m_choices.programs = context.line.map(QStringLiteral("map-progid"));
        m_choices.ownerKeys = context.line.map(QStringLiteral("map-key"));
        m_choices.users = context.line.map(QStringLiteral("map-user"));
        m_choices.isDryRun = context.line.isSet(QStringLiteral("dry-run"));
    }

    ExitStatus run() {
        requireFile();
        std::optional<OutputFile> output;
        if (m_context.line.isSet(kReport)) {
            output.emplace(m_context.line.value(kReport),
                           QStringList{m_old, m_notes, deskDatabasePath(m_folder)});
        }
        if (bringAlong() == ImportEnd::Stopped) {
            m_context.complain(QStringLiteral("Stopped; nothing was imported."));
            return kExitFailed;
        }
        printReport(output);
        return sayEnd();
    }

private:
    /// A wrong name is told as such, and not as the lack of a database beside it.
    void requireFile() const {
        if (!QFileInfo(m_old).isFile()) {
            throw AutomationError(kErrorCannotOpenDatabase, QStringLiteral("yrwnotes"),
                                  QStringLiteral("%1 is not there.").arg(m_old));
        }
        if (!QFileInfo(m_folder).isDir()) {
            throw AutomationError(kErrorCannotOpenDatabase, QStringLiteral("yrwnotes"),
                                  QStringLiteral("There is no folder %1.").arg(m_folder));
        }
    }

    ImportEnd bringAlong() {
        if (isSameFile(m_old, m_notes)) {
            return swap();
        }
        if (m_context.line.isSet(kMerge)) {
            return merge();
        }
        if (QFileInfo(m_notes).exists()) {
            throw AutomationError(
                kErrorInvalidOperation, QStringLiteral("yrwnotes"),
                QStringLiteral("%1 is there already; --merge adds the old notes to those in it.")
                    .arg(m_notes));
        }
        m_choices.knownUsers = usersOfHost();
        return watched([&](const WorkStep& step) {
            return importIntoNewFile(m_old, m_notes, m_context.engine, m_choices, step, m_report);
        });
    }

    ImportEnd merge() {
        CommandStore store(m_context.engine, m_folder,
                           m_context.line.value(QStringLiteral("user")));
        m_choices.knownUsers = store.users();
        const Ref<dao::Database> notes = store.database();
        return watched([&](const WorkStep& step) {
            return mergeOldNotes(m_old, *notes, m_context.engine, m_choices, step, m_report);
        });
    }

    /// The old file is the folder's own notes database: a new one takes its place.
    ImportEnd swap() {
        if (!jet::isJetFile(m_notes) || m_context.line.isSet(kMerge)) {
            throw AutomationError(
                kErrorInvalidOperation, QStringLiteral("yrwnotes"),
                QStringLiteral("%1 is the notes database itself; %2.")
                    .arg(m_notes, jet::isJetFile(m_notes)
                                      ? QStringLiteral("it is converted without --merge")
                                      : QStringLiteral("it is not of the older format")));
        }
        m_choices.knownUsers = usersOfHost();
        return watched([&](const WorkStep& step) { return convert(step); });
    }

    ImportEnd convert(const WorkStep& step) {
        if (m_choices.isDryRun) {
            // The name that the new file has meanwhile: that of the old one is taken.
            return importIntoNewFile(m_old, m_notes + QStringLiteral(".converted"),
                                     m_context.engine, m_choices, step, m_report);
        }
        ConvertedNotes converted;
        const auto make = [&](const QString& oldFile,
                              const QString& newFile) -> std::optional<QStringList> {
            m_report = {};
            if (importIntoNewFile(oldFile, newFile, m_context.engine, m_choices, step, m_report) ==
                ImportEnd::Stopped) {
                return std::nullopt;
            }
            return m_report.losses();
        };
        const FormatSwap swap(m_context.engine.files, m_folder);
        switch (swap.convert(
            make, [&] { return step(0); }, converted)) {
        case FormatSwap::End::Stopped:
            return ImportEnd::Stopped;
        case FormatSwap::End::NothingOld:
            throw AutomationError(kErrorInvalidOperation, QStringLiteral("yrwnotes"),
                                  QStringLiteral("%1 is converted already.").arg(m_notes));
        case FormatSwap::End::Converted:
            break;
        }
        m_context.complain(QStringLiteral("The old database is %1 now.").arg(converted.oldFile));
        return ImportEnd::Imported;
    }

    template <class Work>
    ImportEnd watched(const Work& work) {
        const Interrupt interrupt;
        ProgressLine progress = m_context.progress(QStringLiteral("rows read"));
        return work([&](int) {
            progress.reach(m_report.rowsRead());
            return !interrupt.isWished();
        });
    }

    /// Where codes are mapped, the host tells whose numbers the new ones are.
    [[nodiscard]] QList<UserName> usersOfHost() const {
        if (m_choices.users.isEmpty() || !QFileInfo::exists(deskDatabasePath(m_folder))) {
            return {};
        }
        DeskStart start;
        start.folder = m_folder;
        start.userCode = m_context.line.value(QStringLiteral("user"));
        start.createMissing = false;
        return userNamesOf(DeskApplication::open(m_context.engine, start)->Users());
    }

    void printReport(std::optional<OutputFile>& output) const {
        QString text;
        const QStringList lines = m_report.lines();
        for (const QString& line : lines) {
            text += onOneLine(line) + u'\n';
        }
        if (!output) {
            m_context.print(text);
            return;
        }
        output->write(text.toUtf8());
        output->finish();
    }

    [[nodiscard]] ExitStatus sayEnd() const {
        if (m_choices.isDryRun) {
            m_context.complain(QStringLiteral("Nothing was written."));
        }
        if (m_report.isComplete()) {
            return kExitDone;
        }
        m_context.complain(QStringLiteral("Not everything of %1 arrived; the report says what did "
                                          "not.")
                               .arg(m_old));
        return kExitNothing;
    }

    const CommandContext& m_context;
    QString m_old;
    QString m_folder;
    QString m_notes; ///< the notes database that the old notes go to
    ImportChoices m_choices;
    ImportReport m_report;
};

} // namespace

ExitStatus importNotes(const CommandContext& context) {
    return Import(context).run();
}

} // namespace yrw
