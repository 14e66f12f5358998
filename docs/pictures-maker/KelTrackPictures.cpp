// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackPictures.h"

#include "KelMapSketch.h"
#include "KelPictureSheet.h"
#include "KelWorldMap.h"

#include <KelCopyrightRenderer.h>
#include <KelGPXBeelineCreator.h>
#include <KelOsmScaleRenderer.h>
#include <KelTrackSelectionFactory.h>

#include <QUrl>

namespace
{

KelGeoPositionRect area(double south, double west, double north, double east)
{
    return KelGeoPositionRect(KelGeoPosition(south, west), KelGeoPosition(north, east));
}

KelGPXTrackConfiguration style(double width)
{
    KelGPXTrackConfiguration style = KelGPXTrackConfiguration::defaultValue();
    style.setLineColor(QColor(0xc0, 0x39, 0x2b));
    style.setLineWidth(width);
    return style;
}

KelGPXTrackSelection selectionOf(const KelGPXTrack &track, const KelGPXTrackConfiguration &configuration)
{
    return KelGPXTrackSelection(KelGPXConfiguredTrackList(KelGPXConfiguredTrack(track, configuration)));
}

KelGPXTrackSelection flight(const KelGeoPosition &from, const KelGeoPosition &to)
{
    return selectionOf(KelGPXBeelineCreator(from, to).createBeeline(QString()), style(4));
}

KelGPXTrackSelection northernTour()
{
    const KelGPXTrack tour = KelGPXTrack::decodeKml(
        QStringLiteral("tour"), QString(),
        QStringLiteral("8.2,53.1 10.0,53.55 9.5,54.8 9.7,55.5 10.4,55.4 12.5,55.7 12.7,56.05 12.0,57.7 10.7,59.9"),
        TrackShapeLineString);
    KelGPXTrackConfiguration configuration = style(5);
    configuration.setHaloWidth(30);
    return selectionOf(tour, configuration);
}

/// The map in the pictures is not that of the library's usual attribution.
class Credit : public KelCopyrightRenderer
{
public:
    [[nodiscard]] QString copyrightText() const override { return KelWorldMap::credit(); }
};

const KelGeoPosition WELLINGTON(-41.29, 174.78);
const KelGeoPosition LOS_ANGELES(34.05, -118.24);

} // namespace

KelTrackPictures::KelTrackPictures(const QDir &folder)
    : m_folder(folder)
{
}

bool KelTrackPictures::drawAll() const
{
    return drawHaloAndCrop() && drawDateLine() && drawWorldCopies() && drawEnclaves() && drawScaleBar();
}

bool KelTrackPictures::drawHaloAndCrop() const
{
    KelPictureSheet sheet(3);
    const QSize size(230, 260);
    KelGPXTrackSelection tracks = northernTour();
    const KelGeoPositionRect north = area(52.0, 5.0, 61.0, 16.0);
    const KelMapSketch sketch(tracks, north, size, KelMapSketch::World);
    sheet.add(QStringLiteral("render(Normal)"), KelMapSketch::chequered(sketch.render(KelMapSketch::Normal)));
    sheet.add(QStringLiteral("render(Foreground)"), KelMapSketch::chequered(sketch.render(KelMapSketch::Foreground)));
    sheet.add(QStringLiteral("Normal on the map"), sketch.picture());
    for (int opacity : {128, 48, 0}) {
        tracks.setCroppingOpacity(opacity);
        const KelMapSketch cropping(tracks, north, size, KelMapSketch::World);
        sheet.add(QStringLiteral("crop, opacity %1").arg(opacity),
                  KelMapSketch::chequered(cropping.crop(cropping.picture())));
    }
    return sheet.save(m_folder.filePath(QStringLiteral("halo-and-crop.png")));
}

bool KelTrackPictures::drawDateLine() const
{
    KelPictureSheet sheet(2);
    const KelGPXTrackSelection pacific = flight(WELLINGTON, LOS_ANGELES);
    const QSize size(360, 300);
    sheet.add(QStringLiteral("the area crosses the date line"),
              KelMapSketch(pacific, area(-50, 150, 50, -100), size, KelMapSketch::World).picture());
    sheet.add(QStringLiteral("the area ends at the date line"),
              KelMapSketch(pacific, area(-65, -180, 65, 180), size, KelMapSketch::World).picture());
    return sheet.save(m_folder.filePath(QStringLiteral("date-line.png")));
}

bool KelTrackPictures::drawWorldCopies() const
{
    KelPictureSheet sheet(1);
    sheet.add(QStringLiteral("one track, as often as its world is seen"),
              KelMapSketch(flight(WELLINGTON, LOS_ANGELES), area(-70, -180, 80, 180), QSize(740, 190), KelMapSketch::World)
                  .picture());
    return sheet.save(m_folder.filePath(QStringLiteral("world-copies.png")));
}

bool KelTrackPictures::drawEnclaves() const
{
    KelPictureSheet sheet(2);
    const QUrl file = QUrl::fromLocalFile(QStringLiteral(KEL_EXAMPLE_TRACKS "/polygon-with-enclave.gpx"));
    const KelGPXConfiguredTrackList read = KelTrackSelectionFactory::instance().createConfiguredTrackList(file);
    KelGPXTrackConfiguration outline = style(3);
    outline.setFillColor(QColor(0xe6, 0x7e, 0x22, 110));
    outline.setTrackShape(TrackShapePolygon);
    KelGPXTrackConfiguration filled = outline;
    filled.setCurrentDisplayOptions(KelGPXTrackDisplayOptions(DisplayStroke | DisplayFill));
    for (const KelGPXTrackConfiguration &configuration : {outline, filled}) {
        KelGPXTrackSelection tracks(read);
        tracks.setConfiguration(configuration);
        const KelMapSketch sketch(tracks, tracks.boundingBox().withPadding(10), QSize(300, 220), KelMapSketch::Plain);
        sheet.add(configuration.currentDisplayOptions().encode(), sketch.picture());
    }
    return sheet.save(m_folder.filePath(QStringLiteral("enclaves.png")));
}

bool KelTrackPictures::drawScaleBar() const
{
    KelPictureSheet sheet(2);
    const QList<KelGeoPositionRect> areas{area(53.35, 7.6, 53.95, 8.9), area(50, 5, 56, 15), area(-60, -180, 70, 180)};
    for (const KelGeoPositionRect &shown : areas) {
        const KelMapSketch sketch(KelGPXTrackSelection(), shown, QSize(360, 200), KelMapSketch::World);
        QImage picture = sketch.map();
        // The bar's own lengths are multiplied by the factor: it wants to know the picture at factor 1.
        KelOsmScaleRenderer(sketch.pixelsPerKilometre() / 0.5, picture.size() / 0.5).renderScale(&picture, 0.5);
        Credit().renderCopyRight(&picture, 0.5);
        sheet.add(QStringLiteral("paint factor 0.5"), picture);
    }
    const KelMapSketch sketch(KelGPXTrackSelection(), areas.at(1), QSize(360, 200), KelMapSketch::World);
    QImage thumbnail = sketch.map();
    KelOsmScaleRenderer(sketch.pixelsPerKilometre() / 0.09, thumbnail.size() / 0.09).renderScale(&thumbnail, 0.09);
    Credit().renderCopyRight(&thumbnail, 0.09);
    sheet.add(QStringLiteral("paint factor 0.09: too small for text"), thumbnail);
    return sheet.save(m_folder.filePath(QStringLiteral("scale-bar.png")));
}
