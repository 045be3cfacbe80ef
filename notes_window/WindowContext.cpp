#include "notes_window/WindowContext.h"

#include "platform/controls/StatusBar.h"

#include <QWidget>

namespace yrw {

WindowContext::WindowContext(QWidget& window, StatusBar& status, NotesContext& notes)
    : m_window(window), m_status(status), m_notes(notes) {}

bool WindowContext::isReadOnly() const {
    const Ref<dao::Database> database = m_notes.database();
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
