// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGeoPositionList.h"

#include <KelGeoPositionRect.h>
#include <KelLatitudeList.h>
#include <KelLongitudeList.h>

KelGeoPositionList::KelGeoPositionList(std::initializer_list<KelGeoPosition> positions)
    : QList<KelGeoPosition>(positions)
{
}

KelGeoPositionList::KelGeoPositionList(const QList<KelGeoPosition> &positions)
    : QList<KelGeoPosition>(positions)
{
}

KelGeoPositionList::~KelGeoPositionList() = default;

KelGeoPositionRect KelGeoPositionList::boundingBox() const
{
    KelGeoPositionRect result;
    for (const KelGeoPosition &position : *this)
        result.expandTo(position);
    return result;
}

KelGeoPosition KelGeoPositionList::center() const
{
    return boundingBox().center();
}

KelGeoPosition KelGeoPositionList::average() const
{
    // The coordinates are summed up by themselves, since every intermediate position would be allocated.
    KelLatitude latitude(0.0);
    KelLongitude longitude(0.0);
    for (const KelGeoPosition &position : *this) {
        latitude += position.latitude();
        longitude += position.longitude();
    }
    return KelGeoPosition(latitude, longitude) / static_cast<double>(size());
}

KelLatitudeList KelGeoPositionList::latitudes() const
{
    KelLatitudeList result;
    result.reserve(size());
    for (const KelGeoPosition &position : *this)
        result.append(position.latitude());
    return result;
}

KelLongitudeList KelGeoPositionList::longitudes() const
{
    KelLongitudeList result;
    result.reserve(size());
    for (const KelGeoPosition &position : *this)
        result.append(position.longitude());
    return result;
}

QPainterPath KelGeoPositionList::toPainterPath() const
{
    QPainterPath result;
    if (isEmpty())
        return result;
    result.moveTo(first().toPointF());
    for (auto it = cbegin() + 1; it != cend(); ++it)
        result.lineTo(it->toPointF());
    return result;
}

KelGeoPositionList KelGeoPositionList::filterStrayPositions(double factor, bool invert, int minimumCount) const
{
    if (size() < minimumCount)
        return *this;

    const KelGeoPosition theAverage = average();
    const KelGeoPosition theCenter = center();
    KelGeoPositionList result;
    for (const KelGeoPosition &position : *this) {
        const bool stray = position.distance(theAverage) > position.distance(theCenter) * factor;
        if (stray == invert)
            result.append(position);
    }
    return result;
}
