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

QJsonObject countsOf(const KelGPXTrackSelection &selection, qsizetype files)
{
    qint64 segments = 0;
    qint64 points = 0;
    for (int row = 0; row < selection.count(); ++row) {
        const KelGPXTrack track = selection.value(row).track();
        segments += track.segments().size();
        points += track.countPoints();
    }
    return {{QStringLiteral("files"), static_cast<qint64>(files)},
            {QStringLiteral("tracks"), selection.count()},
            {QStringLiteral("segments"), segments},
            {QStringLiteral("points"), points}};
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

void KelRunStatistics::setPicture(const QSize &size, qsizetype bytes)
{
    m_pictureSize = size;
    m_pictureBytes = bytes;
}

QJsonObject KelRunStatistics::toJson(const KelGPXTrackSelection &selection) const
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
    const QJsonObject picture{{QStringLiteral("width"), m_pictureSize.width()},
                              {QStringLiteral("height"), m_pictureSize.height()},
                              {QStringLiteral("bytes"), static_cast<qint64>(m_pictureBytes)}};
    return {{QStringLiteral("seconds"), times},
            {QStringLiteral("counts"), countsOf(selection, m_files)},
            {QStringLiteral("memory"),
             QJsonObject{{QStringLiteral("peakBytes"), static_cast<qint64>(usage.ru_maxrss) * 1024}}},
            {QStringLiteral("picture"), picture}};
}
