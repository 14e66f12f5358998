// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKFILEREGISTRYKEY_H
#define KELGPXTRACKFILEREGISTRYKEY_H

#include <KelGPXTrack.h>
#include <KelGeoLocationGlobal.h>

#include <QDir>

#include <cstddef>

/// A track and the directory of the store that it is, or shall be, kept in.
class KELGEOLOCATION_EXPORT KelGPXTrackFileRegistryKey
{
public:
    /// The pair; the directory need not exist.
    KelGPXTrackFileRegistryKey(const KelGPXTrack &track, const QDir &dir);

    KelGPXTrackFileRegistryKey(const KelGPXTrackFileRegistryKey &) = default;
    KelGPXTrackFileRegistryKey(KelGPXTrackFileRegistryKey &&) noexcept = default;
    KelGPXTrackFileRegistryKey &operator=(const KelGPXTrackFileRegistryKey &) = default;
    KelGPXTrackFileRegistryKey &operator=(KelGPXTrackFileRegistryKey &&) noexcept = default;
    virtual ~KelGPXTrackFileRegistryKey();

    /// The stored track.
    [[nodiscard]] const KelGPXTrack &track() const noexcept { return m_track; }
    /// Where its file lies.
    [[nodiscard]] const QDir &dir() const noexcept { return m_dir; }

    /// Equal tracks, with all their points, in equal directories.
    [[nodiscard]] bool operator==(const KelGPXTrackFileRegistryKey &other) const;

    /// A valid track and a directory other than QDir(QString()), which stands for none.
    [[nodiscard]] bool isValid() const;

    /// Deliberate: only of the number of points. Going through all of them would cost as much as the comparison,
    /// which separates tracks of the same size.
    [[nodiscard]] std::size_t hash() const;

private:
    KelGPXTrack m_track;
    QDir m_dir;
};

/// KelGPXTrackFileRegistryKey::hash(), mixed with the seed.
KELGEOLOCATION_EXPORT std::size_t qHash(const KelGPXTrackFileRegistryKey &key, std::size_t seed = 0);

#endif
