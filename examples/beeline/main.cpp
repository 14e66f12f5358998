// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// The way of a direct flight between two positions, as a GPX file and as a picture.
//   beeline "N53.14 E8.21" "S33.87 E151.21" flight.gpx flight.png

#include <KelGPXBeelineCreator.h>
#include <KelGPXTrackRenderer.h>
#include <KelGeoPositionRect.h>
#include <KelMapProjection.h>

#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cstdio>

namespace
{

struct Renderer : KelGPXTrackRenderer
{
    Renderer(const KelGPXTrackSelection &selection, const KelMapProjection &projection, const QSize &size)
        : KelGPXTrackRenderer(selection, size, 1.0)
        , m_projection(projection)
    {
    }
    QPointF projectPosition(const KelGeoPosition &position) const override { return m_projection.projectate(position); }
    KelMapProjection m_projection;
};

//! [area]
/// From one end to the other the shorter way round, and as far north and south as the way goes. The bounding box of
/// the points alone never crosses the date line.
KelGeoPositionRect areaOf(const KelGPXTrack &flight, const KelGeoPosition &from, const KelGeoPosition &to)
{
    const KelGeoPositionRect ends = KelGeoPositionRect::spawn(from, to);
    return KelGeoPositionRect(flight.boundingBox().latitudeRange(), ends.longitudeRange());
}
//! [area]

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    const KelGeoPosition from = KelGeoPosition::parse(arguments.value(1));
    const KelGeoPosition to = KelGeoPosition::parse(arguments.value(2));
    if (arguments.size() != 5 || !from.isValid() || !to.isValid()) {
        std::fprintf(stderr, "usage: beeline POSITION POSITION GPX-FILE PICTURE; a position is \"N53.14 E8.21\"\n");
        return 2;
    }

    //! [beeline]
    const KelGPXTrack flight = KelGPXBeelineCreator(from, to).createBeeline("Long way");
    KelGPXTrackConfiguration style = KelGPXTrackConfiguration::defaultValue();
    style.setMarkerShape(MarkerArrow);
    style.setLineWidth(3);
    const KelGPXTrackSelection selection{KelGPXConfiguredTrackList(KelGPXConfiguredTrack(flight, style))};
    //! [beeline]
    flight.saveAsGpxFile(QFileInfo(arguments.at(3)));

    const QSize size(640, 480);
    const KelMapProjection projection(areaOf(flight, from, to), size);
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(QColor(0xc6dbe6));
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    Renderer(selection, projection, size).renderWith(&painter, KelGPXTrackRenderer::Normal);
    painter.end();
    std::printf("%.0f km, %d points\n", from.distance(to), flight.countPoints());
    return picture.save(arguments.at(4)) ? 0 : 1;
}
