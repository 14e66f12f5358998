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

/// For templates with static state: every library and program must see one and the same instance,
/// so these symbols are visible even where everything else is hidden.
#define KELGEOLOCATION_TEMPLATE_EXPORT Q_DECL_EXPORT

#endif
