// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELRATIONAL_H
#define KELRATIONAL_H

#include <KelCoreGlobal.h>

#include <QString>

class QDebug;

/// A fraction of two integers as photo metadata stores numbers. It is kept as given: neither reduced nor checked, a
/// denominator of 0 included.
class KELCORE_EXPORT KelRational
{
public:
    /// Both numbers as they are.
    KelRational(int numerator, int denominator) noexcept;

    /// The number above the line.
    [[nodiscard]] int numerator() const noexcept
    {
        return m_numerator;
    }

    /// The number below the line; may be 0.
    [[nodiscard]] int denominator() const noexcept
    {
        return m_denominator;
    }

    /// Numerator, slash, denominator as plain integers: "5/100000".
    [[nodiscard]] QString toString() const;

private:
    int m_numerator;
    int m_denominator;
};

/// Writes toString().
KELCORE_EXPORT QDebug operator<<(QDebug debug, const KelRational &rational);

#endif
