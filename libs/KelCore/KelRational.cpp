// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelRational.h"

#include <QDebug>

KelRational::KelRational(int numerator, int denominator) noexcept
    : m_numerator(numerator)
    , m_denominator(denominator)
{
}

QString KelRational::toString() const
{
    return QString::number(m_numerator) + QLatin1Char('/') + QString::number(m_denominator);
}

QDebug operator<<(QDebug debug, const KelRational &rational)
{
    const QDebugStateSaver saver(debug);
    debug.nospace().noquote() << rational.toString();
    return debug;
}
