// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELMAPBOUNDS_H
#define KELMAPBOUNDS_H

#include <QString>

#include <optional>

class KelGeoPositionRect;

/// A rectangle on the map as it is given on the command line: south, west, north, east in decimal degrees. A west
/// that is greater than the east means: across the date line.
struct KelMapBounds
{
    double south = 0.0;
    double west = 0.0;
    double north = 0.0;
    double east = 0.0;

    /// Reads "S,W,N,E". Nothing if it is not four numbers, if the south is not below the north, if west and east
    /// are one meridian without the world between them, or if one is beyond ±90 or ±180 degrees. Latitudes are brought
    /// within what a Mercator map can show (±85.05).
    [[nodiscard]] static std::optional<KelMapBounds> parse(const QString &text);
    [[nodiscard]] static KelMapBounds fromRect(const KelGeoPositionRect &rect);

    /// The same form as parse() reads, five decimals.
    [[nodiscard]] QString toString() const;
    [[nodiscard]] KelGeoPositionRect toRect() const;
    /// Degrees from west to east, going east: above 0, at most 360.
    [[nodiscard]] double width() const noexcept { return east > west ? east - west : east - west + 360.0; }
};

#endif
