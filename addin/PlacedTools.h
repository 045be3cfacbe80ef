#pragma once

#include "addin/AddInHost.h"

#include <functional>

namespace yrw {

/// The tools that one add-in has placed in the toolbars of its host.
/// Lifetime: a member of its `AddIn`, as is the host. Thread: the user-interface thread.
class PlacedTools {
public:
    explicit PlacedTools(const AddInHost& host) : m_host(host) {}

    /// Places "Show Notes". A tool of the grids' menu that was clicked while the database was
    /// closed works again; one that another add-in placed is this one's, too.
    void place() noexcept;
    /// Places "&Notes" when that band is the grids' menu.
    void placeIn(IBand& band);
    /// Takes "Show Notes" away from the user.
    void switchOff();
    /// True while there is one in that toolbar of the host.
    [[nodiscard]] bool isIn(const IToolbar* toolbar) const noexcept;
    /// Removes them, except from toolbars that others share.
    void remove(const std::function<bool(const IToolbar*)>& isShared) noexcept;

private:
    const AddInHost& m_host;
    QString m_bandKey;         ///< band that holds "Show Notes"; empty while it is not placed
    bool m_inGridMenu = false; ///< "&Notes" is placed
};

} // namespace yrw
