// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELBENCHTRACKS_H
#define KELBENCHTRACKS_H

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <random>

/// Tracks that nobody ever recorded: the same seed gives the same points on every machine.
namespace KelBenchTracks
{

/// A recorded point in whole numbers, so that its text and its double are beyond doubt.
struct Point
{
    std::int64_t longitude; ///< 10^-7 degrees
    std::int64_t latitude;  ///< 10^-7 degrees
    int elevation;          ///< tenths of a metre
    std::int64_t time;      ///< seconds since 1970
    int heartRate;

    [[nodiscard]] double longitudeDegrees() const { return double(longitude) / 1e7; }
    [[nodiscard]] double latitudeDegrees() const { return double(latitude) / 1e7; }
};

/// A walk, a point every second and every ten metres or so, that stays within three degrees of where it began.
class Walk
{
public:
    explicit Walk(unsigned seed, double longitude = 8.21, double latitude = 53.14375);

    /// Where the walk is, then one step further.
    Point next();

private:
    /// A whole number within plus and minus the limit.
    std::int64_t random(std::int64_t limit);

    std::mt19937 m_random;
    Point m_point;
    std::int64_t m_longitude0;
    std::int64_t m_latitude0;
};

/// "8.2100000", as long as it takes.
void appendDegrees(QByteArray &text, std::int64_t value);

enum class Form {
    Gpx,
    Kml,
    Compact
};

/// What the file holds. The points are divided evenly.
enum class Kind {
    Plain,    ///< one track
    DateLine, ///< one track to and fro across 180 degrees
    Many,     ///< tracks of 1,000 points all over the middle of Europe
    Enclaves  ///< polygons of 1,000 points: a ring and three holes in it, 250 each
};

/// Writes the file in pieces; ends the program when it cannot be written.
void writeFile(const QString &path, Form form, Kind kind, int count, unsigned seed = 5);

} // namespace KelBenchTracks

#endif
