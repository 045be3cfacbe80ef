#include "addin/DailyCopyMaker.h"

#include "framework/Services.h"
#include "framework/Settings.h"
#include "platform/clock/Clock.h"
#include "platform/prompt/ErrorLog.h"
#include "store/NotesContext.h"

#include <QCoreApplication>
#include <QEvent>

namespace yrw {

namespace {

constexpr int kMinuteMs = 60'000;
constexpr int kBetweenSlicesMs = 100;
constexpr int kSliceMs = 10;
constexpr qint64 kQuietMs = 2'000; ///< without a key or a button before anything is done

} // namespace

DailyCopyMaker::DailyCopyMaker(NotesContext& context, QObject* parent)
    : QObject(parent), m_context(context), m_lastInputMs(context.clock().monotonicMs()) {
    m_minute.setInterval(kMinuteMs);
    m_slice.setInterval(kBetweenSlicesMs);
    connect(&m_minute, &QTimer::timeout, this, [this] { look(); });
    connect(&m_slice, &QTimer::timeout, this, [this] { workOn(); });
    m_minute.start();
}

void DailyCopyMaker::look() {
    const QDate today = m_context.clock().now().date();
    const bool isWanted = NotesSettings(m_context.services().settings).get(setting::kDailyCopy);
    if (today == m_day || !isWanted || m_copy || !m_context.isDatabaseOpen()) {
        return;
    }
    m_day = today;
    m_lastInputMs = m_context.clock().monotonicMs(); // what was pressed before, nobody noted
    m_copy = std::make_unique<DailyCopy>(m_context.database(), today);
    qApp->installEventFilter(this);
    m_slice.start();
}

bool DailyCopyMaker::eventFilter(QObject* watched, QEvent* event) {
    const bool isInput = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease ||
                         event->type() == QEvent::MouseButtonPress ||
                         event->type() == QEvent::MouseButtonRelease ||
                         event->type() == QEvent::InputMethod || event->type() == QEvent::Wheel;
    if (isInput) {
        m_lastInputMs = m_context.clock().monotonicMs();
    }
    return QObject::eventFilter(watched, event);
}

void DailyCopyMaker::workOn() {
    if (m_context.clock().monotonicMs() - m_lastInputMs < kQuietMs) {
        return;
    }
    try {
        if (!m_copy->step(kSliceMs)) {
            if (m_copy->path().isEmpty()) {
                m_day = QDate(); // whoever makes it may not come to the end: look again
            }
            end();
        }
    } catch (...) {
        const AutomationError error = currentError();
        appendToErrorLog(m_context.clock().now(),
                         {error.number(), error.source(), error.description(), {}, {}, {}});
        end();
    }
}

void DailyCopyMaker::end() {
    m_slice.stop();
    qApp->removeEventFilter(this);
    m_copy.reset();
}

} // namespace yrw
