// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGeoLocationSettings.h"

#include <KelGPXTrackConfiguration.h>

KelGeoLocationSettings::KelGeoLocationSettings()
    : m_instantlyAddLocations(QStringLiteral("instantlyAddLocations"), true)
    , m_defaultTrackConfiguration(QStringLiteral("defaultTrackConfiguration"),
                                  KelGPXTrackConfiguration::defaultValue().serialize())
{
}

KelGeoLocationSettings::~KelGeoLocationSettings() = default;

void KelGeoLocationSettings::setupInstance()
{
    loadSettings();
}

bool KelGeoLocationSettings::instantlyAddLocations() const noexcept
{
    return m_instantlyAddLocations.value();
}

void KelGeoLocationSettings::setInstantlyAddLocations(bool instantly)
{
    if (m_instantlyAddLocations.value() == instantly)
        return;
    m_instantlyAddLocations.setValue(instantly);
    Q_EMIT instantlyAddLocationsDisabled(!instantly);
}

KelGPXTrackConfiguration KelGeoLocationSettings::defaultTrackConfiguration() const
{
    return KelGPXTrackConfiguration::deserialize(m_defaultTrackConfiguration.value());
}

void KelGeoLocationSettings::setDefaultTrackConfiguration(const KelGPXTrackConfiguration &configuration)
{
    const QString text = configuration.serialize();
    if (m_defaultTrackConfiguration.value() == text)
        return;
    m_defaultTrackConfiguration.setValue(text);
    saveSettings();
}

void KelGeoLocationSettings::loadSettings()
{
    load(m_instantlyAddLocations);
    load(m_defaultTrackConfiguration);

    // Deliberate: the default shape is auto, whatever was stored, so that new tracks find their own shape.
    KelGPXTrackConfiguration configuration = defaultTrackConfiguration();
    configuration.setTrackShape(TrackShapeAuto);
    setDefaultTrackConfiguration(configuration);
}

void KelGeoLocationSettings::saveSettings()
{
    save(m_instantlyAddLocations);
    save(m_defaultTrackConfiguration);
}
