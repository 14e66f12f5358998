// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGEOPOSITIONSAMPLES_H
#define KELGEOPOSITIONSAMPLES_H

#include <KelGeoLocationGlobal.h>
#include <KelGeoPosition.h>
#include <KelSingleton.h>

#include <QHash>
#include <QString>

/// The sample places of KelGeoPositionSamples, without gaps from 0 on.
enum KelGeoPositionSamplesEnum : int {
    SampleOldenburg = 0,
    SampleBremen = 1,
    SampleWellington = 2,
    SampleSydney = 3,
    SampleNewYork = 4,
    SampleLosAngeles = 5,
    SampleHonolulu = 6,
    SamplePolynesia = 7,
    SampleGreenwich = 8,
    SampleWindhoek = 9,
    SampleHelsinki = 10,
    SampleGibraltar = 11,
    SamplePassau = 12
};

/// Named places in both hemispheres and on both sides of the date line, for trying out projections and ranges.
///
/// The table never changes and may be read from any thread.
class KELGEOLOCATION_EXPORT KelGeoPositionSamples : public KelSingleton<KelGeoPositionSamples>
{
    friend class KelSingleton<KelGeoPositionSamples>;

public:
    ~KelGeoPositionSamples() override;

    /// The place's position; the default (invalid) one for a value that is no sample.
    [[nodiscard]] KelGeoPosition position(const KelGeoPositionSamplesEnum &sample) const;
    /// The place's name, not translated; a null text for a value that is no sample.
    [[nodiscard]] QString name(const KelGeoPositionSamplesEnum &sample) const;
    [[nodiscard]] KelLatitude latitude(const KelGeoPositionSamplesEnum &sample) const;
    [[nodiscard]] KelLongitude longitude(const KelGeoPositionSamplesEnum &sample) const;

private:
    KelGeoPositionSamples();

    const QHash<KelGeoPositionSamplesEnum, KelGeoPosition> m_positions;
};

#endif
