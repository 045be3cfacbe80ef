#include "addin/ReminderPopups.h"

#include "addin/ShownReminders.h"
#include "dialogs/frmReminder.h"
#include "framework/ErrorGuards.h"
#include "platform/clock/Clock.h"
#include "store/Application.h"
#include "store/NotesContext.h"
#include "store/ReminderOperations.h"

#include <QScopedValueRollback>
#include <QShortcut>

#include <utility>

namespace yrw {

namespace {

/// How long, in milliseconds, one turn of the event loop shows popups before others have theirs.
constexpr qint64 kTurnMs = 20;

} // namespace

ReminderPopups::ReminderPopups(INotesParent& addIn, NotesContext& context, ShownReminders& onScreen)
    : m_addIn(addIn), m_context(context), m_onScreen(onScreen) {
    m_nextTurn.setSingleShot(true);
    m_nextTurn.setInterval(0);
    QObject::connect(&m_nextTurn, &QTimer::timeout, &m_nextTurn, [this] {
        const Ref<INotesParent> keep(&m_addIn);
        goOn();
    });
}

void ReminderPopups::show(std::deque<Ref<IRecord>> due, QWidget* host, Round round) {
    m_waiting = std::move(due);
    m_host = host;
    m_round = std::move(round);
    m_hasCalled = false;
    m_failure = nullptr;
    showWaiting();
    if (m_failure && m_waiting.empty()) {
        std::rethrow_exception(std::exchange(m_failure, nullptr));
    }
}

void ReminderPopups::goOn() {
    if (m_round.mayGoOn()) {
        showWaiting();
    } else {
        m_waiting.clear(); // the next check finds them again
    }
    if (m_failure && m_waiting.empty()) {
        m_round.failed(std::exchange(m_failure, nullptr));
    }
}

/// Shows what waits for as long as one turn may last, and leaves the rest to the next turns: each
/// popup is painted soon after it was made, and keys typed meanwhile arrive.
void ReminderPopups::showWaiting() {
    const Clock& clock = m_context.clock();
    const qint64 begun = clock.monotonicMs();
    bool shown = false;
    while (!m_waiting.empty() && (!shown || clock.monotonicMs() - begun < kTurnMs)) {
        const Ref<IRecord> reminder = m_waiting.front();
        m_waiting.pop_front();
        try {
            showOne(reminder);
            shown = true;
        } catch (...) {
            // The others are shown all the same; what went wrong is told once.
            m_failure = m_failure ? m_failure : std::current_exception();
        }
    }
    if (!m_waiting.empty()) {
        m_nextTurn.start();
    }
    frmReminder* const front = m_onScreen.front();
    if (!shown || front == nullptr) {
        return;
    }
    if (m_waiting.empty()) {
        m_onScreen.putInOrder();
    } else {
        front->bringToFront();
    }
    placeReachKey();
    if (!std::exchange(m_hasCalled, true)) {
        front->callUser(m_onScreen.count() + int(m_waiting.size()));
    }
}

/// Shows one reminder, first the window and then what is in it, before anything is painted.
void ReminderPopups::showOne(const Ref<IRecord>& reminder) {
    const qint64 id = reminder->value(QStringLiteral("RecordID")).toLongLong();
    const QPointer<frmReminder> popup(new frmReminder(m_context));
    QObject::connect(popup, &frmReminder::closed, popup,
                     [this](qint64 reminderID) { forget(reminderID); });
    popup->moveToPlace(m_onScreen.freePlace(), m_host);
    m_onScreen.add(id, popup, this);
    try {
        popup->setTag(frmReminder::kTagPrefix + QString::number(id));
        popup->showModeless(m_host, false);
        popup->Initialise(m_addIn, reminder);
    } catch (...) {
        m_onScreen.remove(id);
        if (popup) {
            popup->abandon();
        }
        throw;
    }
}

void ReminderPopups::closeSettled() {
    const auto popups = m_onScreen.popupsOf(this);
    if (popups.empty()) {
        return;
    }
    std::vector<Ref<IRecord>> reminders;
    for (const auto& [id, popup] : popups) {
        if (popup->reminder()) {
            reminders.push_back(popup->reminder());
        }
    }
    const QSet<qint64> unanswered = unansweredReminders(m_context.application(), reminders);
    for (const auto& [id, popup] : popups) {
        if (popup && !unanswered.contains(id)) {
            popup->abandon();
        }
    }
}

void ReminderPopups::closeAll() {
    m_nextTurn.stop();
    m_waiting.clear();
    const QScopedValueRollback<bool> closing(m_closing, true);
    m_onScreen.unloadAllOf(this);
}

void ReminderPopups::forget(qint64 reminderID) {
    m_onScreen.remove(reminderID);
    if (m_onScreen.isEmpty()) {
        delete m_reachKey;
    }
    if (frmReminder* const front = m_closing ? nullptr : m_onScreen.front()) {
        front->bringToFront();
    }
}

/// The one key that gives a popup the keyboard; it is there while a popup is.
void ReminderPopups::placeReachKey() {
    if (m_reachKey || m_host == nullptr) {
        return;
    }
    m_reachKey = new QShortcut(frmReminder::kReachKey, m_host);
    m_reachKey->setContext(Qt::ApplicationShortcut);
    QObject::connect(m_reachKey, &QShortcut::activated, m_reachKey, [this] {
        if (frmReminder* const front = m_onScreen.front()) {
            front->takeKeys();
        }
    });
}

} // namespace yrw
