#include "platform/richtext/LayoutPace.h"

#include <QAbstractEventDispatcher>
#include <QAbstractTextDocumentLayout>
#include <QElapsedTimer>
#include <QTextBlock>
#include <QTextDocument>
#include <QTimerEvent>

#include <algorithm>

namespace yrw::richtext {

namespace {

constexpr int kTurnMs = 50;

/// The layout has two timers: one that goes on with it, and one of no time that tells its size.
bool goesOnWithLayout(QObject* layout, int timer) {
    const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(layout);
    return std::any_of(timers.begin(), timers.end(), [&](const auto& each) {
        return each.timerId == timer && each.interval > 0;
    });
}

} // namespace

LayoutPace::LayoutPace(const QTextDocument& document)
    : QObject(document.documentLayout()), m_document(document) {
    document.documentLayout()->installEventFilter(this);
}

bool LayoutPace::eventFilter(QObject* watched, QEvent* event) {
    return event->type() == QEvent::Timer &&
           goesOnWithLayout(watched, static_cast<QTimerEvent*>(event)->timerId()) && !goOn();
}

bool LayoutPace::goOn() {
    if (m_revision != m_document.revision() || m_width != m_document.textWidth()) {
        m_position = 0;
        m_revision = m_document.revision();
        m_width = m_document.textWidth();
    }
    QElapsedTimer time;
    time.start();
    QTextBlock block = m_document.findBlock(m_position);
    for (; block.isValid() && !time.hasExpired(kTurnMs); block = block.next()) {
        (void)m_document.documentLayout()->blockBoundingRect(block);
    }
    m_position = block.isValid() ? block.position() : 0;
    return !block.isValid();
}

} // namespace yrw::richtext
