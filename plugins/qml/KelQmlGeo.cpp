// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelQmlGeo.h"

#include <KelGPXBeelineCreator.h>

KelQmlGeo::KelQmlGeo(QObject *parent)
    : QObject(parent)
{
}

KelQmlPosition KelQmlGeo::position(double latitude, double longitude) const
{
    return KelQmlPosition(KelGeoPosition(latitude, longitude));
}

KelQmlPosition KelQmlGeo::parsePosition(const QString &text) const
{
    const KelGeoPosition position = KelGeoPosition::parse(text);
    return KelQmlPosition(position.isValid() ? position : KelGeoPosition::fromString(text));
}

KelQmlTrack KelQmlGeo::beeline(const KelQmlPosition &from, const KelQmlPosition &to, const QString &name) const
{
    return KelQmlTrack(KelGPXBeelineCreator(from.position(), to.position()).createBeeline(name));
}
