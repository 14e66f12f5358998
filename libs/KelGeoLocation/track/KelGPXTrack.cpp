// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrack.h"

#include "KelGPXNames.h"
#include "KelGPXReader.h"
#include <KelDebugText.h>
#include <KelEnumToStringTable.h>
#include <KelGPXTrackFileRegistry.h>
#include <KelGPXTrackFileRegistryKey.h>
#include <KelGPXTrackImpl.h>
#include <KelXMLBuilder.h>
#include <KelXMLDomCursor.h>
#include <KelXMLGate.h>

#include <QDir>
#include <QDomDocument>
#include <QDomElement>
#include <QFileInfo>
#include <QHashFunctions>
#include <QLoggingCategory>
#include <QPainterPath>
#include <QStringView>

#include <algorithm>

namespace
{

Q_LOGGING_CATEGORY(filesCategory, "kel.files", QtInfoMsg)

/// allPoints().first() of a track with points, without making the list.
KelGeoPosition firstOfAllPoints(const KelGPXTrackImpl &track)
{
    for (const KelGPXTrackSegment &segment : track.segments()) {
        if (segment.isValid())
            return segment.firstPoint();
    }
    return KelGeoPosition();
}

/// How many levels of enclaves find room below a "trk": with more of them nobody could read the file again.
int enclaveLevelsBelow(const QDomElement &trk)
{
    constexpr int levelsOfPoints = 2; // "trkseg" and "compressedPoints" of the innermost
    int depth = 0;
    for (QDomNode node = trk; node.isElement(); node = node.parentNode())
        ++depth;
    return std::max(0, (KelXMLGate::MAXIMUM_DEPTH - depth - levelsOfPoints) / 2);
}

bool hasMoreEnclaveLevels(const KelGPXTrack &track, int levels)
{
    const QList<KelGPXTrack> enclaves = track.enclaves();
    return std::any_of(enclaves.cbegin(), enclaves.cend(), [levels](const KelGPXTrack &enclave) {
        return levels == 0 || hasMoreEnclaveLevels(enclave, levels - 1);
    });
}

} // namespace

KelGPXTrack::KelGPXTrack()
    : d(new KelGPXTrackImpl)
{
}

KelGPXTrack::KelGPXTrack(const QString &name, const QString &description, const QList<KelGPXTrackSegment> &segments,
                         const KelGPXTrackShape &shape)
    : KelGPXTrack()
{
    d->setName(name);
    d->setDescription(description);
    d->setSegments(segments);
    d->setShape(shape == TrackShapeAuto ? autoDetectShape(segments) : shape);
}

KelGPXTrack::KelGPXTrack(const KelGPXTrackPoint &point)
    : KelGPXTrack()
{
    d->setName(point.description());
    d->setShape(TrackShapePoint);
    if (point.position().isValid())
        d->addSegment(KelGPXTrackSegment(point));
}

KelGPXTrack::KelGPXTrack(const QDomElement &element, const QDir &dir)
    : KelGPXTrack()
{
    fromXml(element, dir);
}

KelGPXTrack::KelGPXTrack(const KelGPXTrack &other) = default;
KelGPXTrack::KelGPXTrack(KelGPXTrack &&other) noexcept = default;
KelGPXTrack &KelGPXTrack::operator=(const KelGPXTrack &other) = default;
KelGPXTrack &KelGPXTrack::operator=(KelGPXTrack &&other) noexcept = default;
KelGPXTrack::~KelGPXTrack() = default;

KelGPXTrack KelGPXTrack::decodeKml(const QString &name, const QString &description, const QString &coordinates,
                                   const KelGPXTrackShape &shape)
{
    QList<KelGPXTrackSegment> segments;
    // As KelGPXTrackSegment::decodeKml(), but without a copy of the text.
    const KelGPXTrackSegment segment(KelGPXReader::decodeTuples(QStringView(coordinates).trimmed()));
    if (segment.isValid())
        segments.append(segment);
    return KelGPXTrack(name, description, segments, shape);
}

KelGPXTrackShape KelGPXTrack::autoDetectShape(const QList<KelGPXTrackSegment> &segments)
{
    if (segments.isEmpty())
        return TrackShapeUnknown;
    if (segments.size() == 1 && segments.first().count() == 1)
        return TrackShapePoint;
    return segments.last().lastPoint() == segments.first().firstPoint() ? TrackShapePolygon : TrackShapeLineString;
}

QString KelGPXTrack::name() const
{
    return d->name();
}

QString KelGPXTrack::description() const
{
    return d->description();
}

QList<KelGPXTrackSegment> KelGPXTrack::segments() const
{
    return d->segments();
}

KelGPXTrackShape KelGPXTrack::shape() const
{
    return d->shape();
}

QList<KelGPXTrack> KelGPXTrack::enclaves() const
{
    return d->enclaves();
}

void KelGPXTrack::setName(const QString &name)
{
    d->setName(name);
}

void KelGPXTrack::setShape(const KelGPXTrackShape &shape)
{
    d->setShape(shape);
}

void KelGPXTrack::setEnclaves(const QList<KelGPXTrack> &enclaves)
{
    d->setEnclaves(enclaves);
}

void KelGPXTrack::addEnclave(const KelGPXTrack &enclave)
{
    d->addEnclave(enclave);
}

bool KelGPXTrack::isValid() const
{
    return !d->segments().isEmpty();
}

int KelGPXTrack::countPoints() const
{
    return d->countPoints();
}

bool KelGPXTrack::hasShape(const KelGPXTrackShape &shape) const
{
    return d->shape() == shape;
}

KelGPXTrackShape KelGPXTrack::naturalShape() const
{
    return autoDetectShape(d->segments());
}

bool KelGPXTrack::isEnclave(const KelGPXTrack &other) const
{
    return d->shape() == TrackShapePolygon && other.d->shape() == TrackShapePolygon
        && allPoints().toPainterPath().contains(other.allPoints().toPainterPath());
}

bool KelGPXTrack::operator==(const KelGPXTrack &other) const
{
    return d.constData() == other.d.constData() || *d == *other.d;
}

bool KelGPXTrack::operator!=(const KelGPXTrack &other) const
{
    return !(*this == other);
}

bool KelGPXTrack::operator<(const KelGPXTrack &other) const
{
    const int count = countPoints();
    const int otherCount = other.countPoints();
    if (count == otherCount && count != 0)
        return firstOfAllPoints(*d) < firstOfAllPoints(*other.d);
    return count < otherCount;
}

bool KelGPXTrack::operator>(const KelGPXTrack &other) const
{
    const int count = countPoints();
    const int otherCount = other.countPoints();
    if (count == otherCount && count != 0)
        return firstOfAllPoints(*d) > firstOfAllPoints(*other.d);
    return count > otherCount;
}

void KelGPXTrack::fromXml(const QDomElement &trk, const QDir &dir)
{
    KelXMLDomCursor cursor(trk);
    KelGPXReader::mergeTrack(cursor, &dir, *this);
}

QDomElement KelGPXTrack::buildTrackElement(QDomElement &parent) const
{
    return KelXMLBuilder::buildDomElement(parent, KelGPXNames::Track.toString());
}

void KelGPXTrack::buildXmlBody(QDomElement &trk) const
{
    const int levels = enclaveLevelsBelow(trk);
    buildXmlBody(trk, levels);
    // Once, however many they are.
    if (hasMoreEnclaveLevels(*this, levels)) {
        qCWarning(filesCategory).noquote()
            << QStringLiteral("enclaves of the track \"%1\" lie too deep to be written").arg(d->name());
    }
}

/// With so many levels of enclaves.
void KelGPXTrack::buildXmlBody(QDomElement &trk, int depth) const
{
    // Deliberate: no "desc", although it is read.
    KelXMLBuilder::buildDomElement(trk, KelGPXNames::Name.toString(), d->name());
    KelXMLBuilder::buildDomElement(trk, KelGPXNames::Shape.toString(), d->shape().encode());
    for (const KelGPXTrackSegment &segment : d->segments())
        segment.toXml(trk);
    if (d->enclaves().isEmpty() || depth == 0)
        return;
    QDomElement enclaves = KelXMLBuilder::buildDomElement(trk, KelGPXNames::Enclaves.toString());
    for (const KelGPXTrack &enclave : d->enclaves()) {
        QDomElement element = enclave.buildTrackElement(enclaves);
        enclave.buildXmlBody(element, depth - 1);
    }
}

void KelGPXTrack::toXml(QDomElement &parent, const QDir &dir) const
{
    QDomElement trk = buildTrackElement(parent);
    if (dir == QDir(QString()) || !dir.exists()) {
        buildXmlBody(trk);
        return;
    }
    const QString fileName =
        KelGPXTrackFileRegistry::instance().createAssignedFile(KelGPXTrackFileRegistryKey(*this, dir));
    KelXMLBuilder::buildDomElement(trk, KelGPXNames::Include.toString(), fileName);
}

void KelGPXTrack::saveAsGpxFile(const QFileInfo &file) const
{
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, KelGPXNames::Gpx.toString());
    QDomElement trk = buildTrackElement(root);
    buildXmlBody(trk);
    KelXMLBuilder::saveUTF8(document, file, nullptr);
}

KelGeoPositionList KelGPXTrack::allPoints() const
{
    return d->allPoints();
}

QList<KelGeoPositionList> KelGPXTrack::chunkedPoints() const
{
    return d->chunkedPoints();
}

bool KelGPXTrack::isSinglePoint() const
{
    return d->isSinglePoint();
}

KelGeoPosition KelGPXTrack::firstPoint() const
{
    return d->firstPoint();
}

KelGeoPosition KelGPXTrack::lastPoint() const
{
    return d->lastPoint();
}

QList<QDateTime> KelGPXTrack::allTimeStamps() const
{
    return d->allTimeStamps();
}

QDebug operator<<(QDebug debug, const KelGPXTrack &track)
{
    return KelDebugText::write(debug,
                               QStringLiteral("KelGPXTrack(\"%1\", %2, %3 segments, %4 points, %5 enclaves)")
                                   .arg(track.name(), track.shape().encode(), QString::number(track.segments().size()),
                                        QString::number(track.countPoints()), QString::number(track.enclaves().size())));
}

size_t qHash(const KelGPXTrack &track, size_t seed) noexcept
{
    return qHashMulti(seed, track.name(), track.description(), track.shape().toInt(), track.countPoints(),
                      track.enclaves().size());
}
