#include "addin/frmTimer.h"

#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "framework/Settings.h"
#include "store/NotesContext.h"

#include <QTimer>

#include <limits>

namespace yrw {

namespace {

constexpr int kReminderIntervalMs = 60000;
constexpr int kFocusIntervalMs = 500;

QTimer* newTimer(QObject* parent, const QString& name, int intervalMs) {
    auto* timer = new QTimer(parent);
    timer->setObjectName(name);
    timer->setInterval(intervalMs);
    return timer;
}

} // namespace

frmTimer::frmTimer(NotesContext& context)
    : Form(QStringLiteral("frmTimer")), m_context(context),
      tmrMain(newTimer(this, QStringLiteral("tmrMain"), kReminderIntervalMs)),
      tmrWindowFocus(newTimer(this, QStringLiteral("tmrWindowFocus"), kFocusIntervalMs)) {
    connect(tmrMain, &QTimer::timeout, this, &frmTimer::tmrMain_Timer);
    connect(tmrWindowFocus, &QTimer::timeout, this, &frmTimer::tmrWindowFocus_Timer);
    Form_Initialize();
}

frmTimer::~frmTimer() = default;

void frmTimer::Form_Initialize() {
    const NotesSettings settings(m_context.services().settings);
    setEnabled(*tmrMain, settings.get(setting::kCheckForReminders));
    setEnabled(*tmrWindowFocus, settings.get(setting::kCheckAutoNotes));
    m_followed = {settings.whenSet(setting::kCheckForReminders,
                                   [this](bool on) { setEnabled(*tmrMain, on); }),
                  settings.whenSet(setting::kCheckAutoNotes,
                                   [this](bool on) { setEnabled(*tmrWindowFocus, on); })};
}

void frmTimer::setEnabled(QTimer& timer, bool enabled) {
    if (!enabled) {
        timer.stop();
    } else if (!timer.isActive()) {
        timer.start();
    }
}

int frmTimer::nextMinute(int counter) {
    if (counter == std::numeric_limits<int>::max()) {
        throw AutomationError(kErrorOverflow, QStringLiteral("YRWNOTES.frmTimer"),
                              QStringLiteral("Overflow"));
    }
    return counter + 1;
}

void frmTimer::end() {
    disconnect(tmrMain, nullptr, this, nullptr); // also within its own tick
    disconnect();
    m_followed = {};
    tmrMain->stop();
    tmrWindowFocus->stop();
    if (m_ticks > 0) {
        m_ended = true; // the tick sees to the rest
    } else {
        delete this;
    }
}

void frmTimer::tmrMain_Timer() {
    if (!m_context.switchOn(NotesSwitch::CheckForReminders)) {
        ignoreErrors([this] { m_minuteCounter = nextMinute(m_minuteCounter); });
        return;
    }
    bool cancel = false;
    ++m_ticks;
    Q_EMIT CheckReminders(cancel);
    if (!cancel) {
        m_minuteCounter = 0;
    }
    endTick();
}

void frmTimer::tmrWindowFocus_Timer() {
    ++m_ticks;
    Q_EMIT CheckWindowFocus();
    endTick();
}

void frmTimer::endTick() {
    if (--m_ticks == 0 && m_ended) {
        deleteLater();
    }
}

} // namespace yrw
