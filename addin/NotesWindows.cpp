#include "addin/NotesWindows.h"

#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "notes_window/frmMain.h"
#include "platform/prompt/Prompt.h"
#include "store/NotesContext.h"

#include <QApplication>
#include <QScopeGuard>

namespace yrw {

void NotesWindows::show(INotesParent& addIn, NotesContext& context, const Ref<IRecord>& record,
                        qint64 noteRecordID, QWidget* host) {
    const QPointer<frmMain> window(new frmMain(context));
    const QPointer<Form> form(window.data());
    m_windows.append(form);
    const auto end = qScopeGuard([this, form] {
        m_windows.removeAll(form);
        if (form) {
            form->deleteLater();
        }
    });
    window->Initialise(Ref<INotesParent>(&addIn), record, noteRecordID);
    context.services().prompt.setMousePointer(MousePointer::Default); // the user is waited for
    window->showModal(host);
}

bool NotesWindows::isOnTop() const {
    return isOpen() && QApplication::activePopupWidget() == nullptr &&
           QApplication::activeModalWidget() == m_windows.last();
}

bool NotesWindows::unloadAll() {
    const QList<QPointer<Form>> windows = m_windows;
    bool areGone = true;
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
        const bool isGone =
            ignoreErrors([&] { areGone = (!*window || (*window)->unload()) && areGone; });
        areGone = areGone && isGone;
    }
    return areGone;
}

} // namespace yrw
