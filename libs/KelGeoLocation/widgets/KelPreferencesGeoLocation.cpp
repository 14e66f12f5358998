// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPreferencesGeoLocation.h"

#include <KelGeoLocationSettings.h>

#include <QCheckBox>
#include <QVBoxLayout>

KelPreferencesGeoLocation::KelPreferencesGeoLocation(QWidget *parent)
    : KelPreferencesBox(parent, tr("Landkarten"), KelPreferencesType(0))
    , m_instantlyAddLocations(new QCheckBox(
          tr("Wenn man ein Suchergebnis anklickt, soll es direkt in die Liste der Orte eingefügt werden.", "CHECKBOX"),
          this))
{
    setObjectName(QStringLiteral("GeoLocationGroupBox"));

    m_instantlyAddLocations->setObjectName(QStringLiteral("myInstantlyAddLocations"));
    m_instantlyAddLocations->setToolTip(
        tr("Alternativ wird hierfür ein Knopf angeboten, der explizit benutzt werden muss."));

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_instantlyAddLocations);
}

void KelPreferencesGeoLocation::readFromConfig()
{
    m_instantlyAddLocations->setChecked(KelGeoLocationSettings::instance().instantlyAddLocations());
}

void KelPreferencesGeoLocation::writeToConfig()
{
    KelGeoLocationSettings &settings = KelGeoLocationSettings::instance();
    settings.setInstantlyAddLocations(m_instantlyAddLocations->isChecked());
    settings.saveSettings();
}
