// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackShape.h"

#include <KelGPXMarkerShape.h>
#include <KelGPXTrackDisplayOptions.h>
#include <KelKMLNames.h>
#include <KelXMLBuilder.h>

#include <QCoreApplication>
#include <QDomElement>

namespace
{

QString trackShapeElement()
{
    return QStringLiteral("trackShape");
}

bool hasChild(const QDomElement &parent, const QString &name)
{
    return !parent.firstChildElement(name).isNull();
}

} // namespace

KelGPXTrackShape::KelGPXTrackShape()
    : KelEnumWrapper(TrackShapeUnknown)
{
}

KelGPXTrackShape::KelGPXTrackShape(KelGPXTrackShapeEnum shape)
    : KelEnumWrapper(shape)
{
}

KelGPXTrackShape::KelGPXTrackShape(int bits)
    : KelEnumWrapper(bits)
{
}

KelGPXTrackShape::KelGPXTrackShape(const QString &keys)
    : KelGPXTrackShape()
{
    setValue(enumToStringTable()->decodeCSV(keys));
}

KelGPXTrackShape::~KelGPXTrackShape() = default;

void KelGPXTrackShape::fillTable(KelEnumToStringTable<KelGPXTrackShapeEnum> *table) const
{
    table->insert(QStringLiteral("point"), TrackShapePoint);
    table->insert(QStringLiteral("linestring"), TrackShapeLineString);
    table->insert(QStringLiteral("polygon"), TrackShapePolygon);
    table->insert(QStringLiteral("hop"), TrackShapeHop);
    table->insert(QStringLiteral("auto"), TrackShapeAuto);
    table->insert(QStringLiteral("unknown"), TrackShapeUnknown);
}

QString KelGPXTrackShape::humanReadable(const KelGPXMarkerShape &marker) const
{
    switch (toInt()) {
    case TrackShapePoint:
        return QCoreApplication::translate("KelGPXTrackShape", "Punkt");
    case TrackShapeLineString:
        return (marker.toInt() & MarkerArrow) != 0 ? QCoreApplication::translate("KelGPXTrackShape", "Pfeil")
                                                   : QCoreApplication::translate("KelGPXTrackShape", "Strecke");
    case TrackShapePolygon:
        return QCoreApplication::translate("KelGPXTrackShape", "Fläche");
    case TrackShapeHop:
        return QCoreApplication::translate("KelGPXTrackShape", "Fluglinie");
    case TrackShapeAuto:
        return QCoreApplication::translate("KelGPXTrackShape", "Automatisch erkannt");
    case TrackShapeUnknown:
        return QCoreApplication::translate("KelGPXTrackShape", "unbekannt");
    default:
        return QString();
    }
}

QString KelGPXTrackShape::toolTip() const
{
    switch (toInt()) {
    case TrackShapePoint:
        return QCoreApplication::translate(
            "KelGPXTrackShape", "Ein Punkt kann als verschiedene vorgefertigte Formen gezeichnet werden.");
    case TrackShapeLineString:
        return QCoreApplication::translate("KelGPXTrackShape", "Alle Punkte werden zu einer Strecke verbunden.");
    case TrackShapePolygon:
        return QCoreApplication::translate("KelGPXTrackShape",
                                           "Alle Punkte werden als Außenlinie einer Fläche betrachtet.");
    case TrackShapeHop:
        // Deliberate: "Punkt" for "Punkte", the source text that translations are keyed by.
        return QCoreApplication::translate("KelGPXTrackShape", "Die beiden Punkt werden als Fluglinie betrachtet.");
    case TrackShapeAuto:
        return QCoreApplication::translate("KelGPXTrackShape", "Die Form wird automatisch erkannt.");
    case TrackShapeUnknown:
        return QCoreApplication::translate("KelGPXTrackShape", "Wir wissen die Form nicht.");
    default:
        return QString();
    }
}

void KelGPXTrackShape::fromXml(const QDomElement &parent)
{
    const QDomElement element = parent.firstChildElement(trackShapeElement());
    *this = element.isNull() ? KelGPXTrackShape(TrackShapeAuto) : KelGPXTrackShape(element.text());
}

void KelGPXTrackShape::toXml(QDomElement &parent) const
{
    KelXMLBuilder::buildDomElement(parent, trackShapeElement(), encode());
}

KelGPXTrackShape KelGPXTrackShape::decodeKml(const QDomElement &placemark)
{
    if (hasChild(placemark, KelKMLNames::Polygon))
        return TrackShapePolygon;
    if (hasChild(placemark, KelKMLNames::LineString))
        return TrackShapeLineString;
    if (hasChild(placemark, KelKMLNames::Point))
        return TrackShapePoint;

    const QDomElement shape = placemark.firstChildElement(KelKMLNames::Shape);
    return shape.isNull() ? KelGPXTrackShape(TrackShapeAuto) : KelGPXTrackShape(shape.text());
}

QList<KelGPXTrackShape> KelGPXTrackShape::possibleShapes() const
{
    switch (toInt()) {
    case TrackShapePoint:
        return {TrackShapePoint};
    case TrackShapeHop:
        return {TrackShapeHop};
    case TrackShapeLineString:
        return {TrackShapePolygon, TrackShapeLineString};
    case TrackShapePolygon:
        return {TrackShapePoint, TrackShapePolygon};
    default:
        return {};
    }
}

QList<KelGPXMarkerShape> KelGPXTrackShape::createMarkerShapes() const
{
    switch (toInt()) {
    case TrackShapePoint:
        return KelGPXMarkerShape::allPointShapes();
    case TrackShapeLineString:
        return KelGPXMarkerShape::allLineStringShapes();
    default:
        return {MarkerUnknown};
    }
}

KelGPXTrackDisplayOptions KelGPXTrackShape::availableDisplayOptions() const
{
    switch (toInt()) {
    case TrackShapePoint:
        return KelGPXTrackDisplayOptions(DisplayStroke | DisplayFill | DisplayExtra);
    case TrackShapeHop:
        return KelGPXTrackDisplayOptions(DisplayStroke | DisplayExtra);
    case TrackShapeLineString:
        return DisplayStroke;
    case TrackShapePolygon:
        return KelGPXTrackDisplayOptions(DisplayStroke | DisplayFill);
    default:
        return DisplayNone;
    }
}

KelGPXTrackDisplayOptions KelGPXTrackShape::defaultDisplayOptions() const
{
    return DisplayStroke;
}
