#pragma once

#include "platform/component/Counted.h"

namespace yrw {

/// Number of the contract between host and component; both sides must be built with the same one.
inline constexpr int kContractVersion = 2;

/// Answers of the component's entry points.
enum ComponentResult : int {
    kComponentOk = 0,
    kComponentNo = 1,                 ///< `DllCanUnloadNow`: objects or locks are still held
    kComponentClassNotAvailable = -1, ///< no such class in this component
    kComponentFailed = -2,            ///< the registry could not be written
};

/// Makes objects of one class of a component.
///
/// Lifetime: owned by the component, valid as long as its library is loaded.
/// Thread: the user-interface thread.
class IClassFactory {
public:
    virtual ~IClassFactory();
    /// The contract version that the component was built with. First, so that it can be asked of
    /// a component of any version.
    virtual int contractVersion() const = 0;
    /// Makes an object, which counts against unloading until it ends.
    virtual Ref<Counted> createInstance() = 0;
    /// Adds (true) or takes back (false) a lock that keeps the component loaded.
    virtual void lockServer(bool lock) = 0;
};

/// Types of the entry points that a component exports, by these names:
/// `DllGetClassObject`, `DllCanUnloadNow`, `DllRegisterServer`, `DllUnregisterServer`.
using GetClassObjectFunction = int (*)(const char* classId, IClassFactory** factory);
using CanUnloadNowFunction = int (*)();
using RegisterServerFunction = int (*)();

} // namespace yrw
