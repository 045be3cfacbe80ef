// Several add-ins in one process: who serves a host, and who may open which notes.
#include "addin/AddIn.h"
#include "framework/ErrorGuards.h"
#include "platform/files/FileSystem.h"
#include "store/NotesDatabase.h"

namespace yrw {

bool AddIn::isBehind() const {
    return m_module.isBehind(*this);
}

bool AddIn::hasToolIn(const IToolbar* toolbar) const noexcept {
    return toolbar != nullptr && ((toolbar == atbComponent.get() && !m_placedBandKey.isEmpty()) ||
                                  (toolbar == atbInterface.get() && m_gridToolPlaced));
}

/// True when another add-in works with the notes of another folder; the user is told which.
bool AddIn::isTurnedAway() {
    QString folder;
    ignoreErrors([&] { folder = folderOfHost(); });
    const QString path = services().files.resolve(FileSystem::join(folder, kNotesDatabaseName));
    AddIn* const first = m_module.otherActive(*this);
    if (folder.isEmpty() || first == nullptr || !m_module.isDatabaseOpen() ||
        m_module.isOpenAt(path)) {
        return false;
    }
    QString host = first->HostProgID();
    ignoreErrors([&] { host = first->m_component->Application()->Name(); });
    prompt().message(QStringLiteral("%1 works with the notes in %2 already.\r\rThe notes in %3 can "
                                    "be opened when those are closed.")
                         .arg(host, m_module.databaseFolder(), folder),
                     QStringLiteral("Notes Problem"), PromptIcon::Exclamation);
    return true;
}

} // namespace yrw
