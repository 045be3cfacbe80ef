#include "addin/AddIn.h"

#include "addin/BusySign.h"
#include "addin/DailyCopyMaker.h"
#include "addin/Tools.h"
#include "framework/ErrorGuards.h"
#include "framework/SettingsWatch.h"
#include "platform/richtext/LocalFiles.h"
#include "store/NoteReading.h"

#include <QScopedValueRollback>

namespace yrw {

AddIn::AddIn() : m_module(Module1::instance()) {
    m_module.add(*this);
    Class_Initialize();
}

AddIn::~AddIn() {
    Class_Terminate();
}

// Event handlers.

void AddIn::Class_Initialize() {
    m_module.InitialiseOLEServers();
    m_module.loadSwitches();
    m_module.settingsWatch().tell();
}

void AddIn::Class_Terminate() noexcept {
    // What ends here may still be asked for by what it closes: a reference taken and let go
    // meanwhile must not end this object a second time.
    addRef();
    m_connections.clear();
    releaseAll();
    m_upper.connect(nullptr, nullptr, nullptr);
    m_lower.connect(nullptr, nullptr, nullptr);
    m_module.hostLeft(*this);
    m_module.remove(*this);
}

void AddIn::atbComponent_Click(ITool& tool) {
    if (tool.id() == kShowNotesToolId && reachesDatabase(tool)) {
        ShowNotes(nullptr, 0);
    }
}

void AddIn::atbInterface_BandOpen(IBand& band) {
    if (!m_released) {
        m_tools.placeIn(band);
    }
}

void AddIn::atbInterface_Click(ITool& tool) {
    if (tool.id() != kGridNotesToolId) {
        return;
    }
    const BusySign busy(m_module.services().prompt, m_host, {});
    if (reachesDatabase(tool) && m_host.hostInterface) {
        ShowNotes(m_host.currentRecord(), 0);
    }
}

void AddIn::stbMain_DblClick() {
    if (m_host.stbMain && !m_standing.isBehind() && m_host.stbMain->tag() == AutoNotes::kMarker) {
        ShowNotes(m_autoNotes.currentRecord(), 0);
    }
}

void AddIn::mfrmTimer_CheckReminders(bool& cancel) {
    m_reminderCheck.minutePassed(cancel);
}

void AddIn::mfrmTimer_CheckWindowFocus() {
    m_autoNotes.watchFocus();
}

// The host's objects.

void AddIn::setComponent(IHostComponent* component) {
    const Ref<AddIn> keep(this);
    removeTools();
    m_connections.clear();
    m_module.hostLeft(*this);
    m_host.take(component);
    m_module.hostTaken(*this);
    ignoreErrors([this] { connectEvents(); });
    if (m_standing.isAtWork()) {
        start();
    }
}

/// Connects a handler that keeps the add-in alive while it runs and ends silently on any error.
template <class... Args, class Handler>
void AddIn::on(Event<Args...>& event, Handler handler) {
    m_connections.push_back(event.connect([this, handler](Args... args) {
        const Ref<AddIn> keep(this);
        ignoreErrors([&] { handler(args...); });
    }));
}

void AddIn::connectEvents() {
    m_upper.connect(m_host.mobjUpperGridClass.get(), m_host.dbgUpper.get(),
                    m_host.upperSplits.get());
    m_lower.connect(m_host.mobjLowerGridClass.get(), m_host.dbgLower.get(),
                    m_host.lowerSplits.get());
    if (m_host.atbComponent) {
        on(m_host.atbComponent->Click, [this](ITool& tool) { atbComponent_Click(tool); });
    }
    if (m_host.atbInterface) {
        on(m_host.atbInterface->BandOpen, [this](IBand& band) { atbInterface_BandOpen(band); });
        on(m_host.atbInterface->Click, [this](ITool& tool) { atbInterface_Click(tool); });
    }
    if (m_host.stbMain) {
        on(m_host.stbMain->DblClick, [this] { stbMain_DblClick(); });
    }
}

/// True when the database is open and it is for this add-in to show it. A tool clicked while it is
/// closed is switched off.
bool AddIn::reachesDatabase(ITool& tool) const {
    if (!m_module.isDatabaseOpen()) {
        tool.setEnabled(false);
    }
    return m_standing.isDatabaseOpen() && !m_standing.isBehind();
}

// Life.

bool AddIn::Activate() {
    const Ref<AddIn> keep(this);
    if (m_activating) {
        return false; // the user is being asked already
    }
    const QScopedValueRollback<bool> activating(m_activating, true);
    if (!m_opening.mayOpen(m_module.otherActive(*this))) {
        return false;
    }
    m_released = false;
    m_module.serve(m_host);
    ignoreErrors([this] { m_opening.OpenDatabase(); });
    if (m_released || !m_module.isDatabaseOpen()) {
        const bool released = m_released; // by the host, while the user was asked
        releaseAll();
        m_released = released;
        return false;
    }
    m_standing.setAtWork(true);
    m_module.activated(*this);
    start();
    return true;
}

void AddIn::start() noexcept {
    m_tools.place();
    ignoreErrors([this] { startTimer(); });
    richtext::removeLeftCopies();
    databaseOpened();
}

void AddIn::startTimer() {
    frmTimer* const form = &mfrmTimer.start(m_module);
    m_reminderCheck.begin();
    QObject::connect(form, &frmTimer::CheckReminders, form, [this](bool& cancel) {
        const Ref<AddIn> keep(this);
        ignoreErrors([&] { mfrmTimer_CheckReminders(cancel); });
    });
    QObject::connect(form, &frmTimer::CheckWindowFocus, form, [this] {
        const Ref<AddIn> keep(this);
        ignoreErrors([this] { mfrmTimer_CheckWindowFocus(); });
    });
    new DailyCopyMaker(m_module, form);
    mfrmTimer.enableReminders(true);
}

/// Stops the checks and takes the tool away from the user. For whoever wants the notes silent:
/// nothing here calls it.
void AddIn::stopReminders() {
    mfrmTimer.enableReminders(false);
    m_tools.switchOff();
}

void AddIn::DeActivate() {
    const Ref<AddIn> keep(this);
    releaseAll();
    m_autoNotes.forgetCurrentRecord();
}

/// Takes back what `Activate` did; every step on its own, so that one that fails stops no other.
void AddIn::releaseAll() noexcept {
    const bool wasBehind = m_standing.isBehind();
    m_released = true;
    // What is on screen saves when it is unloaded, so that goes first.
    m_notesWindows.unloadAll();
    ignoreErrors([this] { m_popups.closeAll(); });
    m_standing.setAtWork(false);
    removeTools();
    m_module.letGo(*this); // the last one closes database, workspace and application view
    mfrmTimer.end();
    m_notesWindows.clear();
    m_upper.stop();
    m_lower.stop();
    m_notesSeek.close();
    m_autoNotes.closePopup();
    if (!wasBehind) {
        m_autoNotes.clear();
    }
    repaintGrids();
}

void AddIn::removeTools() noexcept {
    m_tools.remove(
        [this](const IToolbar* toolbar) { return m_module.isSharedToolbar(*this, toolbar); });
}

// What windows, hosts and the other add-ins ask.

void AddIn::ShowNotes(const Ref<IRecord>& record, qint64 noteRecordID) {
    if (!m_standing.isDatabaseOpen()) {
        return;
    }
    const Ref<AddIn> keep(this); // a host may let go while the window is open
    ignoreErrors([this] { m_module.replacedFile().look(true); });
    if (!m_standing.isDatabaseOpen()) {
        return;
    }
    const Services& services = m_module.services();
    const BusySign busy(services.prompt, m_host, QStringLiteral("Showing Notes..."));
    const bool hadPopup = m_autoNotes.closePopup();
    reportErrors(services.utility, QStringLiteral("YRWNOTES.AddIn.ShowNotes"),
                 QStringLiteral("Could not show Notes"), QStringLiteral("Notes Problem"), [&] {
                     m_module.serve(m_host);
                     Ref<IRecord> owner = record;
                     if (!record && noteRecordID != 0) {
                         const auto key = ownerOfNote(m_module.dataHelper(), noteRecordID);
                         owner = key ? m_host.recordOf(key->objectKey.toString(), key->recordID)
                                     : nullptr;
                     }
                     m_notesWindows.show(*this, m_module, owner, noteRecordID, m_host.window());
                 });
    bool isToOpenAgain = false;
    ignoreErrors([&] { isToOpenAgain = m_module.replacedFile().windowClosed(*this); });
    ignoreErrors([this] {
        if (m_standing.isDatabaseOpen()) {
            m_popups.closeSettled();
        }
    });
    repaintGrids();
    if (hadPopup && !m_released) {
        m_autoNotes.check(m_host.mobjUpperGridClass, true);
    }
    if (isToOpenAgain) {
        ShowNotes(record, noteRecordID);
    }
}

bool AddIn::CheckForReminders() {
    const Ref<AddIn> keep(this);
    return m_reminderCheck.run(false);
}

bool AddIn::CheckingForReminders() const {
    return m_module.switchOn(NotesSwitch::CheckForReminders);
}

bool AddIn::hasToolIn(const IToolbar* toolbar) const noexcept {
    return m_tools.isIn(toolbar);
}

void AddIn::databaseOpened() noexcept {
    m_upper.start();
    m_lower.start();
}

void AddIn::marksSwitched(bool goOn) noexcept {
    if (goOn) {
        m_upper.marksSwitchedOn();
        m_lower.marksSwitchedOn();
    }
    repaintGrids();
}

void AddIn::goOnWithFileThere() {
    m_module.closeDatabase();
    m_opening.OpenDatabase();
    repaintGrids();
}

void AddIn::repaintGrids() noexcept {
    m_upper.refresh();
    m_lower.refresh();
}

} // namespace yrw
