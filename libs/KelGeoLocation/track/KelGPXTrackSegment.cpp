// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackSegment.h"

#include "KelGPXNames.h"
#include "KelGPXReader.h"
#include "KelGPXTupleWriter.h"
#include <KelConcurrent.h>
#include <KelDebugText.h>
#include <KelGPXTrackPointImpl.h>
#include <KelIntRange.h>
#include <KelXMLBuilder.h>
#include <KelXMLDomCursor.h>

#include <QCoreApplication>
#include <QDomElement>
#include <QHashFunctions>
#include <QThread>

#include <utility>

KelGPXTrackSegment::KelGPXTrackSegment(const QList<KelGPXTrackPoint> &points)
    : m_trackPoints(points)
{
}

KelGPXTrackSegment::KelGPXTrackSegment(const KelGPXTrackPoint &point)
    : m_trackPoints({point})
{
}

KelGPXTrackSegment::KelGPXTrackSegment(const QDomElement &element)
{
    KelXMLDomCursor cursor(element);
    m_trackPoints = KelGPXReader::readSegment(cursor);
}

const KelGeoPosition &KelGPXTrackSegment::positionAt(int index) const
{
    return m_trackPoints.at(index).d->position();
}

bool KelGPXTrackSegment::operator==(const KelGPXTrackSegment &other) const
{
    return m_trackPoints == other.m_trackPoints;
}

void KelGPXTrackSegment::toXml(QDomElement &parent) const
{
    QDomElement segment = KelXMLBuilder::buildDomElement(parent, KelGPXNames::TrackSegment.toString());
    KelXMLBuilder::buildDomElement(segment, KelGPXNames::CompressedPoints.toString(), toKml());
}

QString KelGPXTrackSegment::toKml() const
{
    constexpr qsizetype usualLength = 40;
    QString text;
    text.reserve(m_trackPoints.size() * usualLength);
    {
        KelGPXTupleWriter writer(text);
        bool isFirst = true;
        for (const KelGPXTrackPoint &point : m_trackPoints) {
            if (!std::exchange(isFirst, false))
                writer.append(u'\n');
            point.writeKml(writer);
        }
    }
    return text;
}

QList<KelGPXTrackPoint> KelGPXTrackSegment::decodeTrackPoints(const QString &text)
{
    return KelGPXReader::decodeTuples(text);
}

KelGPXTrackSegment KelGPXTrackSegment::decodeKml(const QString &text)
{
    return KelGPXTrackSegment(decodeTrackPoints(text));
}

void KelGPXTrackSegment::decodeGarminGPX(QDomElement extensions)
{
    KelXMLDomCursor cursor(extensions);
    m_trackPoints.append(KelGPXReader::readGarminRoutePoints(cursor));
}

KelGeoPositionList KelGPXTrackSegment::allPoints() const
{
    KelGeoPositionList points;
    points.reserve(m_trackPoints.size());
    for (const KelGPXTrackPoint &point : m_trackPoints)
        points.append(point.d->position());
    return points;
}

QList<KelGeoPositionList> KelGPXTrackSegment::chunkedPoints() const
{
    const KelIntRange everything(0, count() - 1);
    if (!weAreaRunningInMainThread())
        return {collectBlock(everything)};
    return KelConcurrent::blockingMapped(everything.splitEvenlyForCpuCores(),
                                         [this](const KelIntRange &range) { return collectBlock(range); });
}

bool KelGPXTrackSegment::isSinglePoint() const
{
    return m_trackPoints.size() == 1;
}

KelGeoPosition KelGPXTrackSegment::firstPoint() const
{
    return m_trackPoints.isEmpty() ? KelGeoPosition() : m_trackPoints.first().firstPoint();
}

KelGeoPosition KelGPXTrackSegment::lastPoint() const
{
    return m_trackPoints.isEmpty() ? KelGeoPosition() : m_trackPoints.last().lastPoint();
}

QList<QDateTime> KelGPXTrackSegment::allTimeStamps() const
{
    QList<QDateTime> timeStamps;
    timeStamps.reserve(m_trackPoints.size());
    for (const KelGPXTrackPoint &point : m_trackPoints)
        timeStamps.append(point.timeStamp());
    return timeStamps;
}

KelGeoPositionList KelGPXTrackSegment::collectBlock(const KelIntRange &range) const
{
    const int first = qMax(range.firstIndex(), 0);
    const int end = qMin(range.lastIndexEvenIfUnvalid(), count());
    KelGeoPositionList points;
    points.reserve(qMax(end - first, 0));
    for (int i = first; i < end; ++i)
        points.append(positionAt(i));
    return points;
}

bool KelGPXTrackSegment::weAreaRunningInMainThread() const
{
    const QCoreApplication *application = QCoreApplication::instance();
    return application != nullptr && QThread::currentThread() == application->thread();
}

QDebug operator<<(QDebug debug, const KelGPXTrackSegment &segment)
{
    return KelDebugText::write(debug, QStringLiteral("KelGPXTrackSegment(%1 points)").arg(segment.count()));
}

size_t qHash(const KelGPXTrackSegment &segment, size_t seed) noexcept
{
    const QList<KelGPXTrackPoint> points = segment.trackPoints();
    return points.isEmpty() ? seed : qHashMulti(seed, points.size(), points.first(), points.last());
}
