#include "addin/ConversionProgress.h"

#include "platform/clock/Clock.h"

#include <QCoreApplication>
#include <QProgressBar>
#include <QProgressDialog>

namespace yrw {

namespace {

constexpr qint64 kPatienceMs = 500;
constexpr qint64 kRefreshMs = 50;
constexpr int kWhole = 100;
constexpr int kWidth = 360;

} // namespace

ConversionProgress::ConversionProgress(const Clock& clock, QWidget* window)
    : m_clock(clock), m_window(window), m_nextMs(clock.monotonicMs() + kPatienceMs) {}

ConversionProgress::~ConversionProgress() {
    delete m_dialog;
}

bool ConversionProgress::converts(int percent) {
    return show(QStringLiteral("Converting the notes database…"), percent);
}

bool ConversionProgress::waits() {
    return show(QStringLiteral("Another program is converting the notes database…"), 0);
}

bool ConversionProgress::show(const QString& text, int percent) {
    if (m_isStopped || m_clock.monotonicMs() < m_nextMs) {
        return !m_isStopped;
    }
    m_nextMs = m_clock.monotonicMs() + kRefreshMs;
    if (!m_dialog) {
        m_dialog = new QProgressDialog(text, QStringLiteral("Cancel"), 0, kWhole, m_window);
        m_dialog->setObjectName(QStringLiteral("prgConversion"));
        m_dialog->setWindowTitle(QStringLiteral("Convert Notes Database"));
        m_dialog->setWindowModality(Qt::ApplicationModal);
        m_dialog->setMinimumDuration(0);
        m_dialog->setMinimumWidth(kWidth);
        m_dialog->setAutoClose(false);
        m_dialog->setAutoReset(false);
        if (auto* const bar = m_dialog->findChild<QProgressBar*>()) {
            bar->setAccessibleName(m_dialog->windowTitle());
        }
        m_dialog->show();
    }
    m_dialog->setLabelText(text);
    m_dialog->setValue(percent);
    QCoreApplication::processEvents();
    m_isStopped = !m_dialog || m_dialog->wasCanceled();
    return !m_isStopped;
}

} // namespace yrw
