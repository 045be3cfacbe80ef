#include "host/desk/SessionEnd.h"

#include "platform/forms/Form.h"

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <utility>

namespace yrw {

namespace {

constexpr int kStepMs = 20;
constexpr int kPatientSteps = 50; ///< then a box is closed without being asked
constexpr int kMostSteps = 250;

/// Closes what lies on top of everything else; false when nothing does.
bool closeTop(bool patient) {
    if (QWidget* const popup = QApplication::activePopupWidget()) {
        popup->close();
        return true;
    }
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal == nullptr) {
        return false;
    }
    auto* const box = qobject_cast<QDialog*>(modal);
    if (patient || box == nullptr || Form::formOf(*modal) != nullptr) {
        modal->close();
    } else {
        box->reject();
    }
    return true;
}

} // namespace

SessionEnd::SessionEnd(std::function<void()> closeProgram)
    : m_closeProgram(std::move(closeProgram)) {
    connect(qApp, &QGuiApplication::commitDataRequest, this, [] { Form::keepWhatWasTyped(); });
    qApp->installEventFilter(this);
}

void SessionEnd::begin() {
    if (std::exchange(m_begun, true)) {
        return;
    }
    Form::keepWhatWasTyped();
    QTimer::singleShot(0, this, &SessionEnd::step);
}

void SessionEnd::step() {
    // The next step is on its way before this one: closing may open a box, which that one closes.
    QTimer::singleShot(kStepMs, this, &SessionEnd::step);
    ++m_steps;
    if ((m_steps > kMostSteps || !closeTop(m_steps < kPatientSteps)) &&
        !std::exchange(m_closing, true)) {
        m_closeProgram();
    }
}

bool SessionEnd::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qApp && event->type() == QEvent::Quit) {
        begin();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace yrw
