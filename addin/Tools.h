#pragma once

#include "platform/component/GuardedPtr.h"
#include "platform/toolbar/api/IToolbar.h"

namespace yrw {

/// Ids of the tools that the add-in places in the host's toolbars; both have one key.
inline constexpr int kShowNotesToolId = 50800; ///< in the component window's toolbar
inline constexpr int kGridNotesToolId = 50801; ///< in the pop-up menu of the grids
inline const QString kNotesToolKey = QStringLiteral("tooAddinNotes");
/// Key of the band that is the pop-up menu of the grids.
inline const QString kGridBandKey = QStringLiteral("bndGrid");

/// Places "Show Notes" in the first of the bands "bndMain", "Main" and "Addins" that is there,
/// making the last where none is. Placing it again only refreshes it, and switches it on.
/// Returns the band's key.
QString placeShowNotesTool(IToolbar& toolbar);
/// Places "&Notes" in the pop-up menu of the grids; once.
void placeGridNotesTool(IBand& band);
/// Removes the add-in's tool from a band; no error when band or tool is gone.
void removeNotesTool(IToolbar& toolbar, const QString& bandKey);

} // namespace yrw
