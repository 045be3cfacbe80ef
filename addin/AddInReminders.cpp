// The check for due reminders.
#include "addin/AddIn.h"
#include "addin/BusySign.h"
#include "dialogs/frmReminder.h"
#include "framework/ErrorGuards.h"

#include <QScopedValueRollback>

#include <exception>

namespace yrw {

namespace {

/// How early, in minutes, a reminder is shown at most.
constexpr int kNumberOfMinutes = 1;

} // namespace

void AddIn::mfrmTimer_CheckReminders(bool& cancel) {
    // Reminders wait until the user is done with a window or a box, and with the last check.
    if (m_checkingReminders || isNotesWindowOpen() || Form::isModalOpen()) {
        cancel = true;
        return;
    }
    const QScopedValueRollback<bool> busy(m_checkingReminders, true);
    cancel = !CheckForReminders();
}

bool AddIn::CheckForReminders() {
    const Ref<AddIn> keep(this);
    bool ran = false;
    reportErrors(services().utility, QStringLiteral("YRWNOTES.AddIn.CheckForReminders"),
                 QStringLiteral("Could Check for Reminders"), QStringLiteral("Problem"),
                 [&] { ran = checkReminders(); });
    return ran;
}

bool AddIn::checkReminders() {
    if (isNotesWindowOpen() || !isDatabaseOpen()) {
        return false;
    }
    IGridController* controller = m_interface ? m_interface->CurrentController() : nullptr;
    if (controller != nullptr && controller->Busy()) {
        return false;
    }
    const BusySign busy(prompt(), m_interface, QStringLiteral("Checking for note reminders..."));
    std::exception_ptr firstFailure;
    for (const qint64 reminderID : dueReminders()) {
        try {
            if (!m_module.reminders().isShown(reminderID)) {
                showReminder(reminderID);
            }
        } catch (...) {
            // The others are shown all the same; what went wrong is told once.
            firstFailure = firstFailure ? firstFailure : std::current_exception();
        }
    }
    if (firstFailure) {
        std::rethrow_exception(firstFailure);
    }
    return true;
}

/// The current user's due reminders, in the query's order.
std::vector<qint64> AddIn::dueReminders() {
    dao::Parameters parameters{{QStringLiteral("ProgID"), m_hostProgID},
                               {QStringLiteral("NumberOfMinutes"), kNumberOfMinutes},
                               {QStringLiteral("UserID"), QVariant()}};
    if (const Ref<IHostApplication> host = m_component ? m_component->Application() : nullptr) {
        becomeServed();
        m_module.setCurrentUser(host->CurrentUser());
        parameters.set(QStringLiteral("UserID"), dataHelper().CurrentUserID());
    }
    std::vector<qint64> due;
    const Ref<dao::Recordset> rows =
        dataHelper().OpenQuery(schema::kQryActiveReminders, parameters);
    for (; !rows->AtEof(); rows->MoveNext()) {
        due.push_back(rows->value(u"RecordID").toLongLong());
    }
    rows->Close();
    return due;
}

/// Shows one reminder, first the window and then what is in it, before anything is painted.
void AddIn::showReminder(qint64 reminderID) {
    const QPointer<frmReminder> popup(new frmReminder(*this));
    m_module.reminders().add(reminderID, popup, this);
    try {
        popup->setTag(frmReminder::kTagPrefix + QString::number(reminderID));
        popup->showModeless(m_interface ? m_interface->Window() : nullptr, false);
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

void AddIn::forgetReminder(qint64 reminderID) {
    m_module.reminders().remove(reminderID);
}

} // namespace yrw
