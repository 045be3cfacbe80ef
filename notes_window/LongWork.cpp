#include "notes_window/LongWork.h"

#include "platform/clock/Clock.h"

#include <QCoreApplication>
#include <QLocale>
#include <QProgressDialog>

namespace yrw {

namespace {

constexpr qint64 kPatienceMs = 500;
constexpr qint64 kRefreshMs = 100;

} // namespace

LongWork::LongWork(const Clock& clock, QWidget* parent, QString text, int stepsPerLook)
    : m_clock(clock), m_parent(parent), m_text(std::move(text)),
      m_nextMs(clock.monotonicMs() + kPatienceMs), m_stepsPerLook(stepsPerLook) {}

LongWork::~LongWork() = default;

bool LongWork::goOn(qint64 done) {
    if (++m_steps % m_stepsPerLook == 0 && m_clock.monotonicMs() >= m_nextMs) {
        show(done);
        m_nextMs = m_clock.monotonicMs() + kRefreshMs;
    }
    return m_dialog == nullptr || !m_dialog->wasCanceled();
}

void LongWork::show(qint64 done) {
    const QString text = m_text.arg(QLocale::c().toString(done));
    if (m_dialog) {
        m_dialog->setLabelText(text);
    } else {
        m_dialog = std::make_unique<QProgressDialog>(text, QStringLiteral("Stop"), 0, 0, m_parent);
        m_dialog->setObjectName(QStringLiteral("prgLongWork"));
        m_dialog->setWindowTitle(QStringLiteral("Notes"));
        m_dialog->setWindowModality(Qt::ApplicationModal);
        m_dialog->setMinimumDuration(0);
        m_dialog->setMinimumWidth(320);
        m_dialog->show();
    }
    QCoreApplication::processEvents();
}

} // namespace yrw
