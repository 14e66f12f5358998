// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackFileRegistryKey.h"

#include <QHashFunctions>

KelGPXTrackFileRegistryKey::KelGPXTrackFileRegistryKey(const KelGPXTrack &track, const QDir &dir)
    : m_track(track)
    , m_dir(dir)
{
}

KelGPXTrackFileRegistryKey::~KelGPXTrackFileRegistryKey() = default;

bool KelGPXTrackFileRegistryKey::operator==(const KelGPXTrackFileRegistryKey &other) const
{
    return m_track == other.m_track && m_dir == other.m_dir;
}

bool KelGPXTrackFileRegistryKey::isValid() const
{
    return m_dir != QDir(QString()) && m_track.isValid();
}

std::size_t KelGPXTrackFileRegistryKey::hash() const
{
    return ::qHash(m_track.countPoints(), 0);
}

std::size_t qHash(const KelGPXTrackFileRegistryKey &key, std::size_t seed)
{
    return key.hash() ^ seed;
}
