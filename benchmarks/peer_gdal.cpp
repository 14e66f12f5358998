// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// GDAL's LIBKML driver reads a file once and is asked for the coordinates of every geometry. A program of its own, so that
// nobody else loads GDAL and what it needs:
//
//     peer_gdal <file.kml or file.kmz> [points]
//
// It fails if there are no points, or not so many.

#include <gdal.h>
#include <ogr_api.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace
{

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

std::size_t readByGdal(const char *path)
{
    GDALAllRegister();
    const char *const drivers[] = {"LIBKML", nullptr};
    const GDALDatasetH source = GDALOpenEx(path, GDAL_OF_VECTOR | GDAL_OF_READONLY, drivers,
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

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2 && argc != 3) {
        std::fputs("usage: peer_gdal <file.kml or file.kmz> [points]\n", stderr);
        return 2;
    }
    const std::size_t points = readByGdal(argv[1]);
    const bool isRight = argc == 3 ? points == std::strtoull(argv[2], nullptr, 10) : points > 0;
    return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
}
