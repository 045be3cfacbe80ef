#pragma once

#include "framework/HostObjects.h"

namespace yrw {

/// An add-in, as the host drives it.
///
/// Life: created through the class registry; given `Component`; `Activate`, `DeActivate` in any
/// order and any number of times; released. No call raises.
/// Lifetime: counted; the host may let go at any time.
/// Thread: the user-interface thread.
class IAddIn : public virtual Counted {
public:
    ~IAddIn() override;

    [[nodiscard]] virtual IHostComponent* Component() const = 0;
    /// Hands over the host component; nothing takes it back.
    virtual void setComponent(IHostComponent* component) = 0;
    [[nodiscard]] virtual IHostInterface* IInterface() const = 0;
    virtual void setIInterface(IHostInterface* interface_) = 0;
    [[nodiscard]] virtual Ref<IApplication> Application() = 0;
    [[nodiscard]] virtual QString Name() = 0;
    /// Major, minor and revision numbers joined with ".".
    [[nodiscard]] virtual QString Version() = 0;
    virtual void AttachControls() = 0;
    virtual void DetachControls() = 0;
    /// True when the add-in is ready to work.
    virtual bool Activate() = 0;
    [[nodiscard]] virtual bool Activated() = 0;
    virtual void DeActivate() = 0;
    [[nodiscard]] virtual bool Initialised() = 0;
};

} // namespace yrw
