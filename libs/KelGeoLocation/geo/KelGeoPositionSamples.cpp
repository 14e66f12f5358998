// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGeoPositionSamples.h"

KelGeoPositionSamples::KelGeoPositionSamples()
    : m_positions{
        {SampleOldenburg, KelGeoPosition(53.14118, 8.21467)},
        {SampleBremen, KelGeoPosition(53.0792962, 8.806422)},
        {SampleWellington, KelGeoPosition(-41.28646, 174.772996908)},
        {SampleSydney, KelGeoPosition(-33.865143, 151.2099)},
        {SampleNewYork, KelGeoPosition(40.73061, -73.935242)},
        {SampleLosAngeles, KelGeoPosition(34.052235, -118.243683)},
        {SampleHonolulu, KelGeoPosition(21.315603, -157.858093)},
        {SamplePolynesia, KelGeoPosition(-17.679742, -149.3729275)},
        {SampleGreenwich, KelGeoPosition(51.507351, 0.0)},
        {SampleWindhoek, KelGeoPosition(-22.5631, 17.0786)},
        {SampleHelsinki, KelGeoPosition(60.169471, 24.929667)},
        {SampleGibraltar, KelGeoPosition(36.140751, -5.353585)},
        {SamplePassau, KelGeoPosition(48.5667364, 13.4319466)},
    }
{
}

KelGeoPositionSamples::~KelGeoPositionSamples() = default;

KelGeoPosition KelGeoPositionSamples::position(const KelGeoPositionSamplesEnum &sample) const
{
    return m_positions.value(sample);
}

QString KelGeoPositionSamples::name(const KelGeoPositionSamplesEnum &sample) const
{
    switch (sample) {
    case SampleOldenburg:
        return QStringLiteral("Oldenburg");
    case SampleBremen:
        return QStringLiteral("Bremen");
    case SampleWellington:
        return QStringLiteral("Wellington");
    case SampleSydney:
        return QStringLiteral("Sydney");
    case SampleNewYork:
        return QStringLiteral("New York");
    case SampleLosAngeles:
        return QStringLiteral("LA");
    case SampleHonolulu:
        return QStringLiteral("Honolulu");
    case SamplePolynesia:
        return QStringLiteral("Polynesien");
    case SampleGreenwich:
        // Deliberate: spelled so; hosts look places up by this name.
        return QStringLiteral("Greenich");
    case SampleWindhoek:
        return QStringLiteral("Windhoek");
    case SampleHelsinki:
        return QStringLiteral("Helsinki");
    case SampleGibraltar:
        return QStringLiteral("Gibraltar");
    case SamplePassau:
        return QStringLiteral("Passau");
    }
    return QString();
}

KelLatitude KelGeoPositionSamples::latitude(const KelGeoPositionSamplesEnum &sample) const
{
    return position(sample).latitude();
}

KelLongitude KelGeoPositionSamples::longitude(const KelGeoPositionSamplesEnum &sample) const
{
    return position(sample).longitude();
}

// Here, so that programs and plugins that come without any other user of it find one and the same object.
template class KelSingleton<KelGeoPositionSamples>;
