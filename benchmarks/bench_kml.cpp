// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Reading KML files, against GDAL's LIBKML driver (peer_gdal), each in a process of its own from its start to its end.
//
//     bench_kml              the ratios for a file of 1M points, with peak memory
//     bench_kml --ratios=N   the same for N points
//     bench_kml --read=kel FILE [POINTS]
//                            reads the file once (.kml or .kmz), for those who measure from outside; it fails if there are
//                            no points, or not so many

#include "KelBenchCost.h"
#include "KelBenchTracks.h"

#include <KelGPXConfiguredTrackList.h>
#include <KelTrackSelectionFactoryKmlFile.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

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

/// Another program, or this one once more, in the place of this process.
bool become(const QStringList &command)
{
    std::vector<QByteArray> arguments;
    for (const QString &argument : command)
        arguments.push_back(argument.toLocal8Bit());
    std::vector<char *> pointers;
    for (QByteArray &argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    execv(pointers.front(), pointers.data());
    return false;
}

void printRatios(int count, const QString &self)
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("track.kml"));
    KelBenchTracks::writeFile(path, KelBenchTracks::Form::Kml, KelBenchTracks::Kind::Plain, count);
    const auto reading = [](const QStringList &command) {
        return KelBenchCost::of([&command] { return become(command); }, 3);
    };
    const QString points = QString::number(count);
    const KelBenchCost gdal = reading({QFileInfo(self).dir().filePath(QStringLiteral("peer_gdal")), path, points});
    const KelBenchCost factory = reading({self, QStringLiteral("--read=kel"), path, points});
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
        if (argument == "--read=kel" && i + 1 < argc) {
            const std::size_t points = readByFactory(QString::fromLocal8Bit(argv[i + 1]));
            const bool isRight = i + 2 < argc ? points == std::strtoull(argv[i + 2], nullptr, 10) : points > 0;
            return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
        }
        if (argument.starts_with("--ratios="))
            count = std::max(1, std::atoi(argv[i] + std::strlen("--ratios=")));
    }
    printRatios(count, QString::fromLocal8Bit(argv[0]));
    return EXIT_SUCCESS;
}
