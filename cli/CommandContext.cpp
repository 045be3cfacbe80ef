#include "cli/CommandContext.h"

#include "cli/SafeText.h"
#include "platform/component/AutomationError.h"

#include <QFile>

namespace yrw {

void CommandContext::print(const QString& text) const {
    print(text.toUtf8());
}

void CommandContext::print(const QByteArray& bytes) const {
    const QByteArray safe = streams.outIsTerminal ? forTerminal(bytes) : bytes;
    if (streams.out.write(safe) != safe.size()) {
        throw AutomationError(
            kErrorFileWrite, QStringLiteral("yrwnotes"),
            QStringLiteral("The output could not be written: %1").arg(streams.out.errorString()));
    }
}

void CommandContext::complain(const QString& text) const {
    yrw::complain(streams, text);
}

Ref<Note> CommandContext::note(qint64 id) const {
    try {
        return application().Notes()->note(id);
    } catch (const AutomationError& error) {
        if (error.number() != kErrorRecordNotFound) {
            throw;
        }
        throw AutomationError(kErrorRecordNotFound, QStringLiteral("yrwnotes"),
                              QStringLiteral("Note %1 was not found.").arg(id));
    }
}

QByteArray CommandContext::readFile(const QString& path) const {
    if (path == u"-") {
        return streams.in.readAll();
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw AutomationError(
            kErrorFileRead, QStringLiteral("yrwnotes"),
            QStringLiteral("%1 could not be read: %2").arg(path, file.errorString()));
    }
    return file.readAll();
}

} // namespace yrw
