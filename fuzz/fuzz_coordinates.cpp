// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// The coordinates of a KML placemark, from the document to the points, against the plain rules. The input is the text of
// the element "coordinates", so that all of it is coordinates.

#include "KelFuzzKml.h"

#include <KelGPXConfiguredTrack.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelPlainGPX.h>
#include <KelTrackSelectionFactoryKmlFile.h>

#include <QDomDocument>
#include <QString>

namespace
{

void compareCoordinates(const QString &text)
{
    const QString kml = QStringLiteral("<kml><Document><Placemark><LineString><coordinates>") + text
        + QStringLiteral("</coordinates></LineString></Placemark></Document></kml>");
    const QDomDocument xml = KelFuzz::tree(kml);
    const QDomElement placemark = xml.documentElement().firstChildElement("Document").firstChildElement("Placemark");
    const QDomElement element = placemark.firstChildElement("LineString").firstChildElement("coordinates");
    const QList<KelGPXTrackPoint> expected = KelPlainGPX::decodeTuples(element.text().trimmed());

    const KelGPXConfiguredTrackList list = KelTrackSelectionFactoryKmlFile().decode(kml, QStringLiteral("a.kml"));
    if (list.tracks().isEmpty())
        return;
    const QList<KelGPXTrackSegment> segments = list.tracks().first().track().segments();
    const QList<KelGPXTrackPoint> actual = segments.isEmpty() ? QList<KelGPXTrackPoint>() : segments.first().trackPoints();
    // Markup in the text may close an empty element and begin another one, which then counts.
    if (!expected.isEmpty() || segments.isEmpty())
        KelFuzz::compare(KelPlainGPX::describe(actual), KelPlainGPX::describe(expected), "coordinates are as by the plain rules");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(KelFuzz::bytes(data, size));
    compareCoordinates(text);
    compareCoordinates(text + KelFuzz::longCoordinates());
    compareCoordinates(KelFuzz::longCoordinates() + text);
    return 0;
}
