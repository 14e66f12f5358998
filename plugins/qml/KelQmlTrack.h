// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELQMLTRACK_H
#define KELQMLTRACK_H

#include "KelQmlPosition.h"

#include <KelGPXTrack.h>

#include <QString>
#include <QVariantList>
#include <QtQmlIntegration>

/// A KelGPXTrack for QML: the value type `gpxTrack`. Made by the singleton Geo, and given by TrackListModel.
class KelQmlTrack
{
    Q_GADGET
    QML_VALUE_TYPE(gpxTrack)
    Q_PROPERTY(QString name READ name WRITE setName)
    Q_PROPERTY(QString description READ description)
    /// "linestring", "polygon", "point" and so on.
    Q_PROPERTY(QString shape READ shape)
    Q_PROPERTY(int segmentCount READ segmentCount)
    Q_PROPERTY(int pointCount READ pointCount)
    Q_PROPERTY(bool valid READ isValid)
    Q_PROPERTY(KelQmlPosition firstPosition READ firstPosition)
    Q_PROPERTY(KelQmlPosition lastPosition READ lastPosition)

public:
    KelQmlTrack() = default;
    explicit KelQmlTrack(const KelGPXTrack &track)
        : m_track(track)
    {
    }

    [[nodiscard]] const KelGPXTrack &track() const noexcept { return m_track; }

    [[nodiscard]] QString name() const { return m_track.name(); }
    void setName(const QString &name) { m_track.setName(name); }
    [[nodiscard]] QString description() const { return m_track.description(); }
    [[nodiscard]] QString shape() const { return m_track.shape().encode(); }
    [[nodiscard]] int segmentCount() const { return static_cast<int>(m_track.segments().size()); }
    [[nodiscard]] int pointCount() const { return m_track.countPoints(); }
    [[nodiscard]] bool isValid() const { return m_track.isValid(); }
    [[nodiscard]] KelQmlPosition firstPosition() const { return KelQmlPosition(m_track.firstPoint()); }
    [[nodiscard]] KelQmlPosition lastPosition() const { return KelQmlPosition(m_track.lastPoint()); }

    /// All points of all segments, as a list of geoPosition.
    Q_INVOKABLE [[nodiscard]] QVariantList positions() const;

    [[nodiscard]] bool operator==(const KelQmlTrack &other) const { return m_track == other.m_track; }

private:
    KelGPXTrack m_track;
};

#endif
