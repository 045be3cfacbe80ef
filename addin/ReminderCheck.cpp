#include "addin/ReminderCheck.h"

#include "addin/BusySign.h"
#include "framework/ErrorGuards.h"
#include "platform/clock/Clock.h"
#include "platform/forms/Form.h"
#include "platform/prompt/ErrorLog.h"
#include "store/ReminderOperations.h"

#include <QScopedValueRollback>

namespace yrw {

namespace {

const QString kSource = QStringLiteral("YRWNOTES.AddIn.CheckForReminders");
const QString kMessage = QStringLiteral("Could Check for Reminders");
const QString kTitle = QStringLiteral("Problem");

} // namespace

void ReminderCheck::begin() {
    m_watch.begin(m_module.clock());
}

void ReminderCheck::minutePassed(bool& cancel) {
    if (m_standing.isBehind()) {
        cancel = true; // the other shows them
        return;
    }
    // Reminders wait until the user is done with a window or a box, and with the last check.
    if (m_isChecking || m_windows.isOpen() || Form::isModalOpen()) {
        cancel = true;
    } else {
        const QScopedValueRollback<bool> busy(m_isChecking, true);
        // A check that goes on failing is reported once, not every minute.
        cancel = !run(m_watch.isFailing());
    }
    showWhenChecked();
}

bool ReminderCheck::run(bool quietly) {
    const dao::BriefWaits brief(m_module.database());
    try {
        return showDueReminders(quietly);
    } catch (...) {
        if (currentError().number() == kErrorLocked) {
            return false; // somebody is writing; the next check comes soon
        }
        reportFailure(std::current_exception(), quietly);
        return false;
    }
}

void ReminderCheck::reportFailure(const std::exception_ptr& failure, bool quietly) {
    try {
        std::rethrow_exception(failure);
    } catch (...) {
        const AutomationError error = currentError();
        if (quietly) {
            appendToErrorLog(m_module.clock().now(),
                             {error.number(), kSource, error.description(), kMessage, {}, kTitle});
        } else {
            m_module.services().utility.ReportError(error, kSource, kMessage, kTitle);
        }
    }
}

bool ReminderCheck::showDueReminders(bool quietly) {
    if (m_windows.isOpen() || !m_standing.isDatabaseOpen() || m_host.isBusy()) {
        return false;
    }
    const BusySign busy(m_module.services().prompt, m_host,
                        QStringLiteral("Checking for note reminders..."));
    const auto mayGoOn = [this] {
        return !m_windows.isOpen() && !Form::isModalOpen() && m_standing.isDatabaseOpen();
    };
    const auto failed = [this, quietly](const std::exception_ptr& failure) {
        reportFailure(failure, quietly);
    };
    m_popups.show(findDueReminders(), m_host.window(), {mayGoOn, failed});
    return true;
}

/// Looks for what is to be shown and what not any longer. What fails is noted with its cause.
std::deque<Ref<IRecord>> ReminderCheck::findDueReminders() {
    const auto step = [this](const QString& failure, const auto& action) {
        try {
            action();
        } catch (...) {
            if (currentError().number() != kErrorLocked) { // else it is tried again, that is all
                m_watch.failed(failure);
            }
            throw;
        }
    };
    const QString noDatabase = QStringLiteral("The notes database cannot be read.");
    step(noDatabase, [this] { m_popups.closeSettled(); });
    step(QStringLiteral("The host does not tell who works with it."), [this] {
        if (m_host.component) {
            m_module.serve(m_host);
            m_module.setCurrentUser(m_host.requiredUser());
        }
    });
    std::deque<Ref<IRecord>> due;
    step(noDatabase, [&] { due = waitingReminders(); });
    m_watch.succeeded(m_module.clock());
    return due;
}

/// The current user's due reminders that are not on screen, in the query's order.
std::deque<Ref<IRecord>> ReminderCheck::waitingReminders() {
    const QVariant user =
        m_host.component ? QVariant(m_module.dataHelper().CurrentUserID()) : QVariant();
    return dueReminders(m_module.application(), m_host.progID(), user,
                        [this](qint64 id) { return !m_module.reminders().isShown(id); });
}

/// Tells on the host's window when reminders were last checked, if that is long ago.
void ReminderCheck::showWhenChecked() {
    const QString text = m_watch.text(m_module.clock());
    if (!text.isEmpty() && m_host.hostInterface) {
        m_host.hostInterface->ShowStatus(text);
    }
}

} // namespace yrw
