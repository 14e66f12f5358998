// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackPointImpl.h"

#include <KelSlabPool.h>

#include <utility>

// As large as a line of the processor's cache: with a member more, each of millions of points would lie in two of them.
static_assert(sizeof(void *) != 8 || sizeof(KelGPXTrackPointImpl) == 64);

namespace
{

constinit KelSlabPool pointPool(sizeof(KelGPXTrackPointImpl));
// Read for every object: not worth a function call.
[[gnu::tls_model("initial-exec")]] constinit thread_local KelSlabPool::ThreadCache pointCache;

} // namespace

KelGPXTrackPointImpl::KelGPXTrackPointImpl() = default;

KelGPXTrackPointImpl::KelGPXTrackPointImpl(KelGeoPosition position, int elevation, QDateTime timeStamp,
                                           QString description)
    : m_elevation(elevation)
    , m_position(std::move(position))
    , m_timeStamp(std::move(timeStamp))
    , m_description(std::move(description))
{
}

KelGPXTrackPointImpl::KelGPXTrackPointImpl(double latitude, double longitude, int elevation, QDateTime timeStamp,
                                           QString description)
    : m_elevation(elevation)
    , m_position(latitude, longitude)
    , m_timeStamp(std::move(timeStamp))
    , m_description(std::move(description))
{
}

KelGPXTrackPointImpl::KelGPXTrackPointImpl(double latitude, double longitude, int elevation, qint64 seconds)
    : m_elevation(elevation)
    , m_position(latitude, longitude)
    , m_timeStamp(QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC))
{
}

KelGPXTrackPointImpl::KelGPXTrackPointImpl(double latitude, double longitude, int elevation)
    : m_elevation(elevation)
    , m_position(latitude, longitude)
{
}

KelGPXTrackPointImpl::~KelGPXTrackPointImpl() = default;

void *KelGPXTrackPointImpl::operator new(std::size_t size)
{
    return KelSlabPool::STANDS_ASIDE ? ::operator new(size) : pointPool.allocate(pointCache, size);
}

void KelGPXTrackPointImpl::operator delete(void *memory, std::size_t size) noexcept
{
    KelSlabPool::STANDS_ASIDE ? ::operator delete(memory) : pointPool.release(pointCache, memory, size);
}

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
