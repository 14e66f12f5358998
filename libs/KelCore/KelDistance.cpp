// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelDistance.h"

#include <KelDistanceUnit.h>

#include <QDebug>
#include <QHashFunctions>

QString KelDistance::describe(const KelDistanceUnit &unit, int decimals, bool showUnit) const
{
    const QString number = QString::number(m_value / unit.factor(), 'f', decimals);
    const QString symbol = unit.symbol();
    return showUnit && !symbol.isEmpty() ? number + QLatin1Char(' ') + symbol : number;
}

QDebug operator<<(QDebug debug, const KelDistance &distance)
{
    const QDebugStateSaver saver(debug);
    debug.nospace().noquote() << distance.value();
    return debug;
}

size_t qHash(const KelDistance &distance, size_t seed) noexcept
{
    return ::qHash(distance.value(), seed);
}
