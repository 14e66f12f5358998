// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKSELECTIONCOMPARISONRESULT_H
#define KELGPXTRACKSELECTIONCOMPARISONRESULT_H

#include <KelGPXTrackAspect.h>
#include <KelGeoLocationGlobal.h>

#include <QList>

/// What differs between two track selections, so that a host redraws only what is needed.
///
/// A new result says that nothing differs: no rows, no aspects, same number of tracks.
class KELGEOLOCATION_EXPORT KelGPXTrackSelectionComparisonResult
{
public:
    KelGPXTrackSelectionComparisonResult() = default;
    virtual ~KelGPXTrackSelectionComparisonResult() = default;
    KelGPXTrackSelectionComparisonResult(const KelGPXTrackSelectionComparisonResult &) = default;
    KelGPXTrackSelectionComparisonResult(KelGPXTrackSelectionComparisonResult &&) noexcept = default;
    KelGPXTrackSelectionComparisonResult &operator=(const KelGPXTrackSelectionComparisonResult &) = default;
    KelGPXTrackSelectionComparisonResult &operator=(KelGPXTrackSelectionComparisonResult &&) noexcept = default;

    /// The rows that differ, in the order in which they were added; a row added twice stands there twice.
    [[nodiscard]] QList<int> changingTracks() const { return m_tracks; }
    /// Replaces the rows that differ.
    void setChangingTracks(const QList<int> &rows) { m_tracks = rows; }
    /// Adds a row that differs.
    void addChangingTrack(int row) { m_tracks.append(row); }

    /// In what the rows differ, all rows taken together.
    [[nodiscard]] KelGPXTrackAspect changingAspects() const noexcept { return m_aspects; }
    /// Replaces the aspects in which any row differs.
    void setChangingAspects(KelGPXTrackAspect newAspects) noexcept { m_aspects = newAspects; }
    /// Keeps the aspects that are already there.
    void addChangingAspects(KelGPXTrackAspect furtherAspects) noexcept { m_aspects |= furtherAspects; }

    /// Whether one selection has more rows than the other.
    [[nodiscard]] bool trackCountChanges() const noexcept { return m_countChanges; }
    /// See trackCountChanges().
    void setTrackCountChanges(bool changes) noexcept { m_countChanges = changes; }

    /// Appends the other's rows to these (duplicates stay) and adds its aspects and its change of the track count.
    KelGPXTrackSelectionComparisonResult &operator+=(const KelGPXTrackSelectionComparisonResult &other);
    /// A copy of this result after operator+=().
    [[nodiscard]] KelGPXTrackSelectionComparisonResult operator+(
        const KelGPXTrackSelectionComparisonResult &other) const;

    /// Whether the other result tells of the same aspects in the same rows in the same order, and the track count
    /// does not change according to this result. The other's track count is not looked at.
    [[nodiscard]] bool isMergeCompatible(const KelGPXTrackSelectionComparisonResult &other) const;

private:
    QList<int> m_tracks;
    KelGPXTrackAspect m_aspects = AspectNone;
    bool m_countChanges = false;
};

#endif
