// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelMapArea.h"

#include "KelMapBounds.h"

#include <KelGPXTrackElement.h>
#include <KelGeoPosition.h>
#include <KelGeoPositionList.h>
#include <KelLatitudeList.h>
#include <KelLongitudeList.h>
#include <KelMapProjection.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{

constexpr double MERCATOR_LIMIT = 85.05;
constexpr double SINGLE_PLACE_DEGREES = 0.1;
constexpr double NARROWEST_DEGREES = 0.002;  // about 200 m from edge to edge
constexpr double LARGEST_WORLD_PIXELS = 5e8; // the same limit for very large pictures
constexpr int SECTORS = 3600;
constexpr double SECTOR_DEGREES = 360.0 / SECTORS;

bool isOnGlobe(const KelGeoPosition &position)
{
    return position.isValid() && position.latitude().isInValidRange() && position.longitude().isInValidRange();
}

int sectorOf(double longitude)
{
    return std::clamp(static_cast<int>(std::floor((longitude + 180.0) / SECTOR_DEGREES)), 0, SECTORS - 1);
}

/// West and east of the widest sector of the globe that no line enters, turned inside out: the range that remains.
/// The east may exceed 180. The sectors at its edges hold a point each, for lines turn back only at points; the
/// outermost ones are the exact edges.
std::pair<double, double> rangeWithoutWidestGap(const QList<KelGeoPositionList> &chunks)
{
    std::vector<char> used(SECTORS, 0);
    for (const KelGeoPositionList &chunk : chunks) {
        int previous = -1;
        for (const KelGeoPosition &position : chunk) {
            if (!isOnGlobe(position))
                continue;
            const int sector = sectorOf(position.longitude().decimalDegrees());
            const int distance = previous < 0 ? 0 : (sector - previous + SECTORS) % SECTORS;
            const int step = distance <= SECTORS / 2 ? 1 : SECTORS - 1;
            for (int i = previous < 0 ? sector : previous;; i = (i + step) % SECTORS) {
                used[static_cast<size_t>(i)] = 1;
                if (i == sector)
                    break;
            }
            previous = sector;
        }
    }
    int widest = 0;
    int gapEnd = 0;
    int length = 0;
    for (int i = 0; i < 2 * SECTORS; ++i) {
        length = used[static_cast<size_t>(i % SECTORS)] ? 0 : length + 1;
        if (length > widest && length < SECTORS) {
            widest = length;
            gapEnd = i + 1;
        }
    }
    if (widest == 0)
        return {-180.0, 180.0};
    const int first = gapEnd % SECTORS;
    const int last = (gapEnd - widest - 1 + 2 * SECTORS) % SECTORS;
    double west = (first + 1) * SECTOR_DEGREES - 180.0;
    double east = last * SECTOR_DEGREES - 180.0;
    for (const KelGeoPositionList &chunk : chunks) {
        for (const KelGeoPosition &position : chunk) {
            if (!isOnGlobe(position))
                continue;
            const double longitude = position.longitude().decimalDegrees();
            const int sector = sectorOf(longitude);
            if (sector == first)
                west = std::min(west, longitude);
            if (sector == last)
                east = std::max(east, longitude);
        }
    }
    return {west, east < west ? east + 360.0 : east};
}

} // namespace

KelGeoPositionRect KelMapArea::boundingBox(const KelGPXTrackElement &tracks)
{
    KelGeoPositionList positions;
    const QList<KelGeoPositionList> chunks = tracks.chunkedPoints();
    for (const KelGeoPositionList &chunk : chunks)
        std::copy_if(chunk.begin(), chunk.end(), std::back_inserter(positions), isOnGlobe);
    if (positions.isEmpty())
        return {};

    const auto latitudes = positions.latitudes().range();
    const auto longitudes = positions.longitudes().effectiveRange();
    KelMapBounds bounds{latitudes.min().decimalDegrees(), longitudes.min().decimalDegrees(),
                        latitudes.max().decimalDegrees(), longitudes.max().decimalDegrees()};
    if (bounds.west == bounds.east)
        return bounds.toRect();
    if (bounds.width() > 180.0) {
        const auto [west, east] = rangeWithoutWidestGap(chunks);
        if (east - west < bounds.width()) {
            bounds.west = west;
            bounds.east = east > 180.0 ? east - 360.0 : east;
        }
    }
    return bounds.toRect();
}

KelGeoPositionRect KelMapArea::aroundTracks(const KelGPXTrackElement &tracks, const QSize &size,
                                            const QMarginsF &margins)
{
    const KelGeoPositionRect box = boundingBox(tracks);
    if (!box.isValid())
        return {};

    const KelMapProjection formulas(KelGeoPositionRect::europeanUnion(), size);
    const auto limited = [](double latitude) { return std::clamp(latitude, -MERCATOR_LIMIT, MERCATOR_LIMIT); };
    double west = formulas.longitudeToNormalized(box.west().decimalDegrees());
    double east = formulas.longitudeToNormalized(box.east().decimalDegrees());
    double north = formulas.latitudeToNormalized(limited(box.north().decimalDegrees()));
    double south = formulas.latitudeToNormalized(limited(box.south().decimalDegrees()));
    if (east < west)
        east += 1.0;
    if (east - west < 1e-9 && south - north < 1e-9) {
        const double around = SINGLE_PLACE_DEGREES / 360.0;
        west -= around;
        east += around;
        north -= around;
        south += around;
    }

    // Pixels per world at which the tracks fill what the margins leave of the picture.
    const double innerWidth = std::max(1.0, size.width() - margins.left() - margins.right());
    const double innerHeight = std::max(1.0, size.height() - margins.top() - margins.bottom());
    const double widthScale = east > west ? innerWidth / (east - west) : HUGE_VAL;
    const double heightScale = south > north ? innerHeight / (south - north) : HUGE_VAL;
    const double closest = std::min(size.width() * 360.0 / NARROWEST_DEGREES, LARGEST_WORLD_PIXELS);
    const double scale = std::min({widthScale, heightScale, closest});

    const double left = (west + east) / 2 - (margins.left() + innerWidth / 2) / scale;
    const double height = size.height() / scale;
    double top = (north + south) / 2 - (margins.top() + innerHeight / 2) / scale;
    if (height <= 1.0)
        top = std::clamp(top, 0.0, 1.0 - height); // nothing to see beyond the map's edges
    const double right = left + size.width() / scale;
    return {KelGeoPosition(formulas.normalizedToLatitude(top + height), formulas.normalizedToLongitude(left)),
            KelGeoPosition(formulas.normalizedToLatitude(top), formulas.normalizedToLongitude(right))};
}
