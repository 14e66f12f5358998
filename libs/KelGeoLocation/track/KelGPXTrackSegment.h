// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKSEGMENT_H
#define KELGPXTRACKSEGMENT_H

#include <KelGPXTrackElement.h>
#include <KelGPXTrackPoint.h>
#include <KelGeoLocationGlobal.h>

#include <QList>
#include <QString>

class KelIntRange;
class QDebug;
class QDomElement;

/// One unbroken run of track points: the content of a GPX "trkseg".
///
/// Compact point text, the only form in which segments are written: one tuple of KelGPXTrackPoint::toKml() per line.
/// On reading any ASCII white space separates tuples.
class KELGEOLOCATION_EXPORT KelGPXTrackSegment : public KelGPXTrackElement
{
public:
    KelGPXTrackSegment() = default;
    /// Those points, in that order.
    explicit KelGPXTrackSegment(const QList<KelGPXTrackPoint> &points);
    /// A segment of one point.
    explicit KelGPXTrackSegment(const KelGPXTrackPoint &point);
    /// Reads the children of a "trkseg" or "rtept" in document order: "trkpt", "compressedPoints", and the Garmin
    /// route points in "extensions". The element's own name and attributes do not matter.
    explicit KelGPXTrackSegment(const QDomElement &element);

    /// All points, in order.
    [[nodiscard]] QList<KelGPXTrackPoint> trackPoints() const { return m_trackPoints; }
    /// The number of points.
    [[nodiscard]] int count() const { return int(m_trackPoints.size()); }
    /// The position of the point with that index, which must exist, in place: valid until the segment changes.
    [[nodiscard]] const KelGeoPosition &positionAt(int index) const;
    /// At least one point.
    [[nodiscard]] bool isValid() const { return !m_trackPoints.isEmpty(); }

    /// The same points in the same order.
    [[nodiscard]] bool operator==(const KelGPXTrackSegment &other) const;

    /// Appends a "trkseg" with one "compressedPoints" to `parent`, an empty one for a segment without points.
    void toXml(QDomElement &parent) const;
    /// The compact point text, lines joined with a line feed.
    [[nodiscard]] QString toKml() const;

    /// Reads compact point text, each tuple as KelGPXTrackPoint::decodeKml() does. A tuple at exactly 0.0, 0.0 is
    /// dropped; that removes what blanks around the text would yield, and real points in that place as well.
    [[nodiscard]] static QList<KelGPXTrackPoint> decodeTrackPoints(const QString &text);
    /// The segment of decodeTrackPoints(); reads the text of a KML "coordinates" element.
    [[nodiscard]] static KelGPXTrackSegment decodeKml(const QString &text);

    /// Appends every "gpxx:rpt" in the first "gpxx:RoutePointExtension" of an "extensions" element. Prefixes are
    /// taken literally.
    void decodeGarminGPX(QDomElement extensions);

    [[nodiscard]] KelGeoPositionList allPoints() const override;
    /// In the main thread one chunk per part of the point list, collected in parallel; in any other thread one chunk
    /// with everything.
    [[nodiscard]] QList<KelGeoPositionList> chunkedPoints() const override;
    [[nodiscard]] bool isSinglePoint() const override;
    /// The first point's position, a default position if there is none.
    [[nodiscard]] KelGeoPosition firstPoint() const override;
    /// The last point's position, a default position if there is none.
    [[nodiscard]] KelGeoPosition lastPoint() const override;
    [[nodiscard]] QList<QDateTime> allTimeStamps() const override;

    /// The positions of the points with an index in `range`, both ends included; indices without a point are left
    /// out, an inverted range gives an empty list.
    [[nodiscard]] KelGeoPositionList collectBlock(const KelIntRange &range) const;

    /// True if called in the thread of the QCoreApplication; false if there is no application.
    [[nodiscard]] bool weAreaRunningInMainThread() const;

private:
    QList<KelGPXTrackPoint> m_trackPoints;
};

Q_DECLARE_TYPEINFO(KelGPXTrackSegment, Q_RELOCATABLE_TYPE);

/// Writes the number of points.
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelGPXTrackSegment &segment);

/// Equal segments have equal hashes: made of the number of points, and of the first and the last one but their positions.
[[nodiscard]] KELGEOLOCATION_EXPORT size_t qHash(const KelGPXTrackSegment &segment, size_t seed = 0) noexcept;

#endif
