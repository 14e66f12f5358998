// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelShapePictures.h"

#include "KelMapSketch.h"
#include "KelPictureSheet.h"

#include <cmath>

namespace
{

const QSize CELL(170, 90);
const QColor PEN(0x1f, 0x5f, 0x99);
const QColor FILL(0xff, 0xc8, 0x57);

KelGPXTrackConfiguration style()
{
    KelGPXTrackConfiguration style = KelGPXTrackConfiguration::defaultValue();
    style.setLineColor(PEN);
    style.setFillColor(FILL);
    style.setLineWidth(6);
    return style;
}

QImage draw(const KelGPXTrack &track, const KelGPXTrackConfiguration &configuration, const QSize &size = CELL)
{
    const KelGPXTrackSelection selection{
        KelGPXConfiguredTrackList(KelGPXConfiguredTrack(track, configuration))};
    const KelGeoPositionRect area(KelGeoPosition(-0.5, 0.5), KelGeoPosition(0.5, 2.5));
    return KelMapSketch(selection, area, size, KelMapSketch::Plain).picture();
}

KelGPXTrack track(const QString &coordinates, const KelGPXTrackShape &shape)
{
    return KelGPXTrack::decodeKml(QStringLiteral("track"), QString(), coordinates, shape);
}

KelGPXTrack wave()
{
    QStringList points;
    for (int i = 0; i <= 60; ++i)
        points.append(QStringLiteral("%1,%2").arg(0.65 + i * 1.7 / 60).arg(0.3 * std::sin(i * 0.21)));
    return track(points.join(QLatin1Char(' ')), TrackShapeLineString);
}

KelGPXTrack area()
{
    return track(QStringLiteral("0.9,-0.35 1.2,0.35 1.7,0.1 2.1,0.35 2.2,-0.3 1.5,-0.1 0.9,-0.35"), TrackShapePolygon);
}

/// A way as a receiver in a town records it, always the same.
KelGPXTrack noisyWay()
{
    QStringList points;
    unsigned int random = 7;
    const auto noise = [&random] {
        random = random * 1103515245U + 12345U;
        return (double((random >> 16) & 0x7fff) / 0x7fff - 0.5) * 0.22;
    };
    for (int i = 0; i <= 160; ++i) {
        const double t = i / 160.0;
        points.append(QStringLiteral("%1,%2").arg(0.6 + 1.8 * t + noise() * 0.3).arg(0.3 * std::sin(t * 9.0) + noise()));
    }
    return track(points.join(QLatin1Char(' ')), TrackShapeLineString);
}

} // namespace

KelShapePictures::KelShapePictures(const QDir &folder)
    : m_folder(folder)
{
}

bool KelShapePictures::drawAll() const
{
    return drawMarkers() && drawShapes() && drawPenStyles() && drawDisplayOptions() && drawSmoothing();
}

bool KelShapePictures::drawMarkers() const
{
    KelPictureSheet sheet(5);
    const QList<KelGPXMarkerShape> markers = KelGPXMarkerShape::allPointShapes();
    for (const KelGPXMarkerShape &marker : markers)
        sheet.add(marker.encode(), marker.createImage(QSize(64, 64), 24, PEN, FILL));
    KelGPXTrackConfiguration arrow = style();
    arrow.setMarkerShape(MarkerArrow);
    arrow.setLineWidth(4);
    // Its head needs room beside the line's end.
    const KelGPXTrack way = track(QStringLiteral("0.75,-0.25 1.2,0.1 1.6,-0.05 2.1,0.12"), TrackShapeLineString);
    sheet.add(arrow.markerShape().encode(), draw(way, arrow));
    return sheet.save(m_folder.filePath(QStringLiteral("marker-shapes.png")));
}

bool KelShapePictures::drawShapes() const
{
    KelPictureSheet sheet(4);
    KelGPXTrackConfiguration filled = style();
    filled.setCurrentDisplayOptions(KelGPXTrackDisplayOptions(DisplayStroke | DisplayFill));
    filled.setLineWidth(14);
    sheet.add(QStringLiteral("point"), draw(track(QStringLiteral("1.5,0"), TrackShapePoint), filled));
    sheet.add(QStringLiteral("hop"), draw(track(QStringLiteral("0.8,-0.3 2.2,0.3"), TrackShapeHop), style()));
    sheet.add(QStringLiteral("linestring"), draw(wave(), style()));
    filled.setLineWidth(6);
    sheet.add(QStringLiteral("polygon"), draw(area(), filled));
    return sheet.save(m_folder.filePath(QStringLiteral("track-shapes.png")));
}

bool KelShapePictures::drawPenStyles() const
{
    KelPictureSheet sheet(3);
    const QList<KelPenStyle> styles = KelPenStyle::allStyles();
    for (const KelPenStyle &pen : styles) {
        KelGPXTrackConfiguration configuration = style();
        configuration.setPenStyle(pen);
        sheet.add(pen.key(), draw(wave(), configuration));
    }
    return sheet.save(m_folder.filePath(QStringLiteral("pen-styles.png")));
}

bool KelShapePictures::drawDisplayOptions() const
{
    KelPictureSheet sheet(4);
    const QList<int> options{DisplayStroke, DisplayFill, DisplayStroke | DisplayFill, DisplayNone};
    const KelGPXTrack point = track(QStringLiteral("1.5,0"), TrackShapePoint);
    for (const KelGPXTrack &shown : {area(), point}) {
        for (int option : options) {
            KelGPXTrackConfiguration configuration = style();
            configuration.setCurrentDisplayOptions(KelGPXTrackDisplayOptions(option));
            if (shown.isSinglePoint())
                configuration.setLineWidth(18);
            const QString caption = configuration.currentDisplayOptions().encode();
            sheet.add(caption.isEmpty() ? QStringLiteral("(nothing)") : caption, draw(shown, configuration));
        }
    }
    return sheet.save(m_folder.filePath(QStringLiteral("display-options.png")));
}

bool KelShapePictures::drawSmoothing() const
{
    KelPictureSheet sheet(4);
    for (int steps : {1, 4, 16}) {
        for (int strength : {100, 60, 25, 0}) {
            KelGPXTrackConfiguration configuration = style();
            configuration.setLineWidth(2);
            configuration.setSmoothingStrength(strength);
            configuration.setSmoothingSteps(steps);
            const QString unit = steps == 1 ? QStringLiteral("step") : QStringLiteral("steps");
            sheet.add(QStringLiteral("%1 %, %2 %3").arg(strength).arg(steps).arg(unit), draw(noisyWay(), configuration, {200, 110}));
        }
    }
    return sheet.save(m_folder.filePath(QStringLiteral("smoothing.png")));
}
