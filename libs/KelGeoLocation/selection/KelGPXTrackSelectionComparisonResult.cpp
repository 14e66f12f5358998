// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackSelectionComparisonResult.h"

KelGPXTrackSelectionComparisonResult &KelGPXTrackSelectionComparisonResult::operator+=(
    const KelGPXTrackSelectionComparisonResult &other)
{
    m_tracks += other.m_tracks;
    m_aspects |= other.m_aspects;
    m_countChanges = m_countChanges || other.m_countChanges;
    return *this;
}

KelGPXTrackSelectionComparisonResult KelGPXTrackSelectionComparisonResult::operator+(
    const KelGPXTrackSelectionComparisonResult &other) const
{
    KelGPXTrackSelectionComparisonResult sum(*this);
    sum += other;
    return sum;
}

bool KelGPXTrackSelectionComparisonResult::isMergeCompatible(const KelGPXTrackSelectionComparisonResult &other) const
{
    // Deliberate: only our own track count matters; the other result may change it.
    return m_aspects == other.m_aspects && m_tracks == other.m_tracks && !m_countChanges;
}
