// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELEXTREMENUMBERS_H
#define KELEXTREMENUMBERS_H

#include <QList>
#include <QTest>

#include <limits>

/// Numbers that no map has and any file may hold. A test that asks an interface for each of them is at the same time
/// what the sanitizers need to see a conversion that does not fit.
namespace KelExtremeNumbers
{

struct Named
{
    const char *name;
    double value;
};

inline QList<Named> all()
{
    using Limits = std::numeric_limits<double>;
    return {{"zero", 0.0},
            {"negative zero", -0.0},
            {"smallest denormal", Limits::denorm_min()},
            {"negative denormal", -Limits::denorm_min()},
            {"smallest normal", Limits::min()},
            {"just below a pole", 89.999999999},
            {"pole", 90.0},
            {"southern pole", -90.0},
            {"beyond the pole", 90.0000001},
            {"date line", 180.0},
            {"western date line", -180.0},
            {"beyond the date line", 180.0000001},
            {"a turn", 360.0},
            {"what stands for invalid", 720.0},
            {"what stands for missing", -720.0},
            {"many turns", 1e9},
            {"many turns back", -1e9},
            {"largest int", 2147483647.0},
            {"beyond the largest int", 2147483648.0},
            {"beyond the smallest int", -2147483649.0},
            {"beyond 64 bits", 1e19},
            {"1e300", 1e300},
            {"-1e300", -1e300},
            {"largest double", Limits::max()},
            {"smallest double", Limits::lowest()},
            {"infinity", Limits::infinity()},
            {"negative infinity", -Limits::infinity()},
            {"not a number", Limits::quiet_NaN()}};
}

/// One row per number, in the column "value".
inline void addRows()
{
    QTest::addColumn<double>("value");
    for (const Named &number : all())
        QTest::newRow(number.name) << number.value;
}

} // namespace KelExtremeNumbers

#endif
