// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelQmlPosition.h"

double KelQmlPosition::distanceTo(const KelQmlPosition &other) const
{
    return m_position.distance(other.m_position);
}

KelQmlPosition KelQmlPosition::movedBy(double northKm, double eastKm) const
{
    return KelQmlPosition(m_position.moveNorthBy(northKm).moveEastBy(eastKm));
}

QString KelQmlPosition::toString() const
{
    return m_position.toString(false);
}

QString KelQmlPosition::toDegreeText() const
{
    return m_position.toString(true);
}
