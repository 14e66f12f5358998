// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKSELECTION_H
#define KELGPXTRACKSELECTION_H

#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrackElement.h>
#include <KelGeoLocationGlobal.h>

#include <QDateTime>
#include <QList>
#include <QString>

class KelGPXTrackSelectionComparisonResult;
class QDebug;
class QDir;
class QDomElement;

/// What a map image shows: configured tracks in order, and how strongly the map outside of them is dimmed.
///
/// A value that the host keeps, edits through a list model, draws with a renderer and stores in its own XML
/// documents. Rows out of range are ignored by the editing operations and read as a default configured track.
///
/// The cropping opacity runs from 0 (the map outside of the tracks vanishes) to 255 (it stays as it is); it is kept
/// as given, without a check.
class KELGEOLOCATION_EXPORT KelGPXTrackSelection : public KelGPXTrackElement
{
public:
    /// No tracks, cropping opacity 255.
    KelGPXTrackSelection() = default;
    /// Those tracks, cropping opacity 255.
    explicit KelGPXTrackSelection(const KelGPXConfiguredTrackList &tracks);
    /// What toXml() wrote into the element, with each name ("gpxtrack", "croppingOpacity", "configuredTrack")
    /// preceded by the prefix. Without "gpxtrack" there are no tracks, without "croppingOpacity" it is 255. Children
    /// named "locationTrack", an older name of the same record, are read too and come first.
    KelGPXTrackSelection(const QDomElement &element, const QDir &directory, const QString &prefix = QString());

    ~KelGPXTrackSelection() override = default;
    KelGPXTrackSelection(const KelGPXTrackSelection &) = default;
    KelGPXTrackSelection(KelGPXTrackSelection &&) noexcept = default;
    KelGPXTrackSelection &operator=(const KelGPXTrackSelection &) = default;
    KelGPXTrackSelection &operator=(KelGPXTrackSelection &&) noexcept = default;

    /// Sets the attribute "croppingOpacity" of the element and appends a child "gpxtrack" with one "configuredTrack"
    /// per row. Names are written without a prefix. Tracks go to files of their own when the directory exists.
    void toXml(QDomElement &element, const QDir &directory) const;

    /// The tracks in order; later ones are painted over earlier ones.
    [[nodiscard]] KelGPXConfiguredTrackList tracks() const { return m_tracks; }
    /// Replaces all tracks; the cropping opacity stays.
    void setTracks(const KelGPXConfiguredTrackList &tracks) { m_tracks = tracks; }

    /// The number of tracks.
    [[nodiscard]] int count() const noexcept { return m_tracks.count(); }
    /// Whether there is any track.
    [[nodiscard]] bool isValid() const noexcept { return count() != 0; }
    /// Whether there is no track.
    [[nodiscard]] bool isEmpty() const noexcept { return count() == 0; }
    /// Whether there is anything to draw on the map: the same as isValid().
    [[nodiscard]] bool containsAnyMarking() const noexcept { return isValid(); }
    /// Whether there is a track of that row.
    [[nodiscard]] bool isValidRow(int row) const noexcept { return m_tracks.checkRange(row); }
    /// Another name of isValidRow().
    [[nodiscard]] bool checkRange(int row) const noexcept { return m_tracks.checkRange(row); }

    /// The row, or an empty track with the user's default configuration for a row out of range.
    [[nodiscard]] KelGPXConfiguredTrack value(int row) const { return m_tracks.value(row); }
    /// The row's configuration, or the user's default configuration for a row out of range.
    [[nodiscard]] KelGPXTrackConfiguration configuration(int row) const { return m_tracks.configuration(row); }

    /// The opacity as it was set.
    [[nodiscard]] int nominalCroppingOpacity() const noexcept { return m_croppingOpacity; }
    /// The opacity that counts: without tracks there is nothing to crop to, so it is 255.
    [[nodiscard]] int effectiveCroppingOpacity() const noexcept;
    /// Tells whether the value changed.
    bool setCroppingOpacity(int opacity);

    /// Appends the other's tracks; the cropping opacity stays.
    void addSelection(const KelGPXTrackSelection &other);
    /// Appends the tracks.
    void addTracks(const KelGPXConfiguredTrackList &tracks);
    /// Appends the track.
    void addTrack(const KelGPXConfiguredTrack &track);
    /// Appends the track with the user's default configuration, its shape settled by the track.
    void addTrack(const KelGPXTrack &track);
    /// Removes the row; a row out of range removes nothing.
    void removeAt(int row);

    /// Gives the row that configuration (the row adjusts it to its track). Tells whether it was done: only when the
    /// row is in range and its configuration is another one. Unlike KelGPXConfiguredTrackList::setConfiguration() an
    /// unknown track shape is not made automatic; the row then keeps its shape.
    bool setConfiguration(int row, const KelGPXTrackConfiguration &configuration);
    /// The same for every row; tells whether it was done for any.
    bool setConfiguration(const KelGPXTrackConfiguration &configuration);

    /// Moves the row so that it ends up at @p to; nothing happens unless both are in range and differ.
    void moveTrack(int from, int to);

    /// Scales red, green and blue of the row's fill and line colour by factor / 128, each limited to 0 .. 255: 128
    /// changes nothing, 64 darkens to half, 256 brightens to double. Alpha is kept.
    void overrideColorOfTrack(int row, int factor);

    /// A copy with only that row and the same cropping opacity; an unchanged copy for a row out of range.
    [[nodiscard]] KelGPXTrackSelection reduceToTrackNumber(int row) const;

    /// See KelGPXConfiguredTrackList::wouldChangeHaloToVisibleAgainst().
    [[nodiscard]] bool wouldChangeHaloToVisibleAgainst(const KelGPXTrackSelection &other) const;

    /// Which of the rows that both selections have differ in what asks for drawing again, and whether the number of
    /// rows differs. The cropping opacity is not compared.
    [[nodiscard]] KelGPXTrackSelectionComparisonResult compare(const KelGPXTrackSelection &other) const;

    /// Same cropping opacity and the same tracks in the same order.
    [[nodiscard]] bool operator==(const KelGPXTrackSelection &other) const;
    /// The opposite of equality.
    [[nodiscard]] bool operator!=(const KelGPXTrackSelection &other) const { return !(*this == other); }

    [[nodiscard]] KelGeoPositionList allPoints() const override;
    [[nodiscard]] QList<KelGeoPositionList> chunkedPoints() const override;
    /// Whether there is exactly one row and that is a single point.
    [[nodiscard]] bool isSinglePoint() const override;
    /// The first row's first point; invalid without rows.
    [[nodiscard]] KelGeoPosition firstPoint() const override;
    /// The last row that has a valid last point gives it; invalid when none has.
    [[nodiscard]] KelGeoPosition lastPoint() const override;
    [[nodiscard]] QList<QDateTime> allTimeStamps() const override;

private:
    KelGPXConfiguredTrackList m_tracks;
    int m_croppingOpacity = 255;
};

/// Writes the number of tracks and the cropping opacity.
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelGPXTrackSelection &selection);

/// Equal selections have equal hashes: made of the cropping opacity and of those of the configured tracks.
[[nodiscard]] KELGEOLOCATION_EXPORT size_t qHash(const KelGPXTrackSelection &selection, size_t seed = 0) noexcept;

#endif
