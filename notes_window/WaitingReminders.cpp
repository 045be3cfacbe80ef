#include "notes_window/WaitingReminders.h"

#include "framework/ErrorGuards.h"
#include "store/ReminderOperations.h"

#include <QLabel>

namespace yrw {

namespace {

constexpr int kCountMs = 60000;

} // namespace

WaitingReminders::WaitingReminders(QLabel& label, StoreContext& store)
    : m_label(label), m_store(store) {
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { count(); });
}

void WaitingReminders::start() {
    m_timer.start(kCountMs);
}

void WaitingReminders::count() {
    ignoreErrors([this] {
        int waiting = 0;
        const Ref<dao::Recordset> due =
            openDueReminders(m_store.dataHelper(), m_store.hostProgID(),
                             m_store.currentUser()->value(QStringLiteral("RecordID")));
        for (; !due->AtEof(); due->MoveNext()) {
            ++waiting;
        }
        due->Close();
        m_label.setText(waiting == 1 ? QStringLiteral("1 reminder is waiting")
                                     : QStringLiteral("%1 reminders are waiting").arg(waiting));
        m_label.setVisible(waiting != 0);
    });
}

} // namespace yrw
