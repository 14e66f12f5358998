// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackImpl.h"

#include <utility>
#include <vector>

KelGPXTrackImpl::KelGPXTrackImpl()
    : m_shape(TrackShapeLineString)
{
}

/// Enclaves of enclaves go one after the other: if each went with the one around it, a long chain of them would need
/// more stack than there is.
KelGPXTrackImpl::~KelGPXTrackImpl()
{
    QList<KelGPXTrack> pending = std::move(m_enclaves);
    while (!pending.isEmpty()) {
        KelGPXTrack track = pending.takeLast();
        const KelGPXTrackImpl *const data = track.d.constData(); // d-> would copy what is shared
        if (data && data->ref.loadAcquire() == 1)
            pending.append(std::exchange(track.d->m_enclaves, {}));
    }
}

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
    // Without calling itself, for the same reason as in the destructor.
    std::vector<std::pair<const KelGPXTrackImpl *, const KelGPXTrackImpl *>> pending = {{this, &other}};
    while (!pending.empty()) {
        const auto [one, two] = pending.back();
        pending.pop_back();
        if (one == two)
            continue;
        if (!one->equalsBesideEnclaves(*two) || one->m_enclaves.size() != two->m_enclaves.size())
            return false;
        for (qsizetype i = one->m_enclaves.size() - 1; i >= 0; --i)
            pending.emplace_back(one->m_enclaves.at(i).d.constData(), two->m_enclaves.at(i).d.constData());
    }
    return true;
}

bool KelGPXTrackImpl::equalsBesideEnclaves(const KelGPXTrackImpl &other) const
{
    return m_name == other.m_name && m_description == other.m_description && m_shape == other.m_shape
        && m_segments == other.m_segments;
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
