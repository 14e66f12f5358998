// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKIMPL_H
#define KELGPXTRACKIMPL_H

#include <KelGPXTrack.h>
#include <KelGPXTrackElement.h>
#include <KelGPXTrackSegment.h>
#include <KelGPXTrackShape.h>
#include <KelGeoLocationGlobal.h>

#include <QList>
#include <QSharedData>
#include <QString>

/// The data of a KelGPXTrack, shared among its copies. Hosts use the handle.
class KELGEOLOCATION_EXPORT KelGPXTrackImpl : public KelGPXTrackElement, public QSharedData
{
public:
    /// See KelGPXTrack's default constructor.
    KelGPXTrackImpl();
    KelGPXTrackImpl(const KelGPXTrackImpl &) = default;
    KelGPXTrackImpl &operator=(const KelGPXTrackImpl &) = delete;
    ~KelGPXTrackImpl() override;

    /// \copydoc KelGPXTrack::name
    [[nodiscard]] const QString &name() const noexcept { return m_name; }
    /// \copydoc KelGPXTrack::description
    [[nodiscard]] const QString &description() const noexcept { return m_description; }
    /// \copydoc KelGPXTrack::shape
    [[nodiscard]] const KelGPXTrackShape &shape() const noexcept { return m_shape; }
    /// \copydoc KelGPXTrack::segments
    [[nodiscard]] const QList<KelGPXTrackSegment> &segments() const noexcept { return m_segments; }
    /// \copydoc KelGPXTrack::enclaves
    [[nodiscard]] const QList<KelGPXTrack> &enclaves() const noexcept { return m_enclaves; }

    /// \copydoc KelGPXTrack::setName
    void setName(const QString &name) { m_name = name; }
    /// Any text.
    void setDescription(const QString &description) { m_description = description; }
    /// \copydoc KelGPXTrack::setShape
    void setShape(const KelGPXTrackShape &shape) { m_shape = shape; }
    /// As passed, empty segments included.
    void setSegments(const QList<KelGPXTrackSegment> &segments) { m_segments = segments; }
    /// Appends the segment if it holds at least one point.
    void addSegment(const KelGPXTrackSegment &segment);
    /// \copydoc KelGPXTrack::setEnclaves
    void setEnclaves(const QList<KelGPXTrack> &enclaves) { m_enclaves = enclaves; }
    /// Appends a hole.
    void addEnclave(const KelGPXTrack &enclave) { m_enclaves.append(enclave); }

    /// \copydoc KelGPXTrack::countPoints
    [[nodiscard]] int countPoints() const;
    /// All fields are equal.
    [[nodiscard]] bool operator==(const KelGPXTrackImpl &other) const;

    [[nodiscard]] KelGeoPositionList allPoints() const override;
    [[nodiscard]] QList<KelGeoPositionList> chunkedPoints() const override;
    [[nodiscard]] bool isSinglePoint() const override;
    /// Of the first segment, empty or not; a default position without segments.
    [[nodiscard]] KelGeoPosition firstPoint() const override;
    /// Of the last segment, empty or not; a default position without segments.
    [[nodiscard]] KelGeoPosition lastPoint() const override;
    [[nodiscard]] QList<QDateTime> allTimeStamps() const override;

private:
    [[nodiscard]] bool equalsBesideEnclaves(const KelGPXTrackImpl &other) const;

    QString m_name;
    QString m_description;
    KelGPXTrackShape m_shape;
    QList<KelGPXTrackSegment> m_segments;
    QList<KelGPXTrack> m_enclaves;
};

#endif
