// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelLongitudeEdit.h"

#include <KelGeoArc.h>

KelLongitudeEdit::KelLongitudeEdit(QWidget *parent)
    : KelGeoArcEdit(parent, false)
{
}

KelLongitudeEdit::~KelLongitudeEdit() = default;

double KelLongitudeEdit::decimalDegrees() const
{
    return geoArc().decimalDegrees();
}

void KelLongitudeEdit::setDecimalDegrees(double decimalDegrees)
{
    setGeoArc(KelGeoArc(decimalDegrees));
}
