// Showing the notes window.
#include "addin/AddIn.h"
#include "addin/BusySign.h"
#include "framework/ErrorGuards.h"
#include "notes_window/frmMain.h"
#include "store/NoteReading.h"

#include <QScopeGuard>

namespace yrw {

void AddIn::ShowNotes(const Ref<IRecord>& record, qint64 noteRecordID) {
    if (!isDatabaseOpen()) {
        return;
    }
    const Ref<AddIn> keep(this); // a host may let go while the window is open
    ignoreErrors([this] { m_module.replacedFile().look(true); });
    if (!isDatabaseOpen()) {
        return;
    }
    const BusySign busy(prompt(), m_interface, QStringLiteral("Showing Notes..."));
    const bool hadPopup = m_autoNotes.closePopup();
    reportErrors(services().utility, QStringLiteral("YRWNOTES.AddIn.ShowNotes"),
                 QStringLiteral("Could not show Notes"), QStringLiteral("Notes Problem"), [&] {
                     becomeServed();
                     const bool byNote = !record && noteRecordID != 0;
                     showNotesWindow(byNote ? recordOfNote(noteRecordID) : record, noteRecordID);
                 });
    bool isToOpenAgain = false;
    ignoreErrors([&] { isToOpenAgain = m_module.replacedFile().windowClosed(*this); });
    ignoreErrors([this] {
        if (isDatabaseOpen()) {
            m_popups.closeSettled();
        }
    });
    repaintGrids();
    if (hadPopup && !m_released) {
        m_autoNotes.check(mobjUpperGridClass, true);
    }
    if (isToOpenAgain) {
        ShowNotes(record, noteRecordID);
    }
}

/// The host's record that a note is kept on; nothing for a note on no record, or whose record or
/// kind of record the host does not have any more.
Ref<IRecord> AddIn::recordOfNote(qint64 noteRecordID) {
    const std::optional<OwnerKey> key = ownerOfNote(dataHelper(), noteRecordID);
    const QString objectKey = key ? HostUtility::NullToText(key->objectKey) : QString();
    Ref<IRecord> owner;
    ignoreErrors([&] {
        const Ref<IHostApplication> host = m_component->Application();
        const Ref<IObjectDefinition> definition =
            host && !objectKey.isEmpty() ? host->ObjectDefinition(objectKey) : nullptr;
        owner = definition ? definition->Collection()->Item(key->recordID) : nullptr;
    });
    return owner;
}

void AddIn::showNotesWindow(const Ref<IRecord>& record, qint64 noteRecordID) {
    const QPointer<frmMain> window(new frmMain(*this, m_module));
    const QPointer<Form> form(window.data());
    m_notesWindows.add(form);
    const auto end = qScopeGuard([this, form] {
        m_notesWindows.remove(form);
        if (form) {
            form->deleteLater();
        }
    });
    window->Initialise(Ref<INotesAddIn>(this), record, noteRecordID);
    prompt().setMousePointer(MousePointer::Default); // the user is waited for
    window->showModal(hostWindow());
}

} // namespace yrw
