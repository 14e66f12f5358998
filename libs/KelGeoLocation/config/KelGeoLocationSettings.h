// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGEOLOCATIONSETTINGS_H
#define KELGEOLOCATIONSETTINGS_H

#include <KelConfigItem.h>
#include <KelGeoLocationGlobal.h>
#include <KelSettings.h>
#include <KelSingleton.h>

#include <QString>

class KelGPXTrackConfiguration;

/// The library's two persistent user settings, kept in the application's settings store:
///
/// - "instantlyAddLocations" (default true): a place that the user picks from a search result goes into the list of
///   places at once; when false, the host offers a separate button for it;
/// - "defaultTrackConfiguration" (default KelGPXTrackConfiguration::defaultValue()): the configuration that new tracks
///   start with, stored as the text of KelGPXTrackConfiguration::serialize().
///
/// The one instance loads itself when it is first asked for. It belongs to the user-interface thread.
class KELGEOLOCATION_EXPORT KelGeoLocationSettings : public KelSettings, public KelSingleton<KelGeoLocationSettings>
{
    Q_OBJECT

public:
    /// Whether a place that the user picks goes into the list at once, see the class.
    [[nodiscard]] bool instantlyAddLocations() const noexcept;
    /// Emits instantlyAddLocationsDisabled() when the value changes. Does not save: call saveSettings().
    void setInstantlyAddLocations(bool instantly);

    /// The stored configuration. It is read from its text on every call, so keep it rather than ask in a loop.
    [[nodiscard]] KelGPXTrackConfiguration defaultTrackConfiguration() const;
    /// Stores the configuration and saves both settings at once, unless it is stored already.
    void setDefaultTrackConfiguration(const KelGPXTrackConfiguration &configuration);

    /// Reads both settings; what the store lacks keeps its default. The shape of the default configuration is then
    /// set to auto, and that is saved if it was another one: a fixed shape would be forced upon every new track.
    void loadSettings();
    /// Writes both settings to the store.
    void saveSettings();

Q_SIGNALS:
    /// True when instant adding was switched off, false when it was switched on.
    void instantlyAddLocationsDisabled(bool disabled);

protected:
    KelGeoLocationSettings();
    ~KelGeoLocationSettings() override;

    /// Loads the settings.
    void setupInstance() override;

private:
    friend class KelSingleton<KelGeoLocationSettings>;

    KelConfigItem<bool> m_instantlyAddLocations;
    KelConfigItem<QString> m_defaultTrackConfiguration;
};

#endif
