// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKPOINTIMPL_H
#define KELGPXTRACKPOINTIMPL_H

#include <KelGPXTrackElement.h>
#include <KelGeoLocationGlobal.h>
#include <KelGeoPosition.h>

#include <QDateTime>
#include <QSharedData>
#include <QString>

#include <cstddef>

/// The data of a KelGPXTrackPoint, shared among its copies and never changed. Hosts use the handle.
class KELGEOLOCATION_EXPORT KelGPXTrackPointImpl : public KelGPXTrackElement, public QSharedData
{
public:
    /// An invalid position, no elevation, no time, no description.
    KelGPXTrackPointImpl();
    /// All four values as they are.
    KelGPXTrackPointImpl(KelGeoPosition position, int elevation, QDateTime timeStamp, QString description);
    /// The same at a position in decimal degrees, which is made in its place.
    KelGPXTrackPointImpl(double latitude, double longitude, int elevation, QDateTime timeStamp, QString description);
    /// The same without description, at so many seconds since 1970 in UTC.
    KelGPXTrackPointImpl(double latitude, double longitude, int elevation, qint64 seconds);
    /// The same without time and description.
    KelGPXTrackPointImpl(double latitude, double longitude, int elevation);
    KelGPXTrackPointImpl(const KelGPXTrackPointImpl &) = default;
    KelGPXTrackPointImpl &operator=(const KelGPXTrackPointImpl &) = delete;
    ~KelGPXTrackPointImpl() override;

    /// Points come by the million: their memory comes from a pool, that of subclasses of another size does not.
    static void *operator new(std::size_t size);
    /// In memory that the caller has.
    static void *operator new(std::size_t, void *place) noexcept { return place; }
    /// In any thread.
    static void operator delete(void *memory, std::size_t size) noexcept;
    /// Leaves the caller's memory alone.
    static void operator delete(void *, void *) noexcept { }

    /// \copydoc KelGPXTrackPoint::position
    [[nodiscard]] const KelGeoPosition &position() const noexcept { return m_position; }
    /// \copydoc KelGPXTrackPoint::elevation
    [[nodiscard]] int elevation() const noexcept { return m_elevation; }
    /// \copydoc KelGPXTrackPoint::timeStamp
    [[nodiscard]] const QDateTime &timeStamp() const noexcept { return m_timeStamp; }
    /// \copydoc KelGPXTrackPoint::description
    [[nodiscard]] const QString &description() const noexcept { return m_description; }

    /// All four values are equal.
    [[nodiscard]] bool operator==(const KelGPXTrackPointImpl &other) const;

    [[nodiscard]] KelGeoPositionList allPoints() const override;
    [[nodiscard]] QList<KelGeoPositionList> chunkedPoints() const override;
    [[nodiscard]] bool isSinglePoint() const override;
    /// Its own position.
    [[nodiscard]] KelGeoPosition firstPoint() const override;
    /// Its own position.
    [[nodiscard]] KelGeoPosition lastPoint() const override;
    [[nodiscard]] QList<QDateTime> allTimeStamps() const override;

private:
    // In the gap behind the reference count: with that the data are as large as a line of the processor's cache.
    int m_elevation = 0;
    KelGeoPosition m_position;
    QDateTime m_timeStamp;
    QString m_description;
};

#endif
