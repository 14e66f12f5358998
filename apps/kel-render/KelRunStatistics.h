// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELRUNSTATISTICS_H
#define KELRUNSTATISTICS_H

#include <QElapsedTimer>
#include <QJsonObject>
#include <QSize>

#include <array>

class KelGPXTrackSelection;

/// What one run has cost: what --stats prints.
class KelRunStatistics
{
public:
    enum Phase { Read,
                 Store,
                 Draw,
                 Encode,
                 Write };

    /// Adds the time of its own life to a phase.
    class Watch
    {
    public:
        Watch(KelRunStatistics &statistics, Phase phase);
        ~Watch();
        Watch(const Watch &) = delete;
        Watch &operator=(const Watch &) = delete;

    private:
        KelRunStatistics &m_statistics;
        Phase m_phase;
        QElapsedTimer m_timer;
    };

    /// Starts the clock of the whole run.
    KelRunStatistics();

    /// Counts what was read; it may be gone when the statistics are printed.
    void setRead(const KelGPXTrackSelection &selection, qsizetype files);
    void setPicture(const QSize &size, qsizetype bytes);

    /// "seconds", "counts", "memory" and "picture"; always with the same keys, 0 for what was not done.
    [[nodiscard]] QJsonObject toJson() const;

private:
    static constexpr std::size_t PHASES = 5;

    [[nodiscard]] double seconds(Phase phase) const { return static_cast<double>(m_nanoseconds[phase]) / 1e9; }

    QElapsedTimer m_total;
    std::array<qint64, PHASES> m_nanoseconds{};
    qint64 m_files = 0;
    qint64 m_tracks = 0;
    qint64 m_segments = 0;
    qint64 m_points = 0;
    QSize m_pictureSize{0, 0};
    qsizetype m_pictureBytes = 0;
};

#endif
