#pragma once

#include <QList>
#include <QPoint>
#include <QString>

#include <optional>

namespace yrw {

/// Where a band lies in its toolbar, and where it floats instead.
struct BandDocking {
    int row = 0;   ///< from the top
    int place = 0; ///< from the left within the row
    /// Top left corner on the screen, in pixels; nothing while the band is docked. A floating band
    /// keeps its row and place for when it is docked again.
    std::optional<QPoint> floating;

    friend bool operator==(const BandDocking&, const BandDocking&) = default;
};

/// A band, by its key, and where it is.
struct BandPlace {
    QString key;
    BandDocking docking;
};

/// Sorts bands by row and place and numbers both from 0 without gaps.
void numberPlaces(QList<BandPlace>& bands);

/// The text that an arrangement is stored as: "key:row" per band in the order of the places,
/// "key:row@x,y" for a floating one, separated by ';'.
[[nodiscard]] QString arrangementText(QList<BandPlace> bands);

/// Reads such a text; nothing when any part of it is not of that form or a band is named twice.
[[nodiscard]] std::optional<QList<BandPlace>> parseArrangement(const QString& text);

} // namespace yrw
