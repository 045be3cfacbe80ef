#include "notes_window/ToolbarFile.h"

#include "notes_window/WindowContext.h"
#include "platform/files/FileSystem.h"
#include "platform/prompt/Prompt.h"
#include "platform/toolbar/Toolbar.h"

#include <QFile>

namespace yrw {

void loadToolbar(Toolbar& toolbar, WindowContext& context) {
    const QString inFolder = QStringLiteral("\\support\\notes\\Menus.tb");
    const FileSystem& files = context.services().files;
    QStringList problems;
    QStringList missing;
    for (const QString& folder :
         {context.notes().databaseFolder(), context.notes().templateFolder()}) {
        const QString path = folder + inFolder;
        if (!files.fileExists(path)) {
            missing.append(QStringLiteral("%1 is not there.").arg(files.resolve(path)));
            continue;
        }
        try {
            toolbar.loadLayout(files, path);
            break;
        } catch (const AutomationError& error) {
            problems.append(error.description());
        }
    }
    if (toolbar.bandCount() == 0) {
        problems = problems.isEmpty() ? missing : problems;
        QFile builtIn(QStringLiteral(":/notes_window/Menus.tb"));
        builtIn.open(QIODevice::ReadOnly);
        toolbar.loadLayoutText(builtIn.readAll(), builtIn.fileName());
    }
    if (!problems.isEmpty()) {
        context.prompt().message(
            QStringLiteral("The toolbar layout cannot be used; another one is shown.") +
                QStringLiteral("\r\r") + problems.join(QLatin1Char('\r')),
            QStringLiteral("Notes Problem"), PromptIcon::Exclamation);
    }
}

} // namespace yrw
