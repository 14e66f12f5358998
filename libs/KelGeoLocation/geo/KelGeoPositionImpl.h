// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGEOPOSITIONIMPL_H
#define KELGEOPOSITIONIMPL_H

#include <KelGeoLocationGlobal.h>
#include <KelLatitude.h>
#include <KelLongitude.h>

#include <QSharedData>

#include <cstddef>

/// The shared half of KelGeoPosition: its two coordinates, and the constants of its computations.
/// Hosts use the handle, KelGeoPosition.
class KELGEOLOCATION_EXPORT KelGeoPositionImpl : public QSharedData
{
public:
    /// Radius of the sphere on which distances are computed, in kilometres.
    static constexpr double EARTHRADIUS = 6370.0;
    /// Kilometres per arc minute: one nautical mile.
    static constexpr double ARCMINUTELENGTH = 1.852;
    /// Deliberate: twelve digits, not full precision; displacements are computed with this value.
    static constexpr double PI = 3.14159265359;
    /// Kilometres per degree of longitude at the equator, 2 pi * 6370 / 360.
    static constexpr double _2PiR = 111.1774733520461;

    /// Both coordinates are the invalid 720.
    KelGeoPositionImpl() noexcept = default;
    /// Both angles as they are.
    KelGeoPositionImpl(const KelLatitude &theLatitude, const KelLongitude &theLongitude) noexcept
        : longitude(theLongitude)
        , latitude(theLatitude)
    {
    }
    KelGeoPositionImpl(const KelGeoPositionImpl &other) noexcept = default;
    KelGeoPositionImpl(KelGeoPositionImpl &&other) noexcept = default;
    KelGeoPositionImpl &operator=(const KelGeoPositionImpl &other) = delete;
    KelGeoPositionImpl &operator=(KelGeoPositionImpl &&other) = delete;
    virtual ~KelGeoPositionImpl();

    /// Positions come by the million: their memory comes from a pool, that of subclasses of another size does not.
    static void *operator new(std::size_t size);
    /// In memory that the caller has.
    static void *operator new(std::size_t, void *place) noexcept { return place; }
    /// In any thread.
    static void operator delete(void *memory, std::size_t size) noexcept;
    /// Leaves the caller's memory alone.
    static void operator delete(void *, void *) noexcept { }

    /// East is positive.
    KelLongitude longitude;
    /// North is positive.
    KelLatitude latitude;
};

#endif
