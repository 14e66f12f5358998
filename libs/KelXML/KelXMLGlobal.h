// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLGLOBAL_H
#define KELXMLGLOBAL_H

#include <QtCore/qglobal.h>

/// Marks what the library shows to its users; everything else stays hidden.
#ifdef KELXML_LIBRARY
#define KELXML_EXPORT Q_DECL_EXPORT
#else
#define KELXML_EXPORT Q_DECL_IMPORT
#endif

#endif
