// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXCONFIGUREDTRACKLIST_H
#define KELGPXCONFIGUREDTRACKLIST_H

#include <KelGPXConfiguredTrack.h>
#include <KelGeoLocationGlobal.h>

#include <QList>
#include <QString>

class KelGPXTrackSelectionComparisonResult;
class QDebug;
class QDir;
class QDomElement;

/// Configured tracks in the order in which they are shown: row 0 stands first in a list view.
///
/// It is what a track selection holds and what the factories read from a file. A value.
class KELGEOLOCATION_EXPORT KelGPXConfiguredTrackList
{
public:
    KelGPXConfiguredTrackList() = default;
    /// Those tracks, in that order.
    explicit KelGPXConfiguredTrackList(const QList<KelGPXConfiguredTrack> &tracks);
    /// A list of that one track.
    explicit KelGPXConfiguredTrackList(const KelGPXConfiguredTrack &track);
    /// Every direct child of exactly that name, in document order, through the configured track's own reader. None
    /// is skipped, whatever it holds.
    KelGPXConfiguredTrackList(const QDomElement &element, const QString &childName, const QDir &directory);

    virtual ~KelGPXConfiguredTrackList() = default;
    KelGPXConfiguredTrackList(const KelGPXConfiguredTrackList &) = default;
    KelGPXConfiguredTrackList(KelGPXConfiguredTrackList &&) noexcept = default;
    KelGPXConfiguredTrackList &operator=(const KelGPXConfiguredTrackList &) = default;
    KelGPXConfiguredTrackList &operator=(KelGPXConfiguredTrackList &&) noexcept = default;

    /// Asks the user for a file with the open-file dialog and imports it; empty when the user cancels or the file
    /// holds nothing. To be called on the GUI thread.
    [[nodiscard]] static KelGPXConfiguredTrackList fromFile();

    /// Appends one child of that name per track, in order, to the parent.
    void toXml(QDomElement &parent, const QString &elementName, const QDir &directory) const;

    /// All entries, in order.
    [[nodiscard]] const QList<KelGPXConfiguredTrack> &tracks() const noexcept { return m_entries; }
    /// The number of entries.
    [[nodiscard]] int count() const noexcept { return int(m_entries.size()); }
    /// Whether there is any track.
    [[nodiscard]] bool isValid() const noexcept { return !m_entries.isEmpty(); }
    /// Whether there is an entry of that index.
    [[nodiscard]] bool checkRange(int index) const noexcept { return index >= 0 && index < count(); }

    /// The entry; the index must be in range.
    [[nodiscard]] const KelGPXConfiguredTrack &at(int index) const { return m_entries.at(index); }
    /// The entry, or a default configured track for an index out of range.
    [[nodiscard]] KelGPXConfiguredTrack value(int index) const;
    /// The entry for changing; the index must be in range.
    [[nodiscard]] KelGPXConfiguredTrack &operator[](int index) { return m_entries[index]; }
    /// For range-based loops; entries are read only.
    [[nodiscard]] auto begin() const noexcept { return m_entries.cbegin(); }
    /// For range-based loops; entries are read only.
    [[nodiscard]] auto end() const noexcept { return m_entries.cend(); }

    /// Adds one entry at the end.
    void append(const KelGPXConfiguredTrack &track) { m_entries.append(track); }
    /// Adds all entries of the other list at the end.
    void append(const KelGPXConfiguredTrackList &other) { m_entries.append(other.m_entries); }
    /// Removes the entry; an index out of range removes nothing.
    void removeAt(int index);

    /// The entry's configuration, or the user's default configuration for an index out of range.
    [[nodiscard]] KelGPXTrackConfiguration configuration(int index) const;
    /// Gives the entry that configuration, with an unknown track shape made automatic; the entry adjusts it to its
    /// track. Tells whether anything was done: not when the entry has that configuration already, and not for an index
    /// out of range.
    bool setConfiguration(int index, const KelGPXTrackConfiguration &configuration);

    /// Takes the entry out and puts it back so that it ends up at the index @p to; those between move up by one toward
    /// the gap. Nothing happens unless both indexes are in range: stale ones, as from a drop, lose no track.
    void moveTrack(int from, int to);

    /// Whether in any row that both lists have this one has a halo and the other one has none.
    [[nodiscard]] bool wouldChangeHaloToVisibleAgainst(const KelGPXConfiguredTrackList &other) const;

    /// The rows that both lists have and that differ, see KelGPXConfiguredTrack::differentAspects(). Rows of only one
    /// list are not looked at, and the result says nothing about the track count.
    [[nodiscard]] KelGPXTrackSelectionComparisonResult compare(const KelGPXConfiguredTrackList &other) const;

private:
    QList<KelGPXConfiguredTrack> m_entries;
};

/// Writes the number of tracks.
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelGPXConfiguredTrackList &list);

#endif
