// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Reading KML files, against GDAL's LIBKML driver, which is asked for the coordinates of every geometry.
//
//     bench_kml              the ratios for a file of 1M points, with peak memory
//     bench_kml --ratios=N   the same for N points
//     bench_kml --read=kel FILE, --read=gdal FILE
//                            reads the file once (.kml or .kmz), for those who measure from outside

#include "KelBenchCost.h"
#include "KelBenchTracks.h"

#include <KelGPXConfiguredTrackList.h>
#include <KelTrackSelectionFactoryKmlFile.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gdal.h>
#include <ogr_api.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace
{

std::size_t readByFactory(const QString &path)
{
    std::size_t count = 0;
    const KelGPXConfiguredTrackList tracks = KelTrackSelectionFactoryKmlFile().createConfiguredTrackList(QFileInfo(path));
    for (const KelGPXConfiguredTrack &track : tracks) {
        for (const KelGPXTrackSegment &segment : track.track().segments())
            count += std::size_t(segment.count());
    }
    return count;
}

/// The points of a geometry and of all that it consists of.
std::size_t countPoints(OGRGeometryH geometry)
{
    if (geometry == nullptr)
        return 0;
    const int parts = OGR_G_GetGeometryCount(geometry);
    std::size_t count = 0;
    for (int i = 0; i < parts; ++i)
        count += countPoints(OGR_G_GetGeometryRef(geometry, i));
    return parts > 0 ? count : std::size_t(OGR_G_GetPointCount(geometry));
}

std::size_t readByGdal(const QString &path)
{
    GDALAllRegister();
    const char *const drivers[] = {"LIBKML", nullptr};
    const GDALDatasetH source = GDALOpenEx(path.toLocal8Bit().constData(), GDAL_OF_VECTOR | GDAL_OF_READONLY, drivers,
                                           nullptr, nullptr);
    if (source == nullptr)
        return 0;
    std::size_t count = 0;
    for (int i = 0; i < GDALDatasetGetLayerCount(source); ++i) {
        const OGRLayerH layer = GDALDatasetGetLayer(source, i);
        OGR_L_ResetReading(layer);
        while (const OGRFeatureH feature = OGR_L_GetNextFeature(layer)) {
            count += countPoints(OGR_F_GetGeometryRef(feature));
            OGR_F_Destroy(feature);
        }
    }
    GDALClose(source);
    return count;
}

void printRatios(int count)
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("track.kml"));
    KelBenchTracks::writeFile(path, KelBenchTracks::Form::Kml, KelBenchTracks::Kind::Plain, count);
    const auto reading = [&path, count](std::size_t (*read)(const QString &)) {
        return KelBenchCost::of([&path, count, read] { return read(path) == std::size_t(count); }, 3);
    };
    const KelBenchCost gdal = reading(&readByGdal);
    const KelBenchCost factory = reading(&readByFactory);
    std::printf("%d points, %.1f MB; the best of three processes each\n", count,
                double(QFileInfo(path).size()) * 1e-6);
    std::printf("%-32s %10s %10s %12s\n", "", "CPU s", "of GDAL", "peak MiB");
    const auto row = [&gdal](const char *name, const KelBenchCost &cost) {
        std::printf("%-32s %10.3f %10.2f %12.1f\n", name, cost.seconds, cost.seconds / gdal.seconds, cost.mebibytes);
    };
    row("GDAL, LIBKML", gdal);
    row("KelTrackSelectionFactoryKmlFile", factory);
}

} // namespace

int main(int argc, char **argv)
{
    int count = 1000000;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument.starts_with("--read=") && i + 1 < argc) {
            const QString path = QString::fromLocal8Bit(argv[i + 1]);
            return (argument == "--read=gdal" ? readByGdal(path) : readByFactory(path)) > 0 ? EXIT_SUCCESS
                                                                                            : EXIT_FAILURE;
        }
        if (argument.starts_with("--ratios="))
            count = std::max(1, std::atoi(argv[i] + std::strlen("--ratios=")));
    }
    printRatios(count);
    return EXIT_SUCCESS;
}
