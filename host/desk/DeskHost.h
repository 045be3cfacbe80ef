#pragma once

#include "framework/HostObjects.h"

#include <QPointer>
#include <QWidget>

namespace yrw {

class DeskWindow;

/// The desk's window as add-ins see it.
/// Lifetime: owned by the window. Thread: the user-interface thread.
class DeskInterface final : public QObject, public IHostInterface {
    Q_OBJECT

public:
    explicit DeskInterface(DeskWindow& window);
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
    DeskWindow& m_window;
};

/// The component that the desk hands to add-ins.
/// Lifetime: owned by the window. Thread: the user-interface thread.
class DeskComponent final : public QObject, public IHostComponent {
    Q_OBJECT

public:
    DeskComponent(DeskWindow& window, DeskInterface& interface_);
    ~DeskComponent() override;

    [[nodiscard]] QObject* asQObject() override { return this; }
    [[nodiscard]] IHostInterface* Interface() override;
    [[nodiscard]] IGridController* UpperController() override;
    [[nodiscard]] IGridController* LowerController() override;
    [[nodiscard]] Ref<IHostApplication> Application() override;
    [[nodiscard]] IToolbar* Toolbar() override;
    [[nodiscard]] IStatusBar* StatusBar() override;

private:
    DeskWindow& m_window;
    DeskInterface& m_interface;
};

} // namespace yrw
