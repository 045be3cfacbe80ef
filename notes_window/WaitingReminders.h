#pragma once

#include <QTimer>

class QLabel;

namespace yrw {

class StoreContext;

/// Says in the status bar how many reminders wait for the user; counts them once a minute.
/// Lifetime: label and context outlive it. Thread: the user-interface thread.
class WaitingReminders {
public:
    WaitingReminders(QLabel& label, StoreContext& store);

    void start();
    void stop() { m_timer.stop(); }
    void count();

private:
    QLabel& m_label;
    StoreContext& m_store;
    QTimer m_timer;
};

} // namespace yrw
