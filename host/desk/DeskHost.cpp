#include "host/desk/DeskHost.h"

namespace yrw {

DeskInterface::DeskInterface(IDesk& desk) : m_desk(desk) {}
DeskInterface::~DeskInterface() = default;

void DeskInterface::ShowStatus(const QString& text) {
    m_desk.showProgress(text);
}

IGridController* DeskInterface::CurrentController() {
    return &m_desk.current();
}

QWidget* DeskInterface::Window() {
    return &m_desk.widget();
}

bool DeskInterface::IsWindowActive() {
    return m_desk.widget().isActiveWindow();
}

bool DeskInterface::CanCheckNotes() {
    return m_desk.canCheckNotes();
}

IToolbar* DeskInterface::Toolbar() {
    return &m_desk.interfaceToolbar();
}

QRect DeskInterface::WindowRect() {
    return m_desk.widget().frameGeometry();
}

DeskComponent::DeskComponent(IDesk& desk, DeskInterface& interface_)
    : m_desk(desk), m_interface(interface_) {}
DeskComponent::~DeskComponent() = default;

IHostInterface* DeskComponent::Interface() {
    return &m_interface;
}

IGridController* DeskComponent::UpperController() {
    return &m_desk.upper();
}

IGridController* DeskComponent::LowerController() {
    return &m_desk.lower();
}

Ref<IHostApplication> DeskComponent::Application() {
    return m_desk.hostApplication();
}

IToolbar* DeskComponent::Toolbar() {
    return &m_desk.componentToolbar();
}

IStatusBar* DeskComponent::StatusBar() {
    return &m_desk.mainStatusBar();
}

} // namespace yrw
