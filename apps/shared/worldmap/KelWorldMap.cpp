// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelWorldMap.h"

#include <KelMapProjection.h>

#include <QFile>

#include <algorithm>
#include <cmath>
#include <limits>

// Resources of a static library are only linked in when somebody asks for them; outside every namespace.
static void initializeWorldMapResource()
{
    Q_INIT_RESOURCE(kelworldmap);
}

namespace
{

constexpr char MAGIC[] = "KELMAP1\n";
constexpr double HIGHEST_LATITUDE = 89.9;
// Side of the smallest detail of levels 0 to 2, degrees: the square roots of LEVEL_AREAS in the script.
constexpr double DETAIL_DEGREES[] = {0.173, 0.063, 0.028};
constexpr double PIXELS_PER_DETAIL = 1.3;

/// Reads the numbers of the unpacked file. Reading past the end gives zeros and remembers it.
class Reader
{
public:
    explicit Reader(const QByteArray &data)
        : m_data(data)
    {
    }

    quint32 number()
    {
        quint32 result = 0;
        for (int shift = 0; shift < 32; shift += 7) {
            const auto byte = static_cast<quint32>(this->byte());
            result |= (byte & 0x7f) << shift;
            if (byte < 0x80)
                return result;
        }
        m_failed = true;
        return 0;
    }
    qint32 signedNumber()
    {
        const quint32 zigzag = number();
        return static_cast<qint32>(zigzag >> 1) ^ -static_cast<qint32>(zigzag & 1);
    }
    unsigned char byte()
    {
        if (m_position >= m_data.size()) {
            m_failed = true;
            return 0;
        }
        return static_cast<unsigned char>(m_data.at(m_position++));
    }
    [[nodiscard]] bool failed() const { return m_failed; }
    [[nodiscard]] qsizetype left() const { return m_data.size() - m_position; }

private:
    QByteArray m_data;
    qsizetype m_position = 0;
    bool m_failed = false;
};

/// The projection of latitudes in whole steps of a grid. It is most of the work of unpacking, and points share their
/// latitudes with others.
class LatitudeTable
{
public:
    explicit LatitudeTable(double grid)
        : m_grid(grid)
        , m_highest(static_cast<qint32>(HIGHEST_LATITUDE * std::min(grid, FINEST_GRID)))
        , m_normalized(2 * static_cast<size_t>(m_highest) + 1, UNKNOWN)
    {
    }

    double normalized(qint32 steps)
    {
        if (std::abs(static_cast<double>(steps)) > m_highest)
            return project(steps);
        double &result = m_normalized[static_cast<size_t>(steps + m_highest)];
        if (result == UNKNOWN)
            result = project(steps);
        return result;
    }

private:
    static constexpr double FINEST_GRID = 10000.0;
    static constexpr double UNKNOWN = std::numeric_limits<double>::infinity();

    double project(qint32 steps) const
    {
        return KelMapProjection::latitudeToNormalized(std::clamp(steps / m_grid, -HIGHEST_LATITUDE, HIGHEST_LATITUDE));
    }

    double m_grid;
    qint32 m_highest;
    std::vector<double> m_normalized;
};

} // namespace

const KelWorldMap &KelWorldMap::instance()
{
    static const KelWorldMap map([] {
        initializeWorldMapResource();
        QFile file(QStringLiteral(":/kel/world.kelmap"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }());
    return map;
}

KelWorldMap::KelWorldMap(const QByteArray &file)
{
    if (!file.startsWith(MAGIC) || !read(qUncompress(file.mid(sizeof(MAGIC) - 1)))) {
        m_vertices.clear();
        m_outlines.clear();
    }
}

bool KelWorldMap::read(const QByteArray &data)
{
    Reader reader(data);
    const double grid = reader.number();
    const quint32 count = reader.number();
    if (grid <= 0 || count > data.size())
        return false;

    struct Head
    {
        quint32 kind, level, points;
    };
    std::vector<Head> heads(count);
    size_t total = 0;
    for (Head &head : heads) {
        head = {reader.number(), reader.number(), reader.number()};
        total += head.points;
        if (head.kind > Border || head.level > FINEST_LEVEL || total > static_cast<size_t>(data.size()))
            return false;
    }

    m_vertices.resize(total);
    for (size_t i = 0; i < total; i += 4) {
        const unsigned char levels = reader.byte();
        for (size_t k = i; k < std::min(i + 4, total); ++k)
            m_vertices[k].level = (levels >> 2 * (k - i)) & 3;
    }

    size_t next = 0;
    for (const Head &head : heads) {
        qint32 steps = 0;
        for (size_t end = next + head.points; next < end; ++next) {
            steps += reader.signedNumber();
            m_vertices[next].x = KelMapProjection::longitudeToNormalized(steps / grid);
            m_vertices[next].onDateLine = std::abs(std::abs(steps) - 180 * grid) < 1.5;
        }
    }
    next = 0;
    LatitudeTable latitudes(grid);
    m_outlines.reserve(count);
    for (const Head &head : heads) {
        const size_t first = next;
        qint32 steps = 0;
        for (size_t end = next + head.points; next < end; ++next) {
            steps += reader.signedNumber();
            m_vertices[next].y = latitudes.normalized(steps);
        }
        if (head.points == 0)
            continue;
        const std::span<const Vertex> vertices(m_vertices.data() + first, head.points);
        const auto [west, east] = std::minmax_element(vertices.begin(), vertices.end(),
                                                      [](const Vertex &a, const Vertex &b) { return a.x < b.x; });
        const auto [north, south] = std::minmax_element(vertices.begin(), vertices.end(),
                                                        [](const Vertex &a, const Vertex &b) { return a.y < b.y; });
        m_outlines.push_back({static_cast<Kind>(head.kind), static_cast<int>(head.level), vertices, west->x, east->x,
                              north->y, south->y});
    }
    return !reader.failed() && reader.left() == 0;
}

int KelWorldMap::levelForScale(double pixelsPerDegree) noexcept
{
    int level = 0;
    while (level < FINEST_LEVEL && DETAIL_DEGREES[level] * pixelsPerDegree > PIXELS_PER_DETAIL)
        ++level;
    return level;
}

QString KelWorldMap::credit()
{
    return QStringLiteral("Made with Natural Earth.");
}
