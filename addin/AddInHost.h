#pragma once

#include "framework/HostObjects.h"
#include "platform/component/GuardedPtr.h"

namespace yrw {

/// The host of one add-in: the objects that it handed over, each held only while it lives, and what
/// the add-in asks of them.
///
/// Lifetime: a member of its `AddIn`. Thread: the user-interface thread.
class AddInHost {
public:
    AddInHost() = default;
    AddInHost(const AddInHost&) = delete;
    AddInHost& operator=(const AddInHost&) = delete;

    /// Takes what a component offers in place of what was held, each object on its own: a host that
    /// fails to hand one over still has the use of the others. Nothing takes nothing.
    void take(IHostComponent* component) noexcept;
    /// Program id of the host: the owner's program id of its notes. Empty while it gives none.
    [[nodiscard]] const QString& progID() const noexcept { return m_progID; }
    /// Asks for the program id again where the host gave none. Raises `kErrorObjectRequired` when
    /// it still gives none.
    void requireProgID();

    /// Its application object; nothing without one. Raises what the host raises.
    [[nodiscard]] Ref<IHostApplication> application() const;
    /// The same; where there is none, the error that is raised says so.
    [[nodiscard]] Ref<IHostApplication> requiredApplication() const;
    /// The user who works with it. Raises as `requiredApplication`.
    [[nodiscard]] Ref<IUser> requiredUser() const;
    /// The folder of its database, where its notes belong. Raises as `requiredApplication`.
    [[nodiscard]] QString folder() const;
    /// Its record with that key; nothing where it has none or no such kind of record any more.
    [[nodiscard]] Ref<IRecord> recordOf(const QString& objectKey,
                                        const QVariant& id) const noexcept;
    /// The record under the cursor of the grid that has it. Raises what the host raises.
    [[nodiscard]] Ref<IRecord> currentRecord() const;
    /// True while it must not be disturbed; one that cannot tell is not busy.
    [[nodiscard]] bool isBusy() const noexcept;
    /// Its window; nothing where it gives none.
    [[nodiscard]] QWidget* window() const noexcept;
    /// Shows a text on its window; nothing happens where that fails.
    void showStatus(const QString& text) const noexcept;

    // What it handed over.
    GuardedPtr<IHostComponent> component;
    GuardedPtr<IHostInterface> hostInterface;
    GuardedPtr<IGridController> mobjUpperGridClass;
    GuardedPtr<IGridController> mobjLowerGridClass;
    GuardedPtr<IRecordGrid> dbgUpper;
    GuardedPtr<IRecordGrid> dbgLower;
    GuardedPtr<IGridSplits> upperSplits;
    GuardedPtr<IGridSplits> lowerSplits;
    GuardedPtr<IToolbar> atbComponent;
    GuardedPtr<IToolbar> atbInterface;
    GuardedPtr<IStatusBar> stbMain;

private:
    QString m_progID;
};

} // namespace yrw
