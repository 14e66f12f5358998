// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// The smallest host: draws the tracks of a file onto an empty picture.
//   draw-a-track walk.gpx walk.png

#include <KelGPXTrackRenderer.h>
#include <KelGeoPositionRect.h>
#include <KelMapProjection.h>
#include <KelTrackSelectionFactory.h>

#include <QGuiApplication>
#include <QImage>
#include <QUrl>

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

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 3) {
        std::fprintf(stderr, "usage: draw-a-track TRACK-FILE PICTURE\n");
        return 2;
    }

    const QSize size(800, 600);
    const KelGPXTrackSelection tracks(
        KelTrackSelectionFactory::instance().createConfiguredTrackList(QUrl::fromLocalFile(arguments.at(1))));
    if (tracks.isEmpty()) {
        std::fprintf(stderr, "%s holds no tracks\n", qPrintable(arguments.at(1)));
        return 1;
    }
    const KelMapProjection projection(tracks.boundingBox().withPadding(10), size);
    const QImage picture = Renderer(tracks, projection, size).render(KelGPXTrackRenderer::Normal);
    if (!picture.save(arguments.at(2))) {
        std::fprintf(stderr, "%s cannot be written\n", qPrintable(arguments.at(2)));
        return 1;
    }
    return 0;
}
