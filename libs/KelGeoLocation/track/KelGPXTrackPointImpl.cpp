// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackPointImpl.h"

#include <utility>

KelGPXTrackPointImpl::KelGPXTrackPointImpl() = default;

KelGPXTrackPointImpl::KelGPXTrackPointImpl(KelGeoPosition position, int elevation, QDateTime timeStamp,
                                           QString description)
    : m_position(std::move(position))
    , m_elevation(elevation)
    , m_timeStamp(std::move(timeStamp))
    , m_description(std::move(description))
{
}

KelGPXTrackPointImpl::~KelGPXTrackPointImpl() = default;

bool KelGPXTrackPointImpl::operator==(const KelGPXTrackPointImpl &other) const
{
    return m_position == other.m_position && m_elevation == other.m_elevation && m_timeStamp == other.m_timeStamp
        && m_description == other.m_description;
}

KelGeoPositionList KelGPXTrackPointImpl::allPoints() const
{
    KelGeoPositionList points;
    points.append(m_position);
    return points;
}

QList<KelGeoPositionList> KelGPXTrackPointImpl::chunkedPoints() const
{
    return {allPoints()};
}

bool KelGPXTrackPointImpl::isSinglePoint() const
{
    return true;
}

KelGeoPosition KelGPXTrackPointImpl::firstPoint() const
{
    return m_position;
}

KelGeoPosition KelGPXTrackPointImpl::lastPoint() const
{
    return m_position;
}

QList<QDateTime> KelGPXTrackPointImpl::allTimeStamps() const
{
    return {m_timeStamp};
}
