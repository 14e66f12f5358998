// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Compact point text: reading it against std::from_chars on the same numbers, writing it against std::to_chars and
// the copy into a QString. The argument is how many fields a tuple has: longitude, latitude, elevation, time.

#include "KelBenchTracks.h"

#include <KelGPXTrackSegment.h>

#include <QDateTime>
#include <QDomDocument>

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstring>
#include <string>
#include <vector>

namespace
{

constexpr int MILLION = 1'000'000;

/// A million recorded points with so many fields.
KelGPXTrackSegment segment(int fields)
{
    KelBenchTracks::Walk walk(5);
    QList<KelGPXTrackPoint> points;
    points.reserve(MILLION);
    for (int i = 0; i < MILLION; ++i) {
        const KelBenchTracks::Point point = walk.next();
        points.append(KelGPXTrackPoint(
            KelGeoPosition(point.latitudeDegrees(), point.longitudeDegrees()),
            fields > 2 ? std::max(1, point.elevation / 10) : 0,
            fields > 3 ? QDateTime::fromSecsSinceEpoch(point.time, Qt::UTC) : QDateTime(), QString()));
    }
    return KelGPXTrackSegment(points);
}

struct PlainPoint
{
    double longitude;
    double latitude;
    int elevation;
    qint64 time;
};

/// The numbers from the bytes of the text, one after the other.
void decode_fromChars(benchmark::State &state)
{
    const std::string text = segment(int(state.range(0))).toKml().toStdString();
    std::vector<PlainPoint> points(MILLION);
    for (auto _ : state) {
        const char *at = text.data();
        const char *const end = at + text.size();
        std::size_t count = 0;
        while (at < end) {
            PlainPoint point{};
            at = std::from_chars(at, end, point.longitude).ptr + 1;
            at = std::from_chars(at, end, point.latitude).ptr;
            if (at < end && *at == ',')
                at = std::from_chars(at + 1, end, point.elevation).ptr;
            if (at < end && *at == ',')
                at = std::from_chars(at + 1, end, point.time).ptr;
            ++at;
            points[count++] = point;
        }
        if (count != MILLION)
            state.SkipWithError("not all points were read");
        benchmark::DoNotOptimize(points.data());
    }
}

/// Down to the finished points, and their end.
void decode_decodeTrackPoints(benchmark::State &state)
{
    const QString text = segment(int(state.range(0))).toKml();
    for (auto _ : state) {
        const QList<KelGPXTrackPoint> points = KelGPXTrackSegment::decodeTrackPoints(text);
        if (points.size() != MILLION)
            state.SkipWithError("not all points were read");
    }
}

/// Ten decimals without the zeros at the end, all into one array that is copied into a QString.
void encode_toChars(benchmark::State &state)
{
    const QList<KelGPXTrackPoint> points = segment(int(state.range(0))).trackPoints();
    std::vector<PlainPoint> plain;
    for (const KelGPXTrackPoint &point : points) {
        plain.push_back({point.position().longitude().decimalDegrees(), point.position().latitude().decimalDegrees(),
                         point.elevation(), point.timeStamp().isValid() ? point.timeStamp().toMSecsSinceEpoch() : 0});
    }
    std::vector<char> buffer(MILLION * 64);
    for (auto _ : state) {
        char *at = buffer.data();
        char *const end = at + buffer.size();
        const auto coordinate = [&at, end](double degrees) {
            at = std::to_chars(at, end, degrees, std::chars_format::fixed, 10).ptr;
            while (at[-1] == '0')
                --at;
        };
        for (const PlainPoint &point : plain) {
            coordinate(point.longitude);
            *at++ = ',';
            coordinate(point.latitude);
            if (point.elevation != 0) {
                *at++ = ',';
                at = std::to_chars(at, end, point.elevation).ptr;
            }
            if (point.time != 0) {
                *at++ = ',';
                at = std::to_chars(at, end, point.time).ptr;
            }
            *at++ = '\n';
        }
        benchmark::DoNotOptimize(QString::fromLatin1(buffer.data(), at - buffer.data() - 1));
    }
}

void encode_toKml(benchmark::State &state)
{
    const KelGPXTrackSegment points = segment(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(points.toKml());
}

void encode_toXml(benchmark::State &state)
{
    const KelGPXTrackSegment points = segment(int(state.range(0)));
    for (auto _ : state) {
        QDomDocument document;
        QDomElement root = document.createElement(QStringLiteral("trk"));
        points.toXml(root);
        benchmark::DoNotOptimize(root);
    }
}

void timed(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(2)->Arg(3)->Arg(4)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
}

BENCHMARK(decode_fromChars)->Apply(timed);
BENCHMARK(decode_decodeTrackPoints)->Apply(timed);
BENCHMARK(encode_toChars)->Apply(timed);
BENCHMARK(encode_toKml)->Apply(timed);
BENCHMARK(encode_toXml)->Apply(timed);

} // namespace

BENCHMARK_MAIN();
