// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGEOLOCATIONMETATYPES_H
#define KELGEOLOCATIONMETATYPES_H

#include <KelGeoLocationGlobal.h>

/// The library's values in Qt's meta-type system.
///
/// Each value can be put into a QVariant, compared and written to a debug stream in it, and sent through queued
/// connections, without any preparation. registerAll() is for hosts that name types in texts, as
/// QMetaType::fromName() and scripts do, and for those who want texts from variants.
class KELGEOLOCATION_EXPORT KelGeoLocationMetaTypes
{
public:
    KelGeoLocationMetaTypes() = delete;

    /// Makes the names of the values known, and these conversions of variants: angles and positions to QString (the
    /// decimal form of toString(false)) and, angles, to double; shapes, display options and pen styles to QString (the
    /// keys) and back. May be called any number of times, from any thread.
    static void registerAll();
};

#endif
