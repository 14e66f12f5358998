// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelDistance.h"

#include <KelDistanceUnit.h>

QString KelDistance::describe(const KelDistanceUnit &unit, int decimals, bool showUnit) const
{
    const QString number = QString::number(m_value / unit.factor(), 'f', decimals);
    const QString symbol = unit.symbol();
    return showUnit && !symbol.isEmpty() ? number + QLatin1Char(' ') + symbol : number;
}
