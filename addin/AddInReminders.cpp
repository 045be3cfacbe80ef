// The check for due reminders.
#include "addin/AddIn.h"
#include "addin/BusySign.h"
#include "addin/Tools.h"
#include "addin/frmTimer.h"
#include "framework/ErrorGuards.h"
#include "platform/clock/Clock.h"
#include "platform/prompt/ErrorLog.h"
#include "store/ReminderOperations.h"

#include <QScopedValueRollback>

namespace yrw {

namespace {

const QString kSource = QStringLiteral("YRWNOTES.AddIn.CheckForReminders");
const QString kMessage = QStringLiteral("Could Check for Reminders");
const QString kTitle = QStringLiteral("Problem");

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
    try {
        return checkReminders(quietly);
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

bool AddIn::checkReminders(bool quietly) {
    if (isNotesWindowOpen() || !isDatabaseOpen()) {
        return false;
    }
    if (isHostBusy()) {
        return false;
    }
    const BusySign busy(prompt(), m_interface, QStringLiteral("Checking for note reminders..."));
    const auto mayGoOn = [this] {
        return !isNotesWindowOpen() && !Form::isModalOpen() && isDatabaseOpen();
    };
    const auto failed = [this, quietly](const std::exception_ptr& failure) {
        reportCheckFailure(failure, quietly);
    };
    m_popups.show(findDueReminders(), hostWindow(), {mayGoOn, failed});
    return true;
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
std::deque<Ref<IRecord>> AddIn::findDueReminders() {
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
    step(noDatabase, [this] { m_popups.closeSettled(); });
    step(QStringLiteral("The host does not tell who works with it."), [this] {
        if (m_component) {
            becomeServed();
            takeCurrentUser();
        }
    });
    std::deque<Ref<IRecord>> due;
    step(noDatabase, [&] { due = waitingReminders(); });
    m_checkWatch.succeeded(services().clock);
    return due;
}

/// The current user's due reminders that are not on screen, in the query's order.
std::deque<Ref<IRecord>> AddIn::waitingReminders() {
    const QVariant user = m_component ? QVariant(dataHelper().CurrentUserID()) : QVariant();
    return dueReminders(*m_module.application(), m_hostProgID, user,
                        [this](qint64 id) { return !m_module.reminders().isShown(id); });
}

/// Tells on the host's window when reminders were last checked, if that is long ago.
void AddIn::showWhenChecked() {
    const QString text = m_checkWatch.text(services().clock);
    if (!text.isEmpty() && m_interface) {
        m_interface->ShowStatus(text);
    }
}

} // namespace yrw
