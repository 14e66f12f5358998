// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelBenchTracks.h"

#include <QDateTime>
#include <QFile>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace KelBenchTracks
{
namespace
{

constexpr std::int64_t DEGREE = 10'000'000;
constexpr std::int64_t REACH = 3 * DEGREE;
constexpr int POINTS_PER_SEGMENT = 10000;
constexpr int POINTS_PER_TRACK = 1000;
constexpr int POINTS_PER_RING = 250;
constexpr int HOLES = 3;
constexpr int BLOCK = 1'000'000;
constexpr double PI = 3.141592653589793;

/// Appends "%1.%2" of a number of tenths.
void appendTenths(QByteArray &text, int value)
{
    text += value < 0 ? "-" : "";
    text += QByteArray::number(std::abs(value) / 10) + '.' + QByteArray::number(std::abs(value) % 10);
}

/// One way of writing what every file consists of.
class Writer
{
public:
    Writer(const QString &path, Form form)
        : m_file(path)
        , m_form(form)
    {
        if (!m_file.open(QIODevice::WriteOnly))
            qFatal("cannot write %s", qPrintable(path));
        if (form == Form::Kml) {
            m_bytes = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n<Document>\n";
        } else {
            m_bytes = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<gpx version=\"1.1\" creator=\"bench\" xmlns=\"http://www.topografix.com/GPX/1/1\" "
                      "xmlns:gpxtpx=\"http://www.garmin.com/xmlschemas/TrackPointExtension/v1\">\n";
        }
    }

    ~Writer()
    {
        m_bytes += m_form == Form::Kml ? "</Document>\n</kml>\n" : "</gpx>\n";
        m_file.write(m_bytes);
        m_file.close();
        if (m_file.error() != QFileDevice::NoError)
            qFatal("cannot write %s", qPrintable(m_file.fileName()));
    }

    Writer(const Writer &) = delete;
    Writer &operator=(const Writer &) = delete;

    void line(const QByteArray &name, int count, const std::function<Point()> &next)
    {
        beginTrack(name, "linestring");
        if (m_form == Form::Kml)
            m_bytes += "<LineString><coordinates>\n";
        points(count, next);
        if (m_form == Form::Kml)
            m_bytes += "</coordinates></LineString>\n";
        endTrack();
    }

    /// The first ring lies around all others.
    void polygon(const QByteArray &name, const std::vector<std::vector<Point>> &rings)
    {
        beginTrack(name, "polygon");
        m_bytes += m_form == Form::Kml ? "<Polygon>" : "";
        for (std::size_t i = 0; i < rings.size(); ++i)
            ring(rings[i], i == 0);
        if (m_form != Form::Kml && rings.size() > 1)
            m_bytes += "  </enclaves>\n";
        m_bytes += m_form == Form::Kml ? "</Polygon>\n" : "";
        endTrack();
    }

private:
    void beginTrack(const QByteArray &name, const QByteArray &shape)
    {
        if (m_form == Form::Kml) {
            m_bytes += "<Placemark><name>" + name + "</name>\n";
            return;
        }
        m_bytes += " <trk>\n  <name>" + name + "</name>\n";
        if (shape != "linestring")
            m_bytes += "  <shape>" + shape + "</shape>\n";
    }

    void endTrack() { m_bytes += m_form == Form::Kml ? "</Placemark>\n" : " </trk>\n"; }

    void ring(const std::vector<Point> &ring, bool outer)
    {
        auto at = ring.begin();
        const auto next = [&at] { return *at++; };
        if (m_form == Form::Kml) {
            const QByteArray boundary = outer ? "outerBoundaryIs" : "innerBoundaryIs";
            m_bytes += '<' + boundary + "><LinearRing><coordinates>\n";
            points(int(ring.size()), next);
            m_bytes += "</coordinates></LinearRing></" + boundary + ">\n";
        } else if (outer) {
            points(int(ring.size()), next);
            m_bytes += "  <enclaves>\n";
        } else {
            beginTrack("hole", "polygon");
            points(int(ring.size()), next);
            endTrack();
        }
    }

    void points(int count, const std::function<Point()> &next)
    {
        const QByteArray begin = m_form == Form::Gpx ? "  <trkseg>\n"
            : m_form == Form::Compact                ? "  <trkseg><compressedPoints>"
                                                     : "";
        const QByteArray end = m_form == Form::Gpx ? "  </trkseg>\n"
            : m_form == Form::Compact              ? "</compressedPoints></trkseg>\n"
                                                   : "";
        m_bytes += begin;
        for (int i = 0; i < count; ++i) {
            if (i > 0 && i % POINTS_PER_SEGMENT == 0)
                m_bytes += end + begin;
            point(next());
            flush();
        }
        m_bytes += end;
    }

    void point(const Point &point)
    {
        if (m_form != Form::Gpx) {
            appendDegrees(m_bytes, point.longitude);
            m_bytes += ',';
            appendDegrees(m_bytes, point.latitude);
            m_bytes += ',' + QByteArray::number(point.elevation / 10);
            if (m_form == Form::Compact)
                m_bytes += ',' + QByteArray::number(qint64(point.time));
            m_bytes += '\n';
            return;
        }
        m_bytes += "   <trkpt lat=\"";
        appendDegrees(m_bytes, point.latitude);
        m_bytes += "\" lon=\"";
        appendDegrees(m_bytes, point.longitude);
        m_bytes += "\">\n    <ele>";
        appendTenths(m_bytes, point.elevation);
        m_bytes += "</ele>\n    <time>"
            + QDateTime::fromSecsSinceEpoch(point.time, Qt::UTC).toString(Qt::ISODate).toLatin1()
            + "</time>\n    <extensions>\n     <gpxtpx:TrackPointExtension>\n      <gpxtpx:hr>"
            + QByteArray::number(point.heartRate)
            + "</gpxtpx:hr>\n     </gpxtpx:TrackPointExtension>\n    </extensions>\n   </trkpt>\n";
    }

    void flush()
    {
        if (m_bytes.size() < BLOCK)
            return;
        m_file.write(m_bytes);
        m_bytes.clear();
    }

    QFile m_file;
    Form m_form;
    QByteArray m_bytes;
};

/// Somewhere in the middle of Europe.
Walk walkSomewhere(unsigned seed)
{
    std::mt19937 random(seed);
    const double longitude = 6.0 + double(random() % 10000) / 1000.0;
    const double latitude = 46.0 + double(random() % 7000) / 1000.0;
    return Walk(seed, longitude, latitude);
}

std::vector<Point> ringAround(double longitude, double latitude, double radius, int count)
{
    std::vector<Point> ring;
    for (int i = 0; i < count; ++i) {
        const double angle = 2 * PI * double(i % (count - 1)) / (count - 1); // ends where it began
        const double distance = radius * (1 + 0.1 * std::sin(23 * angle));
        ring.push_back({std::int64_t((longitude + distance * std::cos(angle)) * double(DEGREE)),
                        std::int64_t((latitude + distance * std::sin(angle)) * double(DEGREE)), 10, 1700000000 + i,
                        100});
    }
    return ring;
}

void writePolygons(Writer &writer, int count, unsigned seed)
{
    std::mt19937 random(seed);
    for (int i = 0; i < std::max(1, count / (POINTS_PER_RING * (HOLES + 1))); ++i) {
        const double longitude = 6.0 + double(random() % 10000) / 1000.0;
        const double latitude = 46.0 + double(random() % 7000) / 1000.0;
        std::vector<std::vector<Point>> rings{ringAround(longitude, latitude, 0.5, POINTS_PER_RING)};
        for (int hole = 0; hole < HOLES; ++hole) {
            rings.push_back(ringAround(longitude + 0.25 * std::cos(2.1 * hole), latitude + 0.25 * std::sin(2.1 * hole),
                                       0.1, POINTS_PER_RING));
        }
        writer.polygon("polygon " + QByteArray::number(i), rings);
    }
}

} // namespace

Walk::Walk(unsigned seed, double longitude, double latitude)
    : m_random(seed)
    , m_point{std::int64_t(longitude * double(DEGREE)), std::int64_t(latitude * double(DEGREE)), 120, 1700000000, 110}
    , m_longitude0(m_point.longitude)
    , m_latitude0(m_point.latitude)
{
}

// Not a distribution of the standard library: each has its own.
std::int64_t Walk::random(std::int64_t limit)
{
    return std::int64_t(m_random() % std::uint32_t(2 * limit + 1)) - limit;
}

Point Walk::next()
{
    const Point here = m_point;
    m_point.longitude = std::clamp(m_point.longitude + random(1500), m_longitude0 - REACH, m_longitude0 + REACH);
    m_point.latitude = std::clamp(m_point.latitude + random(1000), m_latitude0 - REACH, m_latitude0 + REACH);
    m_point.elevation = std::clamp(m_point.elevation + int(random(5)), -200, 9000);
    m_point.time += 1;
    m_point.heartRate = 140 + int(random(30));
    return here;
}

void appendDegrees(QByteArray &text, std::int64_t value)
{
    char buffer[24];
    const std::int64_t size = std::abs(value);
    const int length = std::snprintf(buffer, sizeof buffer, "%s%lld.%07lld", value < 0 ? "-" : "",
                                     static_cast<long long>(size / DEGREE), static_cast<long long>(size % DEGREE));
    text.append(buffer, length);
}

void writeFile(const QString &path, Form form, Kind kind, int count, unsigned seed)
{
    Writer writer(path, form);
    switch (kind) {
    case Kind::Plain: {
        Walk walk(seed);
        writer.line("A long way", count, [&walk] { return walk.next(); });
        break;
    }
    case Kind::DateLine: {
        Walk walk(seed, 180.0, -16.8);
        writer.line("To and fro", count, [&walk] {
            Point point = walk.next();
            point.longitude -= point.longitude > 180 * DEGREE ? 360 * DEGREE : 0;
            return point;
        });
        break;
    }
    case Kind::Many:
        for (int i = 0; i < std::max(1, count / POINTS_PER_TRACK); ++i) {
            Walk walk = walkSomewhere(seed + unsigned(i));
            writer.line("track " + QByteArray::number(i), std::min(count, POINTS_PER_TRACK),
                        [&walk] { return walk.next(); });
        }
        break;
    case Kind::Enclaves:
        writePolygons(writer, count, seed);
        break;
    }
}

} // namespace KelBenchTracks
