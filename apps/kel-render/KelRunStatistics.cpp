// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelRunStatistics.h"

#include <KelGPXConfiguredTrack.h>
#include <KelGPXTrack.h>
#include <KelGPXTrackSegment.h>
#include <KelGPXTrackSelection.h>

#include <sys/resource.h>

namespace
{

double seconds(const timeval &time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

} // namespace

KelRunStatistics::Watch::Watch(KelRunStatistics &statistics, Phase phase)
    : m_statistics(statistics)
    , m_phase(phase)
{
    m_timer.start();
}

KelRunStatistics::Watch::~Watch()
{
    m_statistics.m_nanoseconds[m_phase] += m_timer.nsecsElapsed();
}

KelRunStatistics::KelRunStatistics()
{
    m_total.start();
}

void KelRunStatistics::setRead(const KelGPXTrackSelection &selection, qsizetype files)
{
    m_files = files;
    m_tracks = selection.count();
    m_segments = 0;
    m_points = 0;
    for (int row = 0; row < selection.count(); ++row) {
        const KelGPXTrack track = selection.value(row).track();
        m_segments += track.segments().size();
        m_points += track.countPoints();
    }
}

void KelRunStatistics::setPicture(const QSize &size, qsizetype bytes)
{
    m_pictureSize = size;
    m_pictureBytes = bytes;
}

QJsonObject KelRunStatistics::toJson() const
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const QJsonObject times{{QStringLiteral("read"), seconds(Read)},
                            {QStringLiteral("store"), seconds(Store)},
                            {QStringLiteral("draw"), seconds(Draw)},
                            // The encoder asks for the picture while it works.
                            {QStringLiteral("encode"), seconds(Encode) - seconds(Draw)},
                            {QStringLiteral("write"), seconds(Write)},
                            {QStringLiteral("total"), static_cast<double>(m_total.nsecsElapsed()) / 1e9},
                            {QStringLiteral("cpu"), ::seconds(usage.ru_utime) + ::seconds(usage.ru_stime)}};
    const QJsonObject counts{{QStringLiteral("files"), m_files},
                             {QStringLiteral("tracks"), m_tracks},
                             {QStringLiteral("segments"), m_segments},
                             {QStringLiteral("points"), m_points}};
    const QJsonObject picture{{QStringLiteral("width"), m_pictureSize.width()},
                              {QStringLiteral("height"), m_pictureSize.height()},
                              {QStringLiteral("bytes"), static_cast<qint64>(m_pictureBytes)}};
    return {{QStringLiteral("seconds"), times},
            {QStringLiteral("counts"), counts},
            {QStringLiteral("memory"),
             QJsonObject{{QStringLiteral("peakBytes"), static_cast<qint64>(usage.ru_maxrss) * 1024}}},
            {QStringLiteral("picture"), picture}};
}
