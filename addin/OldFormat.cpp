#include "addin/OldFormat.h"

#include "addin/AddInHost.h"
#include "addin/ConversionProgress.h"
#include "addin/Module1.h"
#include "platform/prompt/Prompt.h"
#include "store/FormatSwap.h"
#include "store/NotesImport.h"

#include <QFileInfo>
#include <QScopedValueRollback>

namespace yrw {

namespace {

const QString kTitle = QStringLiteral("Convert Notes Database");

/// While events are handled in the middle of it, another add-in may be told to begin.
bool isAtIt = false;

} // namespace

bool OldFormat::isAt(const QString& folder) const {
    return FormatSwap(m_module.services().files, folder).isOldFormat();
}

void OldFormat::finish(const QString& folder) {
    if (isAtIt) {
        return;
    }
    const QScopedValueRollback<bool> atIt(isAtIt, true);
    ConversionProgress progress(m_module.services().clock, m_host.window());
    const FormatSwap swap(m_module.services().files, folder);
    if (const auto converted = swap.finish([&] { return progress.waits(); })) {
        tellOf(*converted);
    }
}

bool OldFormat::convert(const QString& folder) {
    if (isAtIt) {
        return false;
    }
    const QScopedValueRollback<bool> atIt(isAtIt, true);
    const FormatSwap swap(m_module.services().files, folder);
    const bool wanted = isWanted(swap);
    return !swap.isOldFormat() || (wanted && run(swap));
}

bool OldFormat::isWanted(const FormatSwap& swap) const {
    Prompt& prompt = m_module.services().prompt;
    const auto answersYes = [&](const QString& text, PromptIcon icon) {
        return prompt.question(text, kTitle, PromptButtons::YesNo, icon, PromptAnswer::No) ==
               PromptAnswer::Yes;
    };
    if (!answersYes(QStringLiteral("The notes database in this folder has an older format. Would "
                                   "you like to convert it now? The old file is kept."),
                    PromptIcon::Question)) {
        return false;
    }
    const auto computers = swap.openElsewhere();
    if (!computers) {
        return true;
    }
    const QString where = computers->isEmpty()
                              ? QString()
                              : QStringLiteral(" (%1)").arg(computers->join(QStringLiteral(", ")));
    return answersYes(QStringLiteral("The file Notes.ldb says that another program may have the "
                                     "old notes database open%1. What that one still writes to the "
                                     "old file will not be in the new one.\r\rWould you like to "
                                     "convert it all the same?")
                          .arg(where),
                      PromptIcon::Exclamation);
}

/// True when the user did not stop it and nothing failed.
bool OldFormat::run(const FormatSwap& swap) {
    const Services& services = m_module.services();
    ConvertedNotes converted;
    FormatSwap::End end = FormatSwap::End::Stopped;
    try {
        ConversionProgress progress(services.clock, m_host.window());
        const MakeNotesFile make = [&](const QString& oldFile,
                                       const QString& newFile) -> std::optional<QStringList> {
            ImportReport report;
            const ImportEnd imported = importIntoNewFile(
                oldFile, newFile, {services.clock, services.files}, {},
                [&](int percent) { return progress.converts(percent); }, report);
            return imported == ImportEnd::Imported ? std::optional(report.losses()) : std::nullopt;
        };
        end = swap.convert(
            make, [&] { return progress.waits(); }, converted);
    } catch (const AutomationError& error) {
        services.prompt.message(
            QStringLiteral("The notes database could not be converted.\r\r%1\r\rNothing was "
                           "changed in the old file.")
                .arg(error.description()),
            kTitle, PromptIcon::Exclamation);
        return false;
    }
    if (end == FormatSwap::End::Converted) {
        tellOf(converted);
    }
    return end != FormatSwap::End::Stopped;
}

void OldFormat::tellOf(const ConvertedNotes& converted) const {
    if (converted.report.isEmpty()) {
        return;
    }
    m_module.services().prompt.message(
        QStringLiteral("The notes database was converted, but not everything in it arrived. What "
                       "did not is written in %1.\r\rThe old file is kept as %2.")
            .arg(converted.report, QFileInfo(converted.oldFile).fileName()),
        kTitle, PromptIcon::Exclamation);
}

} // namespace yrw
