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

    [[nodiscard]] const QString &name() const noexcept { return m_name; }
    [[nodiscard]] const QString &description() const noexcept { return m_description; }
    [[nodiscard]] const KelGPXTrackShape &shape() const noexcept { return m_shape; }
    [[nodiscard]] const QList<KelGPXTrackSegment> &segments() const noexcept { return m_segments; }
    [[nodiscard]] const QList<KelGPXTrack> &enclaves() const noexcept { return m_enclaves; }

    void setName(const QString &name) { m_name = name; }
    void setDescription(const QString &description) { m_description = description; }
    void setShape(const KelGPXTrackShape &shape) { m_shape = shape; }
    /// As passed, empty segments included.
    void setSegments(const QList<KelGPXTrackSegment> &segments) { m_segments = segments; }
    /// Appends the segment if it holds at least one point.
    void addSegment(const KelGPXTrackSegment &segment);
    void setEnclaves(const QList<KelGPXTrack> &enclaves) { m_enclaves = enclaves; }
    void addEnclave(const KelGPXTrack &enclave) { m_enclaves.append(enclave); }

    [[nodiscard]] int countPoints() const;
    [[nodiscard]] bool operator==(const KelGPXTrackImpl &other) const;

    [[nodiscard]] KelGeoPositionList allPoints() const override;
    [[nodiscard]] QList<KelGeoPositionList> chunkedPoints() const override;
    [[nodiscard]] bool isSinglePoint() const override;
    [[nodiscard]] KelGeoPosition firstPoint() const override;
    [[nodiscard]] KelGeoPosition lastPoint() const override;
    [[nodiscard]] QList<QDateTime> allTimeStamps() const override;

private:
    QString m_name;
    QString m_description;
    KelGPXTrackShape m_shape;
    QList<KelGPXTrackSegment> m_segments;
    QList<KelGPXTrack> m_enclaves;
};

#endif
