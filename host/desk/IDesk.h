#pragma once

#include "framework/HostObjects.h"

namespace yrw {

/// The desk's window as what it hands to add-ins needs it.
/// Lifetime: as the window's. Thread: the user-interface thread.
class IDesk {
public:
    virtual ~IDesk() = default;
    [[nodiscard]] virtual QWidget& widget() = 0;
    /// Shows a progress text in the status bar; an empty text clears it.
    virtual void showProgress(const QString& text) = 0;
    /// Whether add-ins may look up notes now.
    [[nodiscard]] virtual bool canCheckNotes() const = 0;
    /// The controller of the grid that has, or had last, the keyboard.
    [[nodiscard]] virtual IGridController& current() const = 0;
    [[nodiscard]] virtual IGridController& upper() const = 0;
    [[nodiscard]] virtual IGridController& lower() const = 0;
    [[nodiscard]] virtual IToolbar& componentToolbar() const = 0;
    [[nodiscard]] virtual IToolbar& interfaceToolbar() const = 0;
    [[nodiscard]] virtual IStatusBar& mainStatusBar() const = 0;
    [[nodiscard]] virtual Ref<IHostApplication> hostApplication() const = 0;
};

} // namespace yrw
