#pragma once

#include "framework/HostUtility.h"
#include "framework/IAddIn.h"
#include "framework/Services.h"

#include <functional>

namespace yrw {

/// Makes an object of a registered class; raises `kErrorCannotCreateObject`.
using CreateObject = std::function<Ref<Counted>(const QString& programId)>;

/// Loads an add-in and takes it through its life. A failure costs one message; the desk runs on
/// without the add-in.
/// Lifetime: owned by the window. Thread: the user-interface thread.
class AddInLoader {
public:
    AddInLoader(const Services& services, CreateObject create);
    ~AddInLoader();
    AddInLoader(const AddInLoader&) = delete;
    AddInLoader& operator=(const AddInLoader&) = delete;

    /// Creates the add-in, hands it the component and activates it; true when it is loaded.
    /// Nothing when one is loaded already.
    bool load(const QString& programId, IHostComponent& component);
    /// Deactivates the add-in, takes the component back and lets go; twice without an error.
    void unload();
    /// True when the add-in says that it is ready to work; a repeated call asks it again.
    bool activate();
    void deactivate();
    [[nodiscard]] bool isLoaded() const noexcept { return m_addIn != nullptr; }
    /// "Yarrowen Notes 1.0.0", or a text that says that there is none.
    [[nodiscard]] QString description() const;

private:
    const Services m_services;
    CreateObject m_create;
    Ref<IAddIn> m_addIn;
};

} // namespace yrw
