#pragma once

#include "host/desk/IDesk.h"

#include <QPointer>
#include <QWidget>

namespace yrw {

/// The desk's window as add-ins see it.
/// Lifetime: owned by the window. Thread: the user-interface thread.
class DeskInterface final : public QObject, public IHostInterface {
    Q_OBJECT

public:
    explicit DeskInterface(IDesk& desk);
    ~DeskInterface() override;

    [[nodiscard]] QObject* asQObject() override { return this; }
    void ShowStatus(const QString& text) override;
    [[nodiscard]] IGridController* CurrentController() override;
    [[nodiscard]] QWidget* Window() override;
    [[nodiscard]] bool IsWindowActive() override;
    [[nodiscard]] bool CanCheckNotes() override;
    [[nodiscard]] IToolbar* Toolbar() override;
    [[nodiscard]] QRect WindowRect() override;

private:
    IDesk& m_desk;
};

/// The component that the desk hands to add-ins.
/// Lifetime: owned by the window. Thread: the user-interface thread.
class DeskComponent final : public QObject, public IHostComponent {
    Q_OBJECT

public:
    DeskComponent(IDesk& desk, DeskInterface& interface_);
    ~DeskComponent() override;

    [[nodiscard]] QObject* asQObject() override { return this; }
    [[nodiscard]] IHostInterface* Interface() override;
    [[nodiscard]] IGridController* UpperController() override;
    [[nodiscard]] IGridController* LowerController() override;
    [[nodiscard]] Ref<IHostApplication> Application() override;
    [[nodiscard]] IToolbar* Toolbar() override;
    [[nodiscard]] IStatusBar* StatusBar() override;

private:
    IDesk& m_desk;
    DeskInterface& m_interface;
};

} // namespace yrw
