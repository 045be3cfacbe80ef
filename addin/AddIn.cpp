#include "addin/AddIn.h"

#include "addin/BusySign.h"
#include "addin/DailyCopyMaker.h"
#include "addin/Tools.h"
#include "addin/frmTimer.h"
#include "framework/ErrorGuards.h"
#include "framework/SettingsWatch.h"
#include "platform/richtext/LocalFiles.h"

#include <QScopedValueRollback>
#include <QTimer>

namespace yrw {

AddIn::AddIn() : m_module(Module1::instance()) {
    m_module.add(*this);
    Class_Initialize();
}

AddIn::~AddIn() {
    Class_Terminate();
}

void AddIn::EndTimer::operator()(frmTimer* form) const noexcept {
    form->end();
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
    m_module.dropHost(*this);
    m_module.remove(*this);
}

void AddIn::atbComponent_Click(ITool& tool) {
    if (tool.id() == kShowNotesToolId && reachesDatabase(tool)) {
        ShowNotes(nullptr, 0);
    }
}

void AddIn::atbInterface_BandOpen(IBand& band) {
    if (!m_released && band.key() == kGridBandKey) {
        placeGridNotesTool(band);
        m_gridToolPlaced = true;
    }
}

void AddIn::atbInterface_Click(ITool& tool) {
    if (tool.id() != kGridNotesToolId) {
        return;
    }
    const BusySign busy(prompt(), {}, {});
    if (reachesDatabase(tool) && m_interface) {
        IGridController* controller = m_interface->CurrentController();
        ShowNotes(controller != nullptr ? controller->CurrentRecord() : nullptr, 0);
    }
}

void AddIn::stbMain_DblClick() {
    if (stbMain && !isBehind() && stbMain->tag() == AutoNotes::kMarker) {
        ShowNotes(m_autoNotes.currentRecord(), 0);
    }
}

void AddIn::mfrmTimer_CheckWindowFocus() {
    if (GetPopupFormCount() == 0) {
        setAutoNoteTimerEnabled(false);
    } else if (!m_interface || !m_interface->IsWindowActive()) {
        cleanUpAutoNotes();
    }
}

// The host's objects.

void AddIn::setComponent(IHostComponent* component) {
    const Ref<AddIn> keep(this);
    removeTools();
    m_connections.clear();
    m_module.dropHost(*this);
    m_component = component;
    takeHostObjects();
    ignoreErrors([this] { connectEvents(); });
    if (m_active) {
        start();
    }
}

void AddIn::setIInterface(IHostInterface* /*interface_*/) {}

/// Takes what the component offers, each object on its own: a host that fails to hand one over
/// still has the use of the others.
void AddIn::takeHostObjects() noexcept {
    const auto take = [this](auto& member, auto ask) {
        member.reset();
        ignoreErrors([&] {
            if (m_component) {
                member = ask();
            }
        });
    };
    const auto gridOf = [](const GuardedPtr<IGridController>& controller) {
        return controller ? controller->Grid() : nullptr;
    };
    take(m_interface, [this] { return m_component->Interface(); });
    take(mobjUpperGridClass, [this] { return m_component->UpperController(); });
    take(mobjLowerGridClass, [this] { return m_component->LowerController(); });
    take(dbgUpper, [&] { return gridOf(mobjUpperGridClass); });
    take(dbgLower, [&] { return gridOf(mobjLowerGridClass); });
    take(m_upperSplits, [this] { return dbgUpper ? dbgUpper->Splits() : nullptr; });
    take(m_lowerSplits, [this] { return dbgLower ? dbgLower->Splits() : nullptr; });
    m_hostProgID.clear();
    ignoreErrors([this] {
        const Ref<IHostApplication> host = m_component ? m_component->Application() : nullptr;
        m_hostProgID = host ? host->ProgID() : QString();
    });
    take(atbComponent, [this] { return m_component->Toolbar(); });
    take(atbInterface, [this] { return m_interface ? m_interface->Toolbar() : nullptr; });
    take(stbMain, [this] { return m_component->StatusBar(); });
    if (m_module.otherActive(*this) == nullptr) {
        becomeServed(); // else that one goes on until this one is activated
    }
}

void AddIn::becomeServed() noexcept {
    if (m_component) {
        m_module.setHost(m_component.get(), m_hostProgID);
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
    m_upper.connect(mobjUpperGridClass.get(), dbgUpper.get(), m_upperSplits.get());
    m_lower.connect(mobjLowerGridClass.get(), dbgLower.get(), m_lowerSplits.get());
    if (atbComponent) {
        on(atbComponent->Click, [this](ITool& tool) { atbComponent_Click(tool); });
    }
    if (atbInterface) {
        on(atbInterface->BandOpen, [this](IBand& band) { atbInterface_BandOpen(band); });
        on(atbInterface->Click, [this](ITool& tool) { atbInterface_Click(tool); });
    }
    if (stbMain) {
        on(stbMain->DblClick, [this] { stbMain_DblClick(); });
    }
}

/// The host's window; nothing where the host gives none.
QWidget* AddIn::hostWindow() const noexcept {
    QWidget* window = nullptr;
    ignoreErrors([&] { window = m_interface ? m_interface->Window() : nullptr; });
    return window;
}

/// True when the database is open and it is for this add-in to show it. A tool clicked while it is
/// closed is switched off.
bool AddIn::reachesDatabase(ITool& tool) const {
    if (!m_module.isDatabaseOpen()) {
        tool.setEnabled(false);
    }
    return isDatabaseOpen() && !isBehind();
}

// Life.

QString AddIn::Name() {
    return QStringLiteral("Yarrowen Notes");
}

bool AddIn::Activate() {
    const Ref<AddIn> keep(this);
    if (m_activating) {
        return false; // the user is being asked already
    }
    const QScopedValueRollback<bool> activating(m_activating, true);
    if (isTurnedAway()) {
        return false;
    }
    m_released = false;
    becomeServed();
    ignoreErrors([this] { OpenDatabase(); });
    if (m_released || !m_module.isDatabaseOpen()) {
        const bool released = m_released; // by the host, while the user was asked
        releaseAll();
        m_released = released;
        return false;
    }
    m_active = true;
    m_module.activated(*this);
    start();
    return true;
}

void AddIn::start() noexcept {
    ignoreErrors([this] {
        if (atbComponent) {
            m_placedBandKey = placeShowNotesTool(*atbComponent);
        }
    });
    ignoreErrors([this] { switchToolsOn(); });
    ignoreErrors([this] { startTimer(); });
    richtext::removeLeftCopies();
    databaseOpened();
}

/// A tool of the grids' menu that was clicked while the database was closed works again; one that
/// another add-in placed is this one's, too.
void AddIn::switchToolsOn() {
    IBand* band = atbInterface ? atbInterface->findBand(kGridBandKey) : nullptr;
    if (ITool* tool = band != nullptr ? band->findTool(kNotesToolKey) : nullptr) {
        tool->setEnabled(true);
        m_gridToolPlaced = true;
    }
}

void AddIn::startTimer() {
    mfrmTimer.reset(new frmTimer(m_module));
    m_checkWatch.begin(services().clock);
    frmTimer* const form = mfrmTimer.get();
    QObject::connect(form, &frmTimer::CheckReminders, form, [this](bool& cancel) {
        const Ref<AddIn> keep(this);
        ignoreErrors([&] { mfrmTimer_CheckReminders(cancel); });
    });
    QObject::connect(form, &frmTimer::CheckWindowFocus, form, [this] {
        const Ref<AddIn> keep(this);
        ignoreErrors([this] { mfrmTimer_CheckWindowFocus(); });
    });
    new DailyCopyMaker(m_module, form);
    frmTimer::setEnabled(form->ReminderTimer(), true);
}

void AddIn::DeActivate() {
    const Ref<AddIn> keep(this);
    releaseAll();
    m_autoNotes.forgetCurrentRecord();
}

/// Takes back what `Activate` did; every step on its own, so that one that fails stops no other.
void AddIn::releaseAll() noexcept {
    const bool wasBehind = isBehind();
    m_released = true;
    // What is on screen saves when it is unloaded, so that goes first.
    m_notesWindows.unloadAll();
    ignoreErrors([this] { m_popups.closeAll(); });
    m_active = false;
    removeTools();
    m_module.letGo(*this); // the last one closes database, workspace and application view
    mfrmTimer.reset();
    m_notesWindows.clear();
    m_upper.stop();
    m_lower.stop();
    m_notesSeek.close();
    m_autoNotes.closePopup();
    if (!wasBehind) {
        m_autoNotes.cleanUp(stbMain);
    }
    repaintGrids();
}

/// Removes the tools, except those that another add-in of the host needs.
void AddIn::removeTools() noexcept {
    ignoreErrors([this] {
        if (atbComponent && !m_placedBandKey.isEmpty() &&
            !m_module.isSharedToolbar(*this, atbComponent.get())) {
            removeNotesTool(*atbComponent, m_placedBandKey);
        }
    });
    ignoreErrors([this] {
        if (atbInterface && m_gridToolPlaced &&
            !m_module.isSharedToolbar(*this, atbInterface.get())) {
            removeNotesTool(*atbInterface, kGridBandKey);
        }
    });
    m_placedBandKey.clear();
    m_gridToolPlaced = false;
    for (const GuardedPtr<IToolbar>& toolbar : {atbComponent, atbInterface}) {
        ignoreErrors([&] {
            if (toolbar) {
                toolbar->recalcLayout();
                toolbar->refresh();
            }
        });
    }
}

// What windows and handlers ask.

Ref<IApplication> AddIn::NotesApplication() const {
    return m_module.applicationView();
}

bool AddIn::isDatabaseOpen() const {
    return m_active && m_module.isDatabaseOpen();
}

bool AddIn::switchOn(NotesSwitch which) const {
    return m_module.switchOn(which);
}

void AddIn::setSwitch(NotesSwitch which, bool on) {
    m_module.setSwitch(which, on);
}

bool AddIn::CheckingForReminders() const {
    return switchOn(NotesSwitch::CheckForReminders);
}

void AddIn::setReminderTimerEnabled(bool enabled) {
    if (mfrmTimer) {
        frmTimer::setEnabled(mfrmTimer->ReminderTimer(), enabled);
    }
}

void AddIn::setAutoNoteTimerEnabled(bool enabled) {
    if (mfrmTimer) {
        frmTimer::setEnabled(mfrmTimer->AutoNoteTimer(), enabled);
    }
}

void AddIn::repaintGrids() {
    m_upper.refresh();
    m_lower.refresh();
}

void AddIn::checkAutoNotes(const GuardedPtr<IGridController>& controller) noexcept {
    if (isBehind()) {
        return;
    }
    m_autoNotes.forgetCurrentRecord(); // else every row would show the notes of the first
    m_autoNotes.check(controller, true);
}

void AddIn::cleanUpAutoNotes() noexcept {
    if (!isBehind()) { // else what is on screen is the other's
        m_autoNotes.cleanUp(stbMain);
    }
    setAutoNoteTimerEnabled(false);
}

void AddIn::databaseOpened() noexcept {
    m_upper.start();
    m_lower.start();
}

void AddIn::marksSwitchedOn() noexcept {
    m_upper.marksSwitchedOn();
    m_lower.marksSwitchedOn();
}

} // namespace yrw
