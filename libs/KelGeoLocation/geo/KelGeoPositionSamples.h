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
    SampleOldenburg = 0,    ///< Germany
    SampleBremen = 1,       ///< Germany
    SampleWellington = 2,   ///< New Zealand
    SampleSydney = 3,       ///< Australia
    SampleNewYork = 4,      ///< USA
    SampleLosAngeles = 5,   ///< USA
    SampleHonolulu = 6,     ///< Hawaii
    SamplePolynesia = 7,    ///< the South Sea
    SampleGreenwich = 8,    ///< the prime meridian
    SampleWindhoek = 9,     ///< Namibia
    SampleHelsinki = 10,    ///< Finland
    SampleGibraltar = 11,   ///< the south of Spain
    SamplePassau = 12       ///< Germany
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
    /// The latitude of position().
    [[nodiscard]] KelLatitude latitude(const KelGeoPositionSamplesEnum &sample) const;
    /// The longitude of position().
    [[nodiscard]] KelLongitude longitude(const KelGeoPositionSamplesEnum &sample) const;

private:
    KelGeoPositionSamples();

    const QHash<KelGeoPositionSamplesEnum, KelGeoPosition> m_positions;
};

#endif
