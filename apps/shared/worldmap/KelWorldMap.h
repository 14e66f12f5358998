// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELWORLDMAP_H
#define KELWORLDMAP_H

#include <QByteArray>
#include <QString>

#include <span>
#include <vector>

/// The outlines of the world's lands and countries that are compiled into the programs.
///
/// Places are in units of the Mercator world's side: x from 0 at 180° west to 1 at 180° east, y from 0 in the
/// north to 1 in the south. An outline that crosses the date line runs on beyond 0 or 1 and has to be drawn on
/// every copy of the world that it reaches into. Latitudes stop at ±89.9°.
///
/// Every outline and every point has a level of detail, 0 to 3: the coarsest level at which it is worth drawing.
/// The data's origin and form: PROVENANCE.md and scripts/convert-world-map.py.
class KelWorldMap
{
public:
    enum Kind { Land = 0, Hole = 1, PolarLand = 2, Border = 3 };
    static constexpr int FINEST_LEVEL = 3;

    struct Vertex
    {
        double x;
        double y;
        bool onDateLine; ///< the point lies on the date line, where the source cut lands in two
        unsigned char level;
    };

    /// Land and Hole are closed rings (the first point is not repeated). PolarLand is the coast around the south
    /// pole, open: its ends are one world apart and are to be joined through the pole. Border is an open line.
    struct Outline
    {
        Kind kind;
        int level;
        std::span<const Vertex> vertices;
        double west; ///< bounds, x
        double east;
        double north; ///< bounds, y
        double south;
    };

    /// The compiled-in world; unpacked on first use, from any thread.
    static const KelWorldMap &instance();

    /// Unpacks a file made by scripts/convert-world-map.py. Damaged data give a map without outlines.
    explicit KelWorldMap(const QByteArray &file);

    KelWorldMap(const KelWorldMap &) = delete; // the outlines point into the vertices
    KelWorldMap &operator=(const KelWorldMap &) = delete;

    [[nodiscard]] const std::vector<Outline> &outlines() const noexcept { return m_outlines; }
    /// The coarsest level whose smallest details are no larger than about a pixel.
    [[nodiscard]] static int levelForScale(double pixelsPerDegree) noexcept;
    /// What the makers of the data ask for: "Made with Natural Earth."
    [[nodiscard]] static QString credit();

private:
    bool read(const QByteArray &data);

    std::vector<Vertex> m_vertices;
    std::vector<Outline> m_outlines;
};

#endif
