// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelLatitudeEdit.h"

#include <KelGeoArc.h>

KelLatitudeEdit::KelLatitudeEdit(QWidget *parent)
    : KelGeoArcEdit(parent, true)
{
}

KelLatitudeEdit::~KelLatitudeEdit() = default;

double KelLatitudeEdit::decimalDegrees() const
{
    return geoArc().decimalDegrees();
}

void KelLatitudeEdit::setDecimalDegrees(double decimalDegrees)
{
    setGeoArc(KelGeoArc(decimalDegrees));
}
