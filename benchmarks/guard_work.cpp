// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// One small piece of work, for callgrind to count the instructions of: guard.sh runs this. Only the work is counted,
// neither the start of the program nor the making of its input.

#include "KelBenchTracks.h"

#include <KelGPXConfiguredTrack.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrackConfiguration.h>
#include <KelGPXTrackFile.h>
#include <KelGPXTrackRenderer.h>
#include <KelGPXTrackSegment.h>
#include <KelGPXTrackSelection.h>
#include <KelTrackSelectionFactoryKmlFile.h>

#include <QColor>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QTemporaryDir>

#include <valgrind/callgrind.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <string>

namespace
{

constexpr int POINTS = 10000;

/// Counts what the work does the second time: the first time also loads and sets up what is kept for ever.
bool counted(const std::function<qsizetype()> &work)
{
    const qsizetype expected = work();
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_TOGGLE_COLLECT;
    const qsizetype result = work();
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_STOP_INSTRUMENTATION;
    return result == expected && result > 0;
}

QString file(const QTemporaryDir &dir, KelBenchTracks::Form form, const char *name)
{
    const QString path = dir.filePath(QString::fromLatin1(name));
    KelBenchTracks::writeFile(path, form, KelBenchTracks::Kind::Plain, POINTS);
    return path;
}

KelGPXTrackSegment segment()
{
    KelBenchTracks::Walk walk(5);
    QList<KelGPXTrackPoint> points;
    for (int i = 0; i < POINTS; ++i) {
        const KelBenchTracks::Point point = walk.next();
        points.append(KelGPXTrackPoint(KelGeoPosition(point.latitudeDegrees(), point.longitudeDegrees()),
                                       point.elevation / 10, QDateTime(), QString()));
    }
    return KelGPXTrackSegment(points);
}

/// Mercator, the walk on some 1,000 pixels.
class Renderer : public KelGPXTrackRenderer
{
public:
    explicit Renderer(const KelGPXTrackSelection &selection)
        : KelGPXTrackRenderer(selection, QSize(1000, 700), 1.0)
    {
    }

    QPointF projectPosition(const KelGeoPosition &position) const override
    {
        const double y = std::log(std::tan(0.7853981633974483 + position.latitude().radians() / 2)) * 57.29577951308232;
        return {(position.longitude().decimalDegrees() - 8.21) * SCALE + 500, 350 - (y - 63.0) * SCALE};
    }

private:
    static constexpr double SCALE = 4000;
};

bool gpx()
{
    const QTemporaryDir dir;
    const QFileInfo path(file(dir, KelBenchTracks::Form::Gpx, "track.gpx"));
    return counted([&path] { return KelGPXTrackFile(path).tracks().size(); });
}

bool kml()
{
    const QTemporaryDir dir;
    const QFileInfo path(file(dir, KelBenchTracks::Form::Kml, "track.kml"));
    const KelTrackSelectionFactoryKmlFile factory;
    return counted([&path, &factory] { return factory.createConfiguredTrackList(path).count(); });
}

bool compact()
{
    const KelGPXTrackSegment points = segment();
    return counted([&points] { return KelGPXTrackSegment::decodeTrackPoints(points.toKml()).size(); });
}

bool stroke()
{
    const KelGPXTrack track(QStringLiteral("track"), QString(), {segment()}, KelGPXTrackShape(TrackShapeLineString));
    const KelGPXTrackConfiguration configuration(
        QColor(0, 0, 255, 200), KelDistance(10.0), QColor(255, 255, 0, 128), KelDistance(4.0),
        KelGPXTrackDisplayOptions(DisplayStroke), KelGPXMarkerShape(MarkerUnknown), KelGPXTrackShape(TrackShapeAuto),
        KelPenStyle(Qt::SolidLine), 100, 1);
    const KelGPXTrackSelection selection(
        KelGPXConfiguredTrackList({KelGPXConfiguredTrack(track, configuration)}));
    const Renderer renderer(selection);
    return counted([&renderer] { return renderer.render(KelGPXTrackRenderer::Normal).sizeInBytes(); });
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const std::map<std::string, bool (*)()> work{
        {"gpx", &gpx}, {"kml", &kml}, {"compact", &compact}, {"stroke", &stroke}};
    const auto wanted = argc == 2 ? work.find(argv[1]) : work.end();
    if (wanted == work.end()) {
        std::fputs("usage: guard_work <gpx|kml|compact|stroke>\n", stderr);
        return 2;
    }
    return wanted->second() ? 0 : 1;
}
