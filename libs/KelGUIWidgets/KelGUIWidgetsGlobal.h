// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGUIWIDGETSGLOBAL_H
#define KELGUIWIDGETSGLOBAL_H

#include <QtCore/qglobal.h>

/// Marks what the library shows to its users; everything else stays hidden.
#ifdef KELGUIWIDGETS_LIBRARY
#define KELGUIWIDGETS_EXPORT Q_DECL_EXPORT
#else
#define KELGUIWIDGETS_EXPORT Q_DECL_IMPORT
#endif

#endif
