#include "addin/ReplacedFile.h"

#include "platform/prompt/Prompt.h"

#include <QFileInfo>

namespace yrw {

bool ReplacedFile::isToBeLeft(const Ref<dao::Database>& database, Prompt& prompt, bool again) {
    if (!database || !database->isOpen() || (m_declined && !again) || !database->isReplaced()) {
        return false;
    }
    const QString path = database->Name();
    const QString what = QFileInfo::exists(path)
                             ? QStringLiteral("Another file was put in the place of the notes "
                                              "database %1 while it was open.")
                             : QStringLiteral("The notes database %1 was deleted or renamed while "
                                              "it was open.");
    const PromptAnswer answer = prompt.question(
        what.arg(path) +
            QStringLiteral(" Nothing is written any more; text that could not be saved is kept as "
                           "a draft.\r\rDo you want to go on with what is there now?"),
        QStringLiteral("Notes Database Replaced"), PromptButtons::YesNo, PromptIcon::Exclamation,
        PromptAnswer::Yes);
    m_declined = answer != PromptAnswer::Yes;
    return !m_declined;
}

} // namespace yrw
