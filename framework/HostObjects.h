#pragma once

#include "framework/IApplication.h"
#include "platform/controls/api/IRecordGrid.h"
#include "platform/toolbar/api/IToolbar.h"

#include <QRect>

class QWidget;

namespace yrw {

/// The controller behind one grid of the host.
///
/// Lifetime: a Qt object owned by the host; hold it in a `GuardedPtr`.
/// Thread: the user-interface thread.
class IGridController {
public:
    virtual ~IGridController();
    [[nodiscard]] virtual QObject* asQObject() = 0;

    [[nodiscard]] virtual IRecordGrid* Grid() = 0;
    /// The record under the cursor; nothing when there is none or on the new-record row.
    [[nodiscard]] virtual Ref<IRecord> CurrentRecord() = 0;
    /// The collection whose records the grid shows now; nothing when it shows none.
    [[nodiscard]] virtual Ref<ICollection> CurrentObject() = 0;
    /// True while an edit, a load or another operation runs that must not be disturbed.
    [[nodiscard]] virtual bool Busy() = 0;
    [[nodiscard]] virtual QString LayoutName() = 0;
    /// The recordset that the grid shows now; nothing when it shows none.
    [[nodiscard]] virtual Ref<dao::Recordset> Recordset() = 0;

    Event<> AfterAddEditCanceled;
    Event<> AfterLayoutLoad;
    Event<> AfterRebind;
    Event<const Ref<dao::Recordset>&> AfterRecordsetChange; ///< the new recordset, or nothing
    Event<> BeforeRebind;
    Event<> OnAddRow;
    Event<> StayOnCell; ///< the cursor has rested on a cell for a moment
    Event<> StayOnRow;  ///< the cursor has rested on a row for a moment
};

/// The host's window, as an add-in sees it.
class IHostInterface {
public:
    virtual ~IHostInterface();
    [[nodiscard]] virtual QObject* asQObject() = 0;

    /// Shows a progress text; an empty text clears it.
    virtual void ShowStatus(const QString& text) = 0;
    /// The controller of the grid that has the cursor; nothing when none has.
    [[nodiscard]] virtual IGridController* CurrentController() = 0;
    /// The window itself, as owner of dialogs.
    [[nodiscard]] virtual QWidget* Window() = 0;
    [[nodiscard]] virtual bool IsWindowActive() = 0;
    /// False while the host is in a state in which notes must not be looked up.
    [[nodiscard]] virtual bool CanCheckNotes() = 0;
    [[nodiscard]] virtual IToolbar* Toolbar() = 0;
    /// The window's frame on the screen, in device-independent pixels.
    [[nodiscard]] virtual QRect WindowRect() = 0;
};

/// The component that a host hands to an add-in: the way to everything else.
class IHostComponent {
public:
    virtual ~IHostComponent();
    [[nodiscard]] virtual QObject* asQObject() = 0;

    [[nodiscard]] virtual IHostInterface* Interface() = 0;
    [[nodiscard]] virtual IGridController* UpperController() = 0;
    [[nodiscard]] virtual IGridController* LowerController() = 0;
    [[nodiscard]] virtual Ref<IHostApplication> Application() = 0;
    [[nodiscard]] virtual IToolbar* Toolbar() = 0;
    [[nodiscard]] virtual IStatusBar* StatusBar() = 0;
};

} // namespace yrw
