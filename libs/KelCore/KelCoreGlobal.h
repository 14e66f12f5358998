// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELCOREGLOBAL_H
#define KELCOREGLOBAL_H

#include <QtCore/qglobal.h>

/// Marks what the library shows to its users; everything else stays hidden.
#ifdef KELCORE_LIBRARY
#define KELCORE_EXPORT Q_DECL_EXPORT
#else
#define KELCORE_EXPORT Q_DECL_IMPORT
#endif

/// For templates with static state: every library and program must see one and the same instance,
/// so these symbols are visible even where everything else is hidden.
#define KELCORE_TEMPLATE_EXPORT Q_DECL_EXPORT

#endif
