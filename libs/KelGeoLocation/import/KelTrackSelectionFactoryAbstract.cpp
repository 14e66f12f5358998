// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackSelectionFactoryAbstract.h"

KelTrackSelectionFactoryAbstract::~KelTrackSelectionFactoryAbstract() = default;
