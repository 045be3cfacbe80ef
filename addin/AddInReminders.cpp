// The check for due reminders and the popups that it shows.
#include "addin/AddIn.h"
#include "addin/BusySign.h"
#include "addin/Tools.h"
#include "addin/frmTimer.h"
#include "dialogs/frmReminder.h"
#include "framework/ErrorGuards.h"
#include "platform/clock/Clock.h"
#include "platform/prompt/ErrorLog.h"
#include "store/NoteReading.h"

#include <QScopedValueRollback>
#include <QSet>
#include <QShortcut>
#include <QTimer>

#include <algorithm>

namespace yrw {

namespace {

/// How long, in milliseconds, one turn of the event loop shows popups before others have theirs.
constexpr qint64 kTurnMs = 20;
/// How many popups are looked up with one query.
constexpr int kKeysPerQuery = 200;

const QString kSource = QStringLiteral("YRWNOTES.AddIn.CheckForReminders");
const QString kMessage = QStringLiteral("Could Check for Reminders");
const QString kTitle = QStringLiteral("Problem");

/// The ids of the reminders and of the notes that a query gave, among some keys.
template <class Take>
void readByKeys(HostDataHelper& helper, const QString& query, const QVariantList& keys, Take take) {
    for (qsizetype first = 0; first < keys.size(); first += kKeysPerQuery) {
        const Ref<dao::Recordset> rows = helper.OpenRecordset(helper.BuildQuerySQL(
            query, keys.mid(first, kKeysPerQuery), QStringLiteral("RecordID")));
        for (; !rows->AtEof(); rows->MoveNext()) {
            take(*rows);
        }
        rows->Close();
    }
}

} // namespace

/// Stops the checks and takes the tool away from the user. For whoever wants the notes silent:
/// nothing here calls it.
void AddIn::stopReminders() {
    setReminderTimerEnabled(false);
    IBand* const band = atbComponent ? atbComponent->findBand(m_placedBandKey) : nullptr;
    if (ITool* const tool = band != nullptr ? band->findTool(kNotesToolKey) : nullptr) {
        tool->setEnabled(false);
    }
}

void AddIn::mfrmTimer_CheckReminders(bool& cancel) {
    if (isBehind()) {
        cancel = true; // the other shows them
        return;
    }
    // Reminders wait until the user is done with a window or a box, and with the last check.
    if (m_checkingReminders || isNotesWindowOpen() || Form::isModalOpen()) {
        cancel = true;
    } else {
        const QScopedValueRollback<bool> busy(m_checkingReminders, true);
        // A check that goes on failing is reported once, not every minute.
        cancel = !runCheck(m_checkWatch.isFailing());
    }
    showWhenChecked();
}

bool AddIn::CheckForReminders() {
    return runCheck(false);
}

bool AddIn::runCheck(bool quietly) {
    const Ref<AddIn> keep(this);
    const dao::BriefWaits brief(notesDatabase());
    m_round.quietly = quietly;
    try {
        return checkReminders();
    } catch (...) {
        if (currentError().number() == kErrorLocked) {
            return false; // somebody is writing; the next check comes soon
        }
        reportCheckFailure(std::current_exception(), quietly);
        return false;
    }
}

void AddIn::reportCheckFailure(const std::exception_ptr& failure, bool quietly) {
    try {
        std::rethrow_exception(failure);
    } catch (...) {
        const AutomationError error = currentError();
        if (quietly) {
            appendToErrorLog(services().clock.now(),
                             {error.number(), kSource, error.description(), kMessage, {}, kTitle});
        } else {
            services().utility.ReportError(error, kSource, kMessage, kTitle);
        }
    }
}

bool AddIn::checkReminders() {
    if (isNotesWindowOpen() || !isDatabaseOpen()) {
        return false;
    }
    if (isHostBusy()) {
        return false;
    }
    const BusySign busy(prompt(), m_interface, QStringLiteral("Checking for note reminders..."));
    findDueReminders();
    m_round.hasCalled = false;
    m_round.failure = nullptr;
    showWaitingReminders();
    if (m_round.failure && !m_round.goesOn) {
        std::rethrow_exception(std::exchange(m_round.failure, nullptr));
    }
    return !m_round.failure;
}

/// A host that cannot tell is not busy.
bool AddIn::isHostBusy() noexcept {
    bool busy = false;
    ignoreErrors([&] {
        IGridController* const controller =
            m_interface ? m_interface->CurrentController() : nullptr;
        busy = controller != nullptr && controller->Busy();
    });
    return busy;
}

/// Looks for what is to be shown and what not any longer. What fails is noted with its cause.
void AddIn::findDueReminders() {
    const auto step = [this](const QString& failure, const auto& action) {
        try {
            action();
        } catch (...) {
            if (currentError().number() != kErrorLocked) { // else it is tried again, that is all
                m_checkWatch.failed(failure);
            }
            throw;
        }
    };
    const QString noDatabase = QStringLiteral("The notes database cannot be read.");
    step(noDatabase, [this] { closeAnsweredReminders(); });
    step(QStringLiteral("The host does not tell who works with it."), [this] {
        if (m_component) {
            becomeServed();
            takeCurrentUser();
        }
    });
    step(noDatabase, [this] { m_round.waiting = dueReminders(); });
    m_checkWatch.succeeded(services().clock);
}

/// The current user's due reminders that are not on screen, in the query's order.
std::deque<qint64> AddIn::dueReminders() {
    const QVariant userID = m_component ? QVariant(dataHelper().CurrentUserID()) : QVariant();
    std::deque<qint64> due;
    const Ref<dao::Recordset> rows = yrw::dueReminders(dataHelper(), m_hostProgID, userID);
    for (; !rows->AtEof(); rows->MoveNext()) {
        const qint64 id = rows->value(u"RecordID").toLongLong();
        if (!m_module.reminders().isShown(id)) {
            due.push_back(id);
        }
    }
    rows->Close();
    return due;
}

/// Shows what waits for as long as one turn may last, and leaves the rest to the next turns: each
/// popup is painted soon after it was made, and keys typed meanwhile arrive.
void AddIn::showWaitingReminders() {
    const Clock& clock = services().clock;
    const qint64 begun = clock.monotonicMs();
    int shown = 0;
    while (!m_round.waiting.empty() && (shown == 0 || clock.monotonicMs() - begun < kTurnMs)) {
        const qint64 reminderID = m_round.waiting.front();
        m_round.waiting.pop_front();
        try {
            showReminder(reminderID);
            ++shown;
        } catch (...) {
            // The others are shown all the same; what went wrong is told once.
            m_round.failure = m_round.failure ? m_round.failure : std::current_exception();
        }
    }
    frmReminder* const front = m_module.reminders().front();
    if (shown > 0 && front != nullptr) {
        if (m_round.waiting.empty()) {
            m_module.reminders().putInOrder();
        } else {
            front->bringToFront();
        }
        placeReachKey();
    }
    if (shown > 0 && front != nullptr && !m_round.hasCalled) {
        m_round.hasCalled = true;
        front->callUser(m_module.reminders().count() + int(m_round.waiting.size()));
    }
    if (!m_round.waiting.empty() && !m_round.goesOn && mfrmTimer) {
        m_round.goesOn = true;
        QTimer::singleShot(0, mfrmTimer.get(), [this] {
            const Ref<AddIn> keep(this);
            ignoreErrors([this] { goOnShowing(); });
        });
    }
}

void AddIn::goOnShowing() {
    m_round.goesOn = false;
    if (isNotesWindowOpen() || Form::isModalOpen() || !isDatabaseOpen()) {
        m_round.waiting.clear(); // the next check finds them again
    } else {
        showWaitingReminders();
    }
    if (!m_round.goesOn && m_round.failure) {
        reportCheckFailure(std::exchange(m_round.failure, nullptr), m_round.quietly);
    }
}

/// Shows one reminder, first the window and then what is in it, before anything is painted.
void AddIn::showReminder(qint64 reminderID) {
    const QPointer<frmReminder> popup(new frmReminder(*this));
    QWidget* const host = hostWindow();
    popup->moveToPlace(m_module.reminders().freePlace(), host);
    m_module.reminders().add(reminderID, popup, this);
    try {
        popup->setTag(frmReminder::kTagPrefix + QString::number(reminderID));
        popup->showModeless(host, false);
        const Ref<yrw::Application>& application = m_module.application();
        popup->Initialise(application, application->Reminders()->Item(QVariant(reminderID)));
    } catch (...) {
        m_module.reminders().remove(reminderID);
        if (popup) {
            popup->abandon();
        }
        throw;
    }
}

/// Closes the popups whose reminder was answered elsewhere or is gone, and those whose note is
/// finished or gone. Nothing is written: who acted there has answered.
void AddIn::closeAnsweredReminders() {
    const auto popups = m_module.reminders().popupsOf(this);
    if (popups.empty() || !isDatabaseOpen()) {
        return;
    }
    QVariantList reminderIDs;
    QSet<qint64> notes;
    for (const auto& [id, popup] : popups) {
        reminderIDs.append(id);
        notes.insert(popup->noteID());
    }
    QVariantList noteIDs;
    std::transform(notes.begin(), notes.end(), std::back_inserter(noteIDs),
                   [](qint64 id) { return QVariant(id); });
    QSet<qint64> activeNotes;
    readByKeys(dataHelper(), schema::kTblNotes, noteIDs, [&](const dao::Recordset& row) {
        if (row.value(u"Status").toInt() == int(NoteStatus::Active)) {
            activeNotes.insert(row.value(u"RecordID").toLongLong());
        }
    });
    QSet<qint64> open;
    readByKeys(dataHelper(), schema::kQryReminders, reminderIDs, [&](const dao::Recordset& row) {
        const qint64 id = row.value(u"RecordID").toLongLong();
        const QPointer<frmReminder>& popup = popups.at(id);
        if (popup->isUnanswered(row) && activeNotes.contains(popup->noteID())) {
            open.insert(id);
        }
    });
    for (const auto& [id, popup] : popups) {
        if (popup && !open.contains(id)) {
            popup->abandon();
        }
    }
}

void AddIn::forgetReminder(qint64 reminderID) {
    m_module.reminders().remove(reminderID);
    if (m_module.reminders().isEmpty()) {
        delete m_reachKey;
    }
    if (frmReminder* const front = m_released ? nullptr : m_module.reminders().front()) {
        front->bringToFront();
    }
}

/// The one key that gives a popup the keyboard; it is there while a popup is.
void AddIn::placeReachKey() {
    QWidget* const host = hostWindow();
    if (m_reachKey || host == nullptr) {
        return;
    }
    m_reachKey = new QShortcut(frmReminder::kReachKey, host);
    m_reachKey->setContext(Qt::ApplicationShortcut);
    QObject::connect(m_reachKey, &QShortcut::activated, m_reachKey, [] {
        if (frmReminder* const front = Module1::instance().reminders().front()) {
            front->takeKeys();
        }
    });
}

/// Tells on the host's window when reminders were last checked, if that is long ago.
void AddIn::showWhenChecked() {
    const QString text = m_checkWatch.text(services().clock);
    if (!text.isEmpty() && m_interface) {
        m_interface->ShowStatus(text);
    }
}

} // namespace yrw
