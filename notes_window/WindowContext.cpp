#include "notes_window/WindowContext.h"

#include "platform/component/AutomationError.h"
#include "platform/controls/StatusBar.h"

#include <QWidget>

namespace yrw {

WindowContext::WindowContext(QWidget& window, StatusBar& status, INotesAddIn& addIn,
                             StoreContext& store)
    : m_window(window), m_status(status), m_addIn(addIn), m_store(store),
      m_application(query<Application>(addIn.NotesApplication())) {}

Application& WindowContext::application() const {
    if (!m_application) {
        throw AutomationError(kErrorObjectRequired, QStringLiteral("YRWNOTES.frmMain"),
                              QStringLiteral("The notes are not open."));
    }
    return *m_application;
}

bool WindowContext::isReadOnly() const {
    const Ref<dao::Database> database = m_store.database();
    return database && database->isReadOnly();
}

void WindowContext::setCaption(const QString& text) const {
    m_window.setWindowTitle(isReadOnly() ? text + QStringLiteral(" [read-only]") : text);
}

void WindowContext::showStatus(const QString& text) const {
    m_status.setText(text);
    m_status.refresh();
}

} // namespace yrw
