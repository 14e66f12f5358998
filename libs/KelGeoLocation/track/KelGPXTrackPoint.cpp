// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackPoint.h"

#include "KelGPXNames.h"
#include "KelGPXReader.h"
#include "KelGPXTupleWriter.h"
#include <KelDebugText.h>
#include <KelGPXTrackPointImpl.h>
#include <KelXMLBuilder.h>
#include <KelXMLDomCursor.h>

#include <QDomElement>
#include <QHashFunctions>

namespace
{

/// New data that nobody else knows: its first handle need not be counted atomically.
QSharedDataPointer<KelGPXTrackPointImpl> firstHandle(KelGPXTrackPointImpl *data) noexcept
{
    data->ref.storeRelaxed(1);
    return QSharedDataPointer<KelGPXTrackPointImpl>(data, QAdoptSharedDataTag());
}

} // namespace

KelGPXTrackPoint::KelGPXTrackPoint()
    : d(firstHandle(new KelGPXTrackPointImpl))
{
}

KelGPXTrackPoint::KelGPXTrackPoint(const KelGeoPosition &position, int elevation, const QDateTime &timeStamp,
                                   const QString &description)
    : d(firstHandle(new KelGPXTrackPointImpl(position, elevation, timeStamp, description)))
{
}

KelGPXTrackPoint::KelGPXTrackPoint(const QDomElement &element)
{
    KelXMLDomCursor cursor(element);
    *this = KelGPXReader::readPoint(cursor);
}

KelGPXTrackPoint::KelGPXTrackPoint(KelGPXTrackPointImpl *data)
    : d(firstHandle(data))
{
}

KelGPXTrackPoint::KelGPXTrackPoint(const KelGPXTrackPoint &other) = default;
KelGPXTrackPoint::KelGPXTrackPoint(KelGPXTrackPoint &&other) noexcept = default;
KelGPXTrackPoint &KelGPXTrackPoint::operator=(const KelGPXTrackPoint &other) = default;
KelGPXTrackPoint &KelGPXTrackPoint::operator=(KelGPXTrackPoint &&other) noexcept = default;

KelGPXTrackPoint::~KelGPXTrackPoint()
{
    // Most points are the only handle of their data, and the last one need not count down.
    if (d.constData() && d.constData()->ref.loadAcquire() == 1)
        delete d.take();
}

KelGeoPosition KelGPXTrackPoint::position() const
{
    return d->position();
}

int KelGPXTrackPoint::elevation() const
{
    return d->elevation();
}

QDateTime KelGPXTrackPoint::timeStamp() const
{
    return d->timeStamp();
}

QString KelGPXTrackPoint::description() const
{
    return d->description();
}

bool KelGPXTrackPoint::isNull() const
{
    return d->position().latitude().isNull() && d->position().longitude().isNull();
}

bool KelGPXTrackPoint::operator==(const KelGPXTrackPoint &other) const
{
    return d.constData() == other.d.constData() || *d == *other.d;
}

void KelGPXTrackPoint::toXml(QDomElement &parent) const
{
    const auto degrees = [](const KelGeoArc &arc) { return QString::number(arc.decimalDegrees(), 'g', 10); };

    QDomElement element = KelXMLBuilder::buildDomElement(parent, KelGPXNames::TrackPoint.toString());
    element.setAttribute(KelGPXNames::Latitude.toString(), degrees(d->position().latitude()));
    element.setAttribute(KelGPXNames::Longitude.toString(), degrees(d->position().longitude()));
    if (d->elevation() != 0)
        KelXMLBuilder::buildDomElement(element, KelGPXNames::Elevation.toString(), d->elevation());
    if (d->timeStamp().isValid())
        KelXMLBuilder::buildDomElement(element, KelGPXNames::Time.toString(), d->timeStamp().toString(Qt::ISODate));
    if (!d->description().isEmpty())
        KelXMLBuilder::buildDomElement(element, KelGPXNames::Description.toString(), d->description());
}

QString KelGPXTrackPoint::toKml() const
{
    QString tuple;
    appendKml(tuple);
    return tuple;
}

void KelGPXTrackPoint::appendKml(QString &text) const
{
    KelGPXTupleWriter writer(text);
    writeKml(writer);
}

void KelGPXTrackPoint::writeKml(KelGPXTupleWriter &writer) const
{
    const KelGPXTrackPointImpl &data = *d;
    const bool hasTime = data.timeStamp().isValid();
    writer.appendCoordinate(data.position().longitude().decimalDegrees());
    writer.append(u',');
    writer.appendCoordinate(data.position().latitude().decimalDegrees());
    if (data.elevation() == 0 && !hasTime)
        return;
    writer.append(u',');
    writer.appendInteger(data.elevation());
    // Deliberate: milliseconds here, although decodeKml() reads seconds.
    if (hasTime) {
        writer.append(u',');
        writer.appendInteger(data.timeStamp().toMSecsSinceEpoch());
    }
}

KelGPXTrackPoint KelGPXTrackPoint::decodeKml(const QString &tuple)
{
    return KelGPXReader::decodeTuple(tuple);
}

QString KelGPXTrackPoint::encode(const KelGeoArc &arc)
{
    QString text;
    KelGPXTupleWriter(text).appendCoordinate(arc.decimalDegrees());
    return text;
}

KelGeoPositionList KelGPXTrackPoint::allPoints() const
{
    return d->allPoints();
}

QList<KelGeoPositionList> KelGPXTrackPoint::chunkedPoints() const
{
    return d->chunkedPoints();
}

bool KelGPXTrackPoint::isSinglePoint() const
{
    return d->isSinglePoint();
}

KelGeoPosition KelGPXTrackPoint::firstPoint() const
{
    return d->firstPoint();
}

KelGeoPosition KelGPXTrackPoint::lastPoint() const
{
    return d->lastPoint();
}

QList<QDateTime> KelGPXTrackPoint::allTimeStamps() const
{
    return d->allTimeStamps();
}

QDebug operator<<(QDebug debug, const KelGPXTrackPoint &point)
{
    QString text = QStringLiteral("%1 %2").arg(point.position().latitude().toString(false),
                                               point.position().longitude().toString(false));
    if (point.elevation() != 0)
        text += QStringLiteral(" %1 m").arg(point.elevation());
    if (point.timeStamp().isValid())
        text += QLatin1Char(' ') + point.timeStamp().toString(Qt::ISODateWithMs);
    if (!point.description().isEmpty())
        text += QStringLiteral(" \"%1\"").arg(point.description());
    return KelDebugText::write(debug, QStringLiteral("KelGPXTrackPoint(%1)").arg(text));
}

size_t qHash(const KelGPXTrackPoint &point, size_t seed) noexcept
{
    return qHashMulti(seed, point.elevation(), point.timeStamp(), point.description());
}
