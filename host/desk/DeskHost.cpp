#include "host/desk/DeskHost.h"

#include "host/desk/DeskWindow.h"
#include "platform/controls/StatusBar.h"
#include "platform/toolbar/Toolbar.h"

namespace yrw {

DeskInterface::DeskInterface(DeskWindow& window) : m_window(window) {}
DeskInterface::~DeskInterface() = default;

void DeskInterface::ShowStatus(const QString& text) {
    m_window.showProgress(text);
}

IGridController* DeskInterface::CurrentController() {
    return &m_window.current();
}

QWidget* DeskInterface::Window() {
    return &m_window;
}

bool DeskInterface::IsWindowActive() {
    return m_window.isActiveWindow();
}

bool DeskInterface::CanCheckNotes() {
    return m_window.canCheckNotes();
}

IToolbar* DeskInterface::Toolbar() {
    return &m_window.interfaceToolbar();
}

QRect DeskInterface::WindowRect() {
    return m_window.frameGeometry();
}

DeskComponent::DeskComponent(DeskWindow& window, DeskInterface& interface_)
    : m_window(window), m_interface(interface_) {}
DeskComponent::~DeskComponent() = default;

IHostInterface* DeskComponent::Interface() {
    return &m_interface;
}

IGridController* DeskComponent::UpperController() {
    return &m_window.upper();
}

IGridController* DeskComponent::LowerController() {
    return &m_window.lower();
}

Ref<IHostApplication> DeskComponent::Application() {
    return m_window.application();
}

IToolbar* DeskComponent::Toolbar() {
    return &m_window.componentToolbar();
}

IStatusBar* DeskComponent::StatusBar() {
    return &m_window.mainStatusBar();
}

} // namespace yrw
