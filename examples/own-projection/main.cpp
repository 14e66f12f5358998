// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Tracks on a map that is no Mercator map: plate carrée, where a degree is as many pixels everywhere.
//   own-projection date-line-flight.gpx world.png

#include <KelGPXTrackRenderer.h>
#include <KelGeoPosition.h>
#include <KelTrackSelectionFactory.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QUrl>

#include <cstdio>

namespace
{

//! [projection]
/// The whole world, 360 degrees wide and 180 degrees high.
class PlateCarree : public KelGPXTrackRenderer
{
public:
    PlateCarree(const KelGPXTrackSelection &selection, int pixelsPerDegree)
        : KelGPXTrackRenderer(selection, QSize(360, 180) * pixelsPerDegree, 1.0)
        , m_pixelsPerDegree(pixelsPerDegree)
    {
    }

    /// The renderer asks from several threads at once: nothing may be written here. How far apart the copies of the
    /// world lie, it learns from the longitudes -180 and 180.
    QPointF projectPosition(const KelGeoPosition &position) const override
    {
        return QPointF(position.longitude().decimalDegrees() + 180.0, 90.0 - position.latitude().decimalDegrees())
            * m_pixelsPerDegree;
    }

private:
    int m_pixelsPerDegree;
};
//! [projection]

void drawGraticule(QPainter &painter, const PlateCarree &renderer)
{
    painter.setPen(QColor(0, 60, 100, 60));
    for (int longitude = -180; longitude <= 180; longitude += 30)
        painter.drawLine(renderer.projectPosition({90.0, double(longitude)}), renderer.projectPosition({-90.0, double(longitude)}));
    for (int latitude = -90; latitude <= 90; latitude += 30)
        painter.drawLine(renderer.projectPosition({double(latitude), -180.0}), renderer.projectPosition({double(latitude), 180.0}));
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 3) {
        std::fprintf(stderr, "usage: own-projection TRACK-FILE PICTURE\n");
        return 2;
    }
    const KelGPXTrackSelection tracks(
        KelTrackSelectionFactory::instance().createConfiguredTrackList(QUrl::fromLocalFile(arguments.at(1))));
    const PlateCarree renderer(tracks, 2);
    QImage picture(renderer.targetImageSize(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(QColor(0xe8f0f5));
    QPainter painter(&picture);
    drawGraticule(painter, renderer);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.renderWith(&painter, KelGPXTrackRenderer::Normal);
    painter.end();
    return picture.save(arguments.at(2)) ? 0 : 1;
}
