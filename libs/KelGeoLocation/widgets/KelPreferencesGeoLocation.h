// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPREFERENCESGEOLOCATION_H
#define KELPREFERENCESGEOLOCATION_H

#include <KelGeoLocationGlobal.h>
#include <KelPreferencesBox.h>

class QCheckBox;

/// The library's page of a host's preferences dialog ("Landkarten").
///
/// It edits one of the two settings of KelGeoLocationSettings: whether a click on a search result puts the place
/// into the list of places at once. The default track configuration is edited elsewhere, in the host's style editor.
///
/// The dialog calls readFromConfig() when it shows the page and writeToConfig() when the user accepts it; nothing
/// is written in between. Reverting and asking before leaving are the base class's business.
class KELGEOLOCATION_EXPORT KelPreferencesGeoLocation : public KelPreferencesBox
{
    Q_OBJECT

public:
    /// An empty page; the check box shows the setting only after readFromConfig().
    explicit KelPreferencesGeoLocation(QWidget *parent = nullptr);

    /// Ticks the check box if and only if KelGeoLocationSettings::instantlyAddLocations().
    void readFromConfig() override;

    /// Hands the check box's state to the settings and saves them.
    void writeToConfig() override;

private:
    QCheckBox *m_instantlyAddLocations;
};

#endif
