// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPLAINGPX_H
#define KELPLAINGPX_H

#include <KelGPXTrack.h>
#include <KelGPXTrackPoint.h>
#include <KelGPXTrackSegment.h>
#include <KelGPXTrackShape.h>
#include <KelGeoPosition.h>
#include <KelLatitude.h>
#include <KelLongitude.h>
#include <KelXMLParser.h>

#include <QDateTime>
#include <QDomElement>
#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

/// The rules by which points and tracks are read and written, once more in their plain form: over a tree, with lists
/// of strings and Qt's own conversions. The yardstick of everything that is faster.
namespace KelPlainGPX
{

inline double safeDouble(const QString &text)
{
    const qsizetype pointIndex = text.indexOf(QLatin1String("."));
    return (text.size() > pointIndex + 8 ? text.left(pointIndex + 8) : text).toDouble();
}

inline KelGPXTrackPoint decodeTuple(const QString &tuple)
{
    const QStringList parts = tuple.split(QLatin1String(","), Qt::KeepEmptyParts);
    return KelGPXTrackPoint(
        KelGeoPosition(KelLatitude(safeDouble(parts.value(1))), KelLongitude(safeDouble(parts.value(0)))),
        parts.size() >= 3 ? parts.at(2).toInt() : 0,
        parts.size() >= 4 ? QDateTime::fromSecsSinceEpoch(parts.at(3).toLongLong(), Qt::UTC) : QDateTime(), QString());
}

inline QList<KelGPXTrackPoint> decodeTuples(const QString &text)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    QList<KelGPXTrackPoint> points;
    const QStringList tuples = text.split(blanks, Qt::KeepEmptyParts);
    for (const QString &tuple : tuples) {
        if (const KelGPXTrackPoint point = decodeTuple(tuple); !point.isNull())
            points.append(point);
    }
    return points;
}

inline QString encodeAngle(double degrees)
{
    static const QRegularExpression zeros(QStringLiteral("0+$"));
    return QString::number(degrees, 'f', 10).remove(zeros);
}

inline QString encodeTuple(const KelGPXTrackPoint &point)
{
    QString tuple = encodeAngle(point.position().longitude().decimalDegrees()) + QLatin1Char(',')
        + encodeAngle(point.position().latitude().decimalDegrees());
    if (point.elevation() != 0 || point.timeStamp().isValid())
        tuple += QLatin1Char(',') + QString::number(point.elevation());
    if (point.timeStamp().isValid())
        tuple += QLatin1Char(',') + QString::number(point.timeStamp().toMSecsSinceEpoch());
    return tuple;
}

inline KelGPXTrackPoint readPoint(const QDomElement &element)
{
    const double latitude = KelXMLParser::doubleAttribute(element, "lat", 1.0);
    const double longitude = KelXMLParser::doubleAttribute(element, "lon", 1.0);
    const QDateTime time = KelXMLParser::dateTimeText(element, "time", Qt::ISODate, QDateTime());
    const double elevation = KelXMLParser::doubleText(element, "ele", 0.0);
    const bool fits = elevation > -2147483649.0 && elevation < 2147483648.0;
    return KelGPXTrackPoint(KelGeoPosition(KelLatitude(latitude), KelLongitude(longitude)), fits ? int(elevation) : 0,
                            time, KelXMLParser::text(element, "desc", QString()));
}

inline KelGPXTrackSegment readSegment(const QDomElement &element)
{
    QList<KelGPXTrackPoint> points;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        if (child.tagName() == QLatin1String("compressedPoints")) {
            points.append(decodeTuples(child.text()));
        } else if (child.tagName() == QLatin1String("trkpt")) {
            points.append(readPoint(child));
        } else if (child.tagName() == QLatin1String("extensions")) {
            const QDomElement extension = child.firstChildElement("gpxx:RoutePointExtension");
            for (QDomElement rpt = extension.firstChildElement("gpxx:rpt"); !rpt.isNull();
                 rpt = rpt.nextSiblingElement("gpxx:rpt"))
                points.append(readPoint(rpt));
        }
    }
    return KelGPXTrackSegment(points);
}

/// Without includes. Enclaves at a deeper level than the limit are skipped.
inline KelGPXTrack readTrack(const QDomElement &element, int depth = 0, int maximumDepth = 256)
{
    QString name;
    QString description;
    KelGPXTrackShape shape(TrackShapeLineString);
    QList<KelGPXTrackSegment> segments;
    QList<KelGPXTrack> enclaves;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        const QString tag = child.tagName();
        if (tag == QLatin1String("name")) {
            name = child.text();
        } else if (tag == QLatin1String("desc")) {
            description = child.text();
        } else if (tag == QLatin1String("trkseg") || tag == QLatin1String("rtept")) {
            if (const KelGPXTrackSegment segment = readSegment(child); segment.isValid())
                segments.append(segment);
        } else if (tag == QLatin1String("shape")) {
            shape = KelGPXTrackShape(child.text());
        } else if (tag == QLatin1String("enclaves") && depth < maximumDepth) {
            for (QDomElement enclave = child.firstChildElement(); !enclave.isNull();
                 enclave = enclave.nextSiblingElement())
                enclaves.append(readTrack(enclave, depth + 1, maximumDepth));
        }
    }
    KelGPXTrack track(name, description, segments, shape); // settles auto
    track.setEnclaves(enclaves);
    return track;
}

inline QList<KelGPXTrack> readTracks(const QDomElement &root, const QString &baseName)
{
    QList<KelGPXTrack> tracks;
    int counter = 0;
    for (const char *tag : {"trk", "rte"}) {
        for (QDomElement element = root.firstChildElement(QLatin1String(tag)); !element.isNull();
             element = element.nextSiblingElement(QLatin1String(tag))) {
            ++counter;
            KelGPXTrack track = readTrack(element);
            if (!track.isValid())
                continue;
            if (track.name().isEmpty())
                track.setName(baseName + QLatin1Char(' ') + QString::number(counter));
            tracks.append(track);
        }
    }
    return tracks;
}

/// Everything that a point holds, to the last bit.
inline QString describe(const KelGPXTrackPoint &point)
{
    return QStringLiteral("(%1 %2 %3 %4 %5 %6)")
        .arg(QString::number(point.position().latitude().decimalDegrees(), 'g', 17),
             QString::number(point.position().longitude().decimalDegrees(), 'g', 17),
             QString::number(point.elevation()),
             point.timeStamp().isValid() ? QString::number(point.timeStamp().toMSecsSinceEpoch()) : QString(),
             QString::number(int(point.timeStamp().timeSpec())), point.description());
}

inline QString describe(const QList<KelGPXTrackPoint> &points)
{
    QString text;
    for (const KelGPXTrackPoint &point : points)
        text += describe(point);
    return text;
}

inline QString describe(const KelGPXTrack &track)
{
    QString text = QStringLiteral("%1|%2|%3|").arg(track.name(), track.description(), track.shape().encode());
    for (const KelGPXTrackSegment &segment : track.segments())
        text += QLatin1Char('[') + describe(segment.trackPoints()) + QLatin1Char(']');
    for (const KelGPXTrack &enclave : track.enclaves())
        text += QLatin1Char('{') + describe(enclave) + QLatin1Char('}');
    return text;
}

inline QStringList describe(const QList<KelGPXTrack> &tracks)
{
    QStringList texts;
    for (const KelGPXTrack &track : tracks)
        texts.append(describe(track));
    return texts;
}

} // namespace KelPlainGPX

#endif
