// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Reading GPX files of ordinary track points (elevation, time, fitness extensions), against expat with the same
// conversions in the same program.
//
//     bench_gpx              times of 10k, 100k and 1M points, then the ratios with peak memory
//     bench_gpx --ratios     the ratios only
//     bench_gpx --ratios=N   the same for N points
//     bench_gpx --read=kel FILE, --read=expat FILE
//                            reads the file once, for those who measure from outside
//
// The files are made in a temporary folder, always the same. Ratios are taken from child processes, one for each run,
// so that each has a peak of its own.

#include "KelBenchCost.h"
#include "KelBenchTracks.h"

#include <KelGPXTrackFile.h>
#include <KelXMLPlainCursor.h>
#include <KelXMLStreamCursor.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <expat.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace
{

/// The file of so many points, made when it is first asked for.
QString trackFile(int count)
{
    static const QTemporaryDir dir;
    static std::map<int, QString> paths;
    QString &path = paths[count];
    if (path.isEmpty()) {
        path = dir.filePath(QStringLiteral("%1.gpx").arg(count));
        KelBenchTracks::writeFile(path, KelBenchTracks::Form::Gpx, KelBenchTracks::Kind::Plain, count);
    }
    return path;
}

/// What a track point holds, without anything around it.
struct PlainPoint
{
    double latitude = 0.0;
    double longitude = 0.0;
    int elevation = 0;
    qint64 time = 0;
};

/// expat with the conversions that the standard library offers.
class ExpatReader
{
public:
    explicit ExpatReader(const QString &path)
    {
        XML_Parser parser = XML_ParserCreate(nullptr);
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, &ExpatReader::start, &ExpatReader::end);
        XML_SetCharacterDataHandler(parser, &ExpatReader::text);
        std::FILE *const file = std::fopen(path.toLocal8Bit().constData(), "rb");
        for (bool isLast = file == nullptr; !isLast;) {
            void *const buffer = XML_GetBuffer(parser, 256 * 1024);
            const std::size_t count = std::fread(buffer, 1, 256 * 1024, file);
            isLast = count == 0;
            if (XML_ParseBuffer(parser, int(count), isLast) != XML_STATUS_OK) {
                m_points.clear();
                break;
            }
        }
        if (file != nullptr)
            std::fclose(file);
        XML_ParserFree(parser);
    }

    [[nodiscard]] const std::vector<PlainPoint> &points() const { return m_points; }

private:
    static double number(std::string_view text)
    {
        double value = 0.0;
        std::from_chars(text.data(), text.data() + text.size(), value);
        return value;
    }

    static int digits(std::string_view text, std::size_t from, std::size_t count)
    {
        int value = 0;
        std::from_chars(text.data() + from, text.data() + from + count, value);
        return value;
    }

    /// Days of the civil calendar since 1970-01-01.
    static qint64 days(qint64 year, qint64 month, qint64 day)
    {
        year -= month <= 2 ? 1 : 0;
        const qint64 era = (year >= 0 ? year : year - 399) / 400;
        const qint64 yearOfEra = year - era * 400;
        const qint64 dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
        return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
    }

    static void start(void *self, const XML_Char *name, const XML_Char **attributes)
    {
        auto &reader = *static_cast<ExpatReader *>(self);
        reader.m_text.clear();
        if (std::strcmp(name, "trkpt") != 0)
            return;
        reader.m_point = PlainPoint();
        for (; *attributes != nullptr; attributes += 2) {
            if (std::strcmp(attributes[0], "lat") == 0)
                reader.m_point.latitude = number(attributes[1]);
            else if (std::strcmp(attributes[0], "lon") == 0)
                reader.m_point.longitude = number(attributes[1]);
        }
    }

    static void end(void *self, const XML_Char *name)
    {
        auto &reader = *static_cast<ExpatReader *>(self);
        const std::string_view text = reader.m_text;
        if (std::strcmp(name, "trkpt") == 0) {
            reader.m_points.push_back(reader.m_point);
        } else if (std::strcmp(name, "ele") == 0) {
            reader.m_point.elevation = int(number(text));
        } else if (std::strcmp(name, "time") == 0 && text.size() >= 20) {
            const qint64 day = days(digits(text, 0, 4), digits(text, 5, 2), digits(text, 8, 2));
            reader.m_point.time = day * 86400 + digits(text, 11, 2) * 3600 + digits(text, 14, 2) * 60
                + digits(text, 17, 2);
        }
        reader.m_text.clear();
    }

    static void text(void *self, const XML_Char *characters, int length)
    {
        static_cast<ExpatReader *>(self)->m_text.append(characters, std::size_t(length));
    }

    std::vector<PlainPoint> m_points;
    PlainPoint m_point;
    std::string m_text;
};

std::size_t readByTrackFile(const QString &path)
{
    const KelGPXTrackFile file{QFileInfo(path)};
    std::size_t count = 0;
    for (const KelGPXTrack &track : file.tracks()) {
        for (const KelGPXTrackSegment &segment : track.segments())
            count += std::size_t(segment.count());
    }
    return count;
}

std::size_t readByExpat(const QString &path)
{
    return ExpatReader(path).points().size();
}

/// The values of each point and nothing else: what the cursors cost without the points.
template<typename Cursor>
std::size_t readValues(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    Cursor gpx(&file);
    std::size_t count = 0;
    double sum = 0.0;
    while (gpx.nextChild()) {
        KelXMLCursor &track = gpx.child();
        while (track.nextChild()) {
            KelXMLCursor &segment = track.child();
            while (segment.nextChild()) {
                KelXMLCursor &point = segment.child();
                sum += point.attributeDouble(u"lat", 1.0) + point.attributeDouble(u"lon", 1.0);
                while (point.nextChild()) {
                    if (point.child().name() == u"ele")
                        sum += point.child().textDouble();
                    else if (point.child().name() == u"time")
                        sum += double(point.child().textDateTime().toMSecsSinceEpoch());
                }
                ++count;
            }
        }
    }
    benchmark::DoNotOptimize(sum);
    return gpx.finish() ? count : 0;
}

using Reader = std::size_t (*)(const QString &);

void run(benchmark::State &state, Reader read)
{
    const int count = int(state.range(0));
    const QString path = trackFile(count);
    for (auto _ : state) {
        if (read(path) != std::size_t(count)) {
            state.SkipWithError("not all points were read");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * QFileInfo(path).size());
    state.SetItemsProcessed(state.iterations() * count);
}

BENCHMARK_CAPTURE(run, KelGPXTrackFile, &readByTrackFile)
    ->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(run, expat, &readByExpat)
    ->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(run, KelXMLPlainCursor, &readValues<KelXMLPlainCursor>)
    ->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(run, KelXMLStreamCursor, &readValues<KelXMLStreamCursor>)
    ->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void printRatios(int count)
{
    const QString path = trackFile(count);
    const auto reading = [&path, count](Reader read) {
        return KelBenchCost::of([&path, count, read] { return read(path) == std::size_t(count); }, 3);
    };
    const KelBenchCost idle = KelBenchCost::of([] { return true; }, 3);
    const KelBenchCost expat = reading(&readByExpat);
    const KelBenchCost file = reading(&readByTrackFile);
    const KelBenchCost plain = reading(&readValues<KelXMLPlainCursor>);
    const KelBenchCost stream = reading(&readValues<KelXMLStreamCursor>);
    std::printf("\n%d points, %.1f MB; the best of three processes each\n", count,
                double(QFileInfo(path).size()) * 1e-6);
    std::printf("%-32s %10s %10s %12s\n", "", "CPU s", "of expat", "peak MiB");
    const auto row = [&](const char *name, const KelBenchCost &cost) {
        std::printf("%-32s %10.3f %10.2f %12.1f\n", name, cost.seconds, cost.seconds / expat.seconds, cost.mebibytes);
    };
    row("nothing", idle);
    row("expat with conversions", expat);
    row("KelGPXTrackFile", file);
    row("KelXMLPlainCursor, values only", plain);
    row("KelXMLStreamCursor, values only", stream);
    std::printf("KelGPXTrackFile: CPU %.2f x expat, %.0f bytes of peak memory per point\n",
                file.seconds / expat.seconds, (file.mebibytes - idle.mebibytes) * 1024.0 * 1024.0 / count);
}

} // namespace

int main(int argc, char **argv)
{
    int count = 1000000;
    bool ratiosOnly = false;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument.starts_with("--read=") && i + 1 < argc) {
            const Reader read = argument == "--read=expat" ? &readByExpat : &readByTrackFile;
            return read(QString::fromLocal8Bit(argv[i + 1])) > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
        }
        if (!argument.starts_with("--ratios"))
            continue;
        ratiosOnly = true;
        if (argument.starts_with("--ratios="))
            count = std::max(1, std::atoi(argv[i] + std::strlen("--ratios=")));
    }
    if (!ratiosOnly) {
        benchmark::Initialize(&argc, argv);
        benchmark::RunSpecifiedBenchmarks();
        benchmark::Shutdown();
    }
    printRatios(count);
    return EXIT_SUCCESS;
}
