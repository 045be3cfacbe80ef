#include "addin/LockWaitDialog.h"

#include <QApplication>
#include <QProgressDialog>
#include <QThread>

namespace yrw {

namespace {

constexpr int kPatienceMs = 500;
constexpr int kBetweenTriesMs = 10;

} // namespace

LockWaitDialog::LockWaitDialog() = default;
LockWaitDialog::~LockWaitDialog() = default;

bool LockWaitDialog::goOn(qint64 waitedMs) {
    QThread::msleep(kBetweenTriesMs);
    ++m_tries;
    if (waitedMs < kPatienceMs && m_tries * kBetweenTriesMs < kPatienceMs) {
        return true;
    }
    if (!m_dialog) {
        m_dialog = std::make_unique<QProgressDialog>(
            QStringLiteral("Waiting for another program that is using the notes database…"),
            QStringLiteral("Cancel"), 0, 0, QApplication::activeWindow());
        m_dialog->setObjectName(QStringLiteral("prgLockWait"));
        m_dialog->setWindowTitle(QStringLiteral("Notes"));
        m_dialog->setWindowModality(Qt::ApplicationModal);
        m_dialog->setMinimumDuration(0);
        m_dialog->show();
    }
    QCoreApplication::processEvents();
    return !m_dialog || !m_dialog->wasCanceled();
}

void LockWaitDialog::ended() noexcept {
    m_dialog.reset();
    m_tries = 0;
}

} // namespace yrw
