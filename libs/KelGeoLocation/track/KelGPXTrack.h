// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACK_H
#define KELGPXTRACK_H

#include <KelGPXTrackElement.h>
#include <KelGPXTrackSegment.h>
#include <KelGPXTrackShape.h>
#include <KelGeoLocationGlobal.h>

#include <QList>
#include <QSharedDataPointer>
#include <QString>

class KelGPXTrackImpl;
class QDebug;
class QDir;
class QDomElement;
class QFileInfo;

/// One named track: segments in order, a shape, and enclaves (tracks that lie inside it, the holes of a polygon).
///
/// The unit that is configured, selected, drawn and stored. A value; copies share their data until one of them is
/// written to.
///
/// Directories: where a store of tracks has its files, QDir(QString()) stands for "no directory". QDir takes that
/// for equal to the working directory, which can therefore not be a store.
class KELGEOLOCATION_EXPORT KelGPXTrack : public KelGPXTrackElement
{
public:
    /// Enclaves may hold enclaves. So many levels of them are written where a track stands below up to 13 elements, fewer
    /// only further down: each takes two levels of nested elements, of which a file that is read has KelXMLGate::MAXIMUM_DEPTH.
    static constexpr int MAXIMUM_ENCLAVE_DEPTH = 120;

    /// No name, no segments, no enclaves. Deliberate: the shape is linestring, not auto.
    KelGPXTrack();
    /// Shape auto is replaced at once by what autoDetectShape() finds. Empty segments are kept.
    KelGPXTrack(const QString &name, const QString &description, const QList<KelGPXTrackSegment> &segments,
                const KelGPXTrackShape &shape);
    /// A point with its description as the name; a point at an invalid position gives a track without segments.
    explicit KelGPXTrack(const KelGPXTrackPoint &point);
    /// A default track, then fromXml().
    KelGPXTrack(const QDomElement &element, const QDir &dir);

    /// Shares the data until one of the two changes.
    KelGPXTrack(const KelGPXTrack &other);
    /// Leaves a track behind that can only be assigned to or destroyed.
    KelGPXTrack(KelGPXTrack &&other) noexcept;
    /// Shares the data until one of the two changes.
    KelGPXTrack &operator=(const KelGPXTrack &other);
    /// Leaves a track behind that can only be assigned to or destroyed.
    KelGPXTrack &operator=(KelGPXTrack &&other) noexcept;
    ~KelGPXTrack() override;

    /// From the text of a KML "coordinates" element, see KelGPXTrackSegment::decodeKml(). A text without points
    /// gives a track without segments.
    [[nodiscard]] static KelGPXTrack decodeKml(const QString &name, const QString &description,
                                               const QString &coordinates, const KelGPXTrackShape &shape);

    /// Unknown without a segment; point for one segment of one point; polygon when the last segment ends where the
    /// first one begins; else linestring.
    [[nodiscard]] static KelGPXTrackShape autoDetectShape(const QList<KelGPXTrackSegment> &segments);

    /// As shown to the user; may be empty.
    [[nodiscard]] QString name() const;
    /// A longer text; may be empty.
    [[nodiscard]] QString description() const;
    /// The pieces, in order, without the enclaves.
    [[nodiscard]] QList<KelGPXTrackSegment> segments() const;
    /// The form as it was set or settled; see naturalShape() for what the points suggest.
    [[nodiscard]] KelGPXTrackShape shape() const;
    /// The holes of a polygon, tracks themselves.
    [[nodiscard]] QList<KelGPXTrack> enclaves() const;

    /// Any text.
    void setName(const QString &name);
    /// Any form, fitting or not.
    void setShape(const KelGPXTrackShape &shape);
    /// Replaces all holes.
    void setEnclaves(const QList<KelGPXTrack> &enclaves);
    /// Appends without any test, see isEnclave().
    void addEnclave(const KelGPXTrack &enclave);

    /// At least one segment. What is read keeps no empty segment: then it also means at least one point.
    [[nodiscard]] bool isValid() const;
    /// The points of all segments.
    [[nodiscard]] int countPoints() const;
    /// Plain comparison, auto is no exception.
    [[nodiscard]] bool hasShape(const KelGPXTrackShape &shape) const;
    /// The shape that the points suggest, whatever is set.
    [[nodiscard]] KelGPXTrackShape naturalShape() const;
    /// True if both tracks are polygons and `other` lies inside this one (plane geometry over degrees).
    [[nodiscard]] bool isEnclave(const KelGPXTrack &other) const;

    /// Same data, or equal name, description, shape, segments and enclaves.
    [[nodiscard]] bool operator==(const KelGPXTrack &other) const;
    /// The opposite of equality.
    [[nodiscard]] bool operator!=(const KelGPXTrack &other) const;
    /// Fewer points first; of two tracks with the same number of points (not 0) the one whose first position is less.
    /// Deliberate: not consistent with operator==, and neither is operator>.
    [[nodiscard]] bool operator<(const KelGPXTrack &other) const;
    /// The mirror image of operator<().
    [[nodiscard]] bool operator>(const KelGPXTrack &other) const;

    /// Merges the content of a "trk" or "rte" into this track: segments and enclaves are added, of name, description
    /// and shape the last one counts, shape auto is settled at the end.
    ///
    /// "rtept": the routed points that a Garmin extension keeps under it become a segment. Deliberate: the route
    /// point's own position is not read, so one without extension adds nothing.
    /// "include": the first "trk" of that file in `dir` is merged where the element stands, and the whole is known to
    /// the KelGPXTrackFileRegistry under the file's name. A file that is missing, no regular file or malformed adds
    /// nothing, but its name is known all the same. Ignored without a directory, and in an included file.
    /// Enclaves are read as deep as a file may nest them; of deeper ones in a tree from elsewhere the rest is skipped.
    void fromXml(const QDomElement &trk, const QDir &dir);

    /// Appends an empty "trk" to `parent` and returns it.
    [[nodiscard]] QDomElement buildTrackElement(QDomElement &parent) const;
    /// Writes name, shape, segments and enclaves into `trk`. Deliberate: the description is read but not written.
    /// Enclaves that lie so deep in each other that nobody could read the document again are left out, and the log says so;
    /// see MAXIMUM_ENCLAVE_DEPTH.
    void buildXmlBody(QDomElement &trk) const;
    /// Appends a "trk" to `parent`: into an existing directory only an "include" of a file there, which the
    /// KelGPXTrackFileRegistry writes when needed; otherwise everything.
    void toXml(QDomElement &parent, const QDir &dir) const;
    /// Writes a GPX file with this track only. A failure is not reported.
    void saveAsGpxFile(const QFileInfo &file) const;

    [[nodiscard]] KelGeoPositionList allPoints() const override;
    /// The chunks of all segments; none spans two segments.
    [[nodiscard]] QList<KelGeoPositionList> chunkedPoints() const override;
    /// Exactly one segment, which is a single point.
    [[nodiscard]] bool isSinglePoint() const override;
    /// Of the first segment, empty or not; a default position without segments.
    [[nodiscard]] KelGeoPosition firstPoint() const override;
    /// Of the last segment, empty or not; a default position without segments.
    [[nodiscard]] KelGeoPosition lastPoint() const override;
    [[nodiscard]] QList<QDateTime> allTimeStamps() const override;

private:
    friend class KelGPXReader;
    friend class KelGPXTrackImpl;

    void buildXmlBody(QDomElement &trk, int depth) const;

    QSharedDataPointer<KelGPXTrackImpl> d;
};

Q_DECLARE_TYPEINFO(KelGPXTrack, Q_RELOCATABLE_TYPE);

/// Writes name, shape, and the numbers of segments, points and enclaves.
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelGPXTrack &track);

/// Equal tracks have equal hashes: made of name, description, shape, and the numbers of points and enclaves, not of positions.
[[nodiscard]] KELGEOLOCATION_EXPORT size_t qHash(const KelGPXTrack &track, size_t seed = 0) noexcept;

#endif
