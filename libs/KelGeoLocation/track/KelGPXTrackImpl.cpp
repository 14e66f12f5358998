// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackImpl.h"

KelGPXTrackImpl::KelGPXTrackImpl()
    : m_shape(TrackShapeLineString)
{
}

KelGPXTrackImpl::~KelGPXTrackImpl() = default;

void KelGPXTrackImpl::addSegment(const KelGPXTrackSegment &segment)
{
    if (segment.isValid())
        m_segments.append(segment);
}

int KelGPXTrackImpl::countPoints() const
{
    int count = 0;
    for (const KelGPXTrackSegment &segment : m_segments)
        count += segment.count();
    return count;
}

bool KelGPXTrackImpl::operator==(const KelGPXTrackImpl &other) const
{
    return m_name == other.m_name && m_description == other.m_description && m_shape == other.m_shape
        && m_segments == other.m_segments && m_enclaves == other.m_enclaves;
}

KelGeoPositionList KelGPXTrackImpl::allPoints() const
{
    KelGeoPositionList points;
    points.reserve(countPoints());
    for (const KelGPXTrackSegment &segment : m_segments)
        points.append(segment.allPoints());
    return points;
}

QList<KelGeoPositionList> KelGPXTrackImpl::chunkedPoints() const
{
    QList<KelGeoPositionList> chunks;
    for (const KelGPXTrackSegment &segment : m_segments)
        chunks.append(segment.chunkedPoints());
    return chunks;
}

bool KelGPXTrackImpl::isSinglePoint() const
{
    return m_segments.size() == 1 && m_segments.first().isSinglePoint();
}

KelGeoPosition KelGPXTrackImpl::firstPoint() const
{
    return m_segments.isEmpty() ? KelGeoPosition() : m_segments.first().firstPoint();
}

KelGeoPosition KelGPXTrackImpl::lastPoint() const
{
    return m_segments.isEmpty() ? KelGeoPosition() : m_segments.last().lastPoint();
}

QList<QDateTime> KelGPXTrackImpl::allTimeStamps() const
{
    QList<QDateTime> timeStamps;
    timeStamps.reserve(countPoints());
    for (const KelGPXTrackSegment &segment : m_segments)
        timeStamps.append(segment.allTimeStamps());
    return timeStamps;
}
