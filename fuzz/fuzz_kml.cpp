// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// KML texts: every placemark is found, with the points and the style that the plain rules find. A tilde in the input
// stands for many coordinates.

#include "KelFuzzKml.h"

#include <KelGPXConfiguredTrack.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrackConfiguration.h>
#include <KelPlainGPX.h>
#include <KelTrackSelectionFactoryKmlFile.h>

#include <QDomDocument>
#include <QHash>
#include <QString>

namespace
{

const QString fileName = QStringLiteral("tour.kml");

QList<QDomElement> placemarks(const QDomElement &element)
{
    if (element.nodeName() == QLatin1String("Placemark"))
        return {element};
    QList<QDomElement> found;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        found += placemarks(child);
    return found;
}

QString coordinates(const QDomElement &element)
{
    if (element.nodeName() == QLatin1String("coordinates"))
        return element.text().trimmed();
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        if (const QString found = coordinates(child); !found.isEmpty())
            return found;
    }
    return QString();
}

QString textOr(const QDomElement &element, const char *name, const QString &otherwise)
{
    const QString text = element.firstChildElement(QLatin1String(name)).text();
    return text.isEmpty() ? otherwise : text;
}

KelGPXTrackShape shape(const QDomElement &placemark)
{
    const auto has = [&placemark](const char *name) { return !placemark.firstChildElement(QLatin1String(name)).isNull(); };
    if (has("Polygon"))
        return TrackShapePolygon;
    if (has("LineString"))
        return TrackShapeLineString;
    if (has("Point"))
        return TrackShapePoint;
    return has("shape") ? KelGPXTrackShape(placemark.firstChildElement("shape").text()) : KelGPXTrackShape(TrackShapeAuto);
}

KelGPXTrack track(const QDomElement &placemark)
{
    const QList<KelGPXTrackPoint> points = KelPlainGPX::decodeTuples(coordinates(placemark));
    QList<KelGPXTrackSegment> segments;
    if (!points.isEmpty())
        segments.append(KelGPXTrackSegment(points));
    return KelGPXTrack(textOr(placemark, "name", fileName), textOr(placemark, "description", fileName), segments,
                       shape(placemark));
}

QHash<QString, KelGPXTrackConfiguration> styles(const QDomElement &document)
{
    QHash<QString, KelGPXTrackConfiguration> found;
    for (QDomElement style = document.firstChildElement("Style"); !style.isNull(); style = style.nextSiblingElement("Style"))
        found.insert(QLatin1Char('#') + style.attribute("id"), KelGPXTrackConfiguration::fromKml(style));
    return found;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QString text = QString::fromUtf8(KelFuzz::bytes(data, size));
    text.replace(QLatin1Char('~'), KelFuzz::longCoordinates());
    const KelGPXConfiguredTrackList list = KelTrackSelectionFactoryKmlFile().decode(text, fileName);

    const QDomDocument xml = KelFuzz::tree(text);
    const QDomElement document = xml.documentElement().firstChildElement("Document");
    const QList<QDomElement> expected = placemarks(document);
    const QHash<QString, KelGPXTrackConfiguration> known = styles(document);
    KelFuzz::compare(list.tracks().size(), expected.size(), "every placemark is one entry");
    for (qsizetype i = 0; i < expected.size(); ++i) {
        const KelGPXConfiguredTrack &actual = list.tracks().at(i);
        KelFuzz::compare(KelPlainGPX::describe(actual.track()), KelPlainGPX::describe(track(expected.at(i))),
                         "a placemark's track is as by the plain rules");
        const QString url = expected.at(i).firstChildElement("styleUrl").text();
        const KelGPXConfiguredTrack styled(actual.track(), known.value(url, KelGPXTrackConfiguration::defaultValue()));
        KelFuzz::check(actual.configuration() == styled.configuration(), "a placemark's style is as by the plain rules");
    }
    return 0;
}
