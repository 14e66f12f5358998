// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGEOLOCATIONGLOBAL_H
#define KELGEOLOCATIONGLOBAL_H

#include <QtCore/qglobal.h>

/// Marks what the library shows to its users; everything else stays hidden.
#ifdef KELGEOLOCATION_LIBRARY
#define KELGEOLOCATION_EXPORT Q_DECL_EXPORT
#else
#define KELGEOLOCATION_EXPORT Q_DECL_IMPORT
#endif

#endif
