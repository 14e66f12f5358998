// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelQmlTrack.h"

#include <KelGeoPositionList.h>

QVariantList KelQmlTrack::positions() const
{
    QVariantList list;
    const KelGeoPositionList points = m_track.allPoints();
    list.reserve(points.size());
    for (const KelGeoPosition &point : points)
        list.append(QVariant::fromValue(KelQmlPosition(point)));
    return list;
}
