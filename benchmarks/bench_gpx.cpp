// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Reading GPX files of ordinary track points (elevation, time, fitness extensions), against expat with the same
// conversions in the same program.
//
//     bench_gpx              times of 10k, 100k and 1M points, then the ratios with peak memory
//     bench_gpx --ratios     the ratios only
//     bench_gpx --ratios=N   the same for N points
//
// The files are made in a temporary folder, always the same. Ratios are taken from child processes, one for each run,
// so that each has a peak of its own.

#include <KelGPXTrackFile.h>
#include <KelXMLPlainCursor.h>
#include <KelXMLStreamCursor.h>

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <expat.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace
{

/// A walk of `count` points in segments of 10,000; some 230 bytes per point.
void writeTrack(const QString &path, int count)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(path));
    std::mt19937 random(5);
    double latitude = 53.14375;
    double longitude = 8.21;
    double elevation = 12.0;
    qint64 time = 1700000000;
    const auto step = [&random](double width) { return (double(random() % 2001) - 1000.0) / 1000.0 * width; };

    file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<gpx version=\"1.1\" creator=\"bench\" xmlns=\"http://www.topografix.com/GPX/1/1\" "
               "xmlns:gpxtpx=\"http://www.garmin.com/xmlschemas/TrackPointExtension/v1\">\n"
               " <trk>\n  <name>A long way</name>\n  <trkseg>\n");
    QByteArray bytes;
    char line[512];
    for (int i = 0; i < count; ++i) {
        if (i % 10000 == 0 && i > 0)
            bytes += "  </trkseg>\n  <trkseg>\n";
        latitude += step(0.0001);
        longitude += step(0.0001);
        elevation = std::clamp(elevation + step(0.5), -20.0, 900.0);
        const QByteArray stamp = QDateTime::fromSecsSinceEpoch(time++, Qt::UTC).toString(Qt::ISODate).toLatin1();
        std::snprintf(line, sizeof line,
                      " <trkpt lat=\"%.7f\" lon=\"%.7f\">\n  <ele>%.1f</ele>\n  <time>%s</time>\n  <extensions>\n"
                      "   <gpxtpx:TrackPointExtension>\n    <gpxtpx:hr>%u</gpxtpx:hr>\n"
                      "   </gpxtpx:TrackPointExtension>\n  </extensions>\n </trkpt>\n",
                      latitude, longitude, elevation, stamp.constData(), 110 + unsigned(random() % 60));
        bytes += line;
        if (bytes.size() > 1000000) {
            file.write(bytes);
            bytes.clear();
        }
    }
    bytes += "  </trkseg>\n </trk>\n</gpx>\n";
    file.write(bytes);
    file.close();
    if (file.error() != QFileDevice::NoError)
        qFatal("cannot write %s", qPrintable(path));
}

/// The file of so many points, made when it is first asked for.
QString trackFile(int count)
{
    static const QTemporaryDir dir;
    static std::map<int, QString> paths;
    QString &path = paths[count];
    if (path.isEmpty()) {
        path = dir.filePath(QStringLiteral("%1.gpx").arg(count));
        writeTrack(path, count);
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

struct Cost
{
    double seconds = 0.0;
    double megabytes = 0.0;
};

double seconds(const timeval &time)
{
    return double(time.tv_sec) + double(time.tv_usec) * 1e-6;
}

/// CPU time (user and system) and peak memory of a process that does nothing else; the best of `repetitions`.
Cost measure(const std::function<void()> &work, int repetitions)
{
    Cost best{1e9, 1e9};
    for (int i = 0; i < repetitions; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            work();
            _exit(EXIT_SUCCESS);
        }
        int status = 0;
        rusage usage = {};
        if (child < 0 || wait4(child, &status, 0, &usage) != child || status != 0)
            qFatal("a measured process failed");
        best.seconds = std::min(best.seconds, seconds(usage.ru_utime) + seconds(usage.ru_stime));
        best.megabytes = std::min(best.megabytes, double(usage.ru_maxrss) / 1024.0);
    }
    return best;
}

void printRatios(int count)
{
    const QString path = trackFile(count);
    const auto reading = [&path, count](Reader read) {
        return measure(
            [&path, count, read] {
                if (read(path) != std::size_t(count))
                    _exit(EXIT_FAILURE);
            },
            3);
    };
    const Cost idle = measure([] {}, 3);
    const Cost expat = reading(&readByExpat);
    const Cost file = reading(&readByTrackFile);
    const Cost plain = reading(&readValues<KelXMLPlainCursor>);
    const Cost stream = reading(&readValues<KelXMLStreamCursor>);
    std::printf("\n%d points, %.1f MB; the best of three processes each\n", count,
                double(QFileInfo(path).size()) * 1e-6);
    std::printf("%-32s %10s %10s %12s\n", "", "CPU s", "of expat", "peak MiB");
    const auto row = [&](const char *name, const Cost &cost) {
        std::printf("%-32s %10.3f %10.2f %12.1f\n", name, cost.seconds, cost.seconds / expat.seconds, cost.megabytes);
    };
    row("nothing", idle);
    row("expat with conversions", expat);
    row("KelGPXTrackFile", file);
    row("KelXMLPlainCursor, values only", plain);
    row("KelXMLStreamCursor, values only", stream);
    std::printf("KelGPXTrackFile: CPU %.2f x expat, %.0f bytes of peak memory per point\n",
                file.seconds / expat.seconds, (file.megabytes - idle.megabytes) * 1024.0 * 1024.0 / count);
}

} // namespace

int main(int argc, char **argv)
{
    int count = 1000000;
    bool ratiosOnly = false;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
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
