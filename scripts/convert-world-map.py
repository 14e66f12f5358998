#!/usr/bin/env python3
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
"""Makes apps/shared/worldmap/world.kelmap, the world that the programs draw when no other map is given.

Run once, whenever the outlines or this script change; the result is kept in the tree:

    npm install --prefix DIR world-atlas@2.0.2
    scripts/convert-world-map.py DIR/node_modules/world-atlas/countries-10m.json \
        apps/shared/worldmap/world.kelmap

The input is Natural Earth (public domain) as TopoJSON: arcs that countries share, so that a coast and a border
that were thinned here still fit together. Each point is given the coarsest of four levels of detail at which it
still matters (by the area of the triangle that it spans with its neighbours, smallest removed first); the
program draws only the levels that the scale asks for.

The file: "KELMAP1\\n", then the format of qCompress(): the unpacked length as a big-endian 32-bit number and a
zlib stream. Unpacked, all numbers are unsigned LEB128 ("varint"), signed ones zigzag coded:

    grid              steps per degree, both ways
    count             number of outlines
    per outline:
      kind            0 land, 1 hole in land, 2 land around a pole (open; to be closed through the pole), 3 border
      level           the outline is drawn from this level on
      points          number of points
    levels            one byte for four points of all outlines, two bits each, the first in the lowest
    longitudes        steps from the point before, zigzag, each outline counting from 0
    latitudes         likewise

Longitudes of an outline run on across the date line instead of jumping. Rings do not repeat their first point.
"""

import heapq
import json
import math
import struct
import sys
import zlib

GRID = 300  # steps per degree: 370 m, about the accuracy of the source
# Smallest triangle, in square degrees at the equator, that a point must span to be seen from this level on.
LEVEL_AREAS = [3e-2, 4e-3, 8e-4, 2.2e-4]
SMALLEST_ISLAND = 8e-5  # square degrees, about 1 km²


def decode_arcs(topology):
    sx, sy = topology["transform"]["scale"]
    tx, ty = topology["transform"]["translate"]
    arcs = []
    for arc in topology["arcs"]:
        x = y = 0
        points = []
        for step in arc:
            x += step[0]
            y += step[1]
            points.append((x * sx + tx, y * sy + ty))
        arcs.append(points)
    return arcs


def unwrapped(points):
    """The same points with longitudes that run on across the date line."""
    result = []
    offset = 0.0
    for i, (lon, lat) in enumerate(points):
        if i and lon + offset - result[-1][0] > 180:
            offset -= 360
        elif i and lon + offset - result[-1][0] < -180:
            offset += 360
        result.append((lon + offset, lat))
    return result


def plane(point):
    """Between true area and the map's: high latitudes count more, but not as much as Mercator draws them."""
    lon, lat = point
    stretch = math.sqrt(max(math.cos(math.radians(lat)), 0.08))
    return lon * stretch, lat


def triangle(a, b, c):
    (ax, ay), (bx, by), (cx, cy) = plane(a), plane(b), plane(c)
    return abs((bx - ax) * (cy - ay) - (cx - ax) * (by - ay)) / 2


def point_areas(points, closed):
    """For each point the area at which it goes; the ends of an open line never go."""
    n = len(points)
    areas = [math.inf] * n
    if n < 3:
        return areas
    before = [i - 1 for i in range(n)]
    after = [i + 1 for i in range(n)]
    if closed:
        before[0], after[n - 1] = n - 1, 0
    inner = range(n) if closed else range(1, n - 1)
    current = [math.inf] * n
    heap = []
    for i in inner:
        current[i] = triangle(points[before[i]], points[i], points[after[i]])
        heap.append((current[i], i))
    heapq.heapify(heap)
    left = n
    highest = 0.0
    while heap and not (closed and left <= 3):
        area, i = heapq.heappop(heap)
        if area != current[i] or areas[i] != math.inf:
            continue
        highest = max(highest, area)
        areas[i] = highest
        current[i] = -1
        left -= 1
        b, a = before[i], after[i]
        after[b], before[a] = a, b
        for k in (b, a):
            if current[k] != math.inf:
                current[k] = triangle(points[before[k]], points[k], points[after[k]])
                heapq.heappush(heap, (current[k], k))
    return areas


def ring_area(points):
    mapped = [plane(p) for p in points]
    return sum(x1 * y2 - x2 * y1 for (x1, y1), (x2, y2) in zip(mapped, mapped[1:] + mapped[:1])) / 2


def level_of(area):
    for level, limit in enumerate(LEVEL_AREAS):
        if area >= limit:
            return level
    return None


class Outlines:
    def __init__(self, topology):
        self.arcs = decode_arcs(topology)
        self.areas = []
        for arc in self.arcs:
            run = unwrapped(arc)
            closed = len(run) > 3 and run[0] == run[-1]
            if closed:
                areas = point_areas(run[:-1], True)
                areas.append(areas[0])
            else:
                areas = point_areas(run, False)
            self.areas.append(areas)
        self.result = []

    def arc(self, index):
        if index >= 0:
            return list(zip(self.arcs[index], self.areas[index]))
        return list(zip(self.arcs[~index], self.areas[~index]))[::-1]

    def line(self, indices):
        run = []
        for index in indices:
            arc = self.arc(index)
            run += arc if not run else arc[1:]
        points = unwrapped([point for point, _ in run])
        return points, [area for _, area in run]

    def add_ring(self, indices, hole):
        points, areas = self.line(indices)
        turn = points[-1][0] - points[0][0]
        if abs(turn) > 180:  # once around the globe: the coast of a land around a pole
            if turn < 0:
                points, areas = points[::-1], areas[::-1]
            self.add(2, 0, points, areas, 2)
            return
        points, areas = points[:-1], areas[:-1]
        size = ring_area(points)
        if abs(size) < SMALLEST_ISLAND:
            return
        if (size < 0) != hole:
            points, areas = points[::-1], areas[::-1]
        level = level_of(abs(size) * 0.5)
        level = len(LEVEL_AREAS) - 1 if level is None else level
        self.add(1 if hole else 0, level, points, areas, 3)

    def add(self, kind, level, points, areas, least):
        # Enough corners to be something at the first level at which the outline is drawn.
        ranked = sorted(range(len(areas)), key=lambda i: -areas[i])[:least]
        kept = []
        for i, (point, area) in enumerate(zip(points, areas)):
            own = level if i in ranked else level_of(area)
            if own is None:
                continue
            kept.append((round(point[0] * GRID), round(point[1] * GRID), max(own, level)))
        distinct = [kept[0]]
        for point in kept[1:]:
            if point[:2] != distinct[-1][:2]:
                distinct.append(point)
            elif point[2] < distinct[-1][2]:
                distinct[-1] = point
        if kind != 3 and kind != 2 and len(distinct) < 3:
            return
        if len(distinct) < 2:
            return
        self.result.append((kind, level, distinct))


def border_lines(topology, outlines):
    """Arcs that two countries share, joined where one simply runs on into the next."""
    users = {}
    for number, country in enumerate(topology["objects"]["countries"]["geometries"]):
        if country["type"] is None:
            continue
        polygons = country["arcs"] if country["type"] == "MultiPolygon" else [country["arcs"]]
        for polygon in polygons:
            for ring in polygon:
                for index in ring:
                    users.setdefault(index if index >= 0 else ~index, set()).add(number)
    for index in sorted(i for i, countries in users.items() if len(countries) > 1):
        points = outlines.arcs[index]
        points = unwrapped(points)
        if all(abs(abs(lon) - 180) < 0.01 for lon, _ in points):
            continue
        outlines.add(3, 0, points, outlines.areas[index], 2)


def varint(number):
    out = bytearray()
    while number >= 0x80:
        out.append(number & 0x7F | 0x80)
        number >>= 7
    out.append(number)
    return bytes(out)


def zigzag(number):
    return number * 2 if number >= 0 else -number * 2 - 1


def encode(result):
    head = bytearray(varint(GRID) + varint(len(result)))
    levels = []
    longitudes = bytearray()
    latitudes = bytearray()
    for kind, level, points in result:
        head += varint(kind) + varint(level) + varint(len(points))
        x = y = 0
        for px, py, point_level in points:
            levels.append(point_level)
            longitudes += varint(zigzag(px - x))
            latitudes += varint(zigzag(py - y))
            x, y = px, py
    packed = bytes(sum(level << 2 * k for k, level in enumerate(levels[i:i + 4])) for i in range(0, len(levels), 4))
    return bytes(head) + packed + bytes(longitudes) + bytes(latitudes)


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    with open(sys.argv[1], encoding="utf-8") as file:
        topology = json.load(file)
    outlines = Outlines(topology)
    land = topology["objects"]["land"]
    for geometry in land["geometries"] if land["type"] == "GeometryCollection" else [land]:
        polygons = geometry["arcs"] if geometry["type"] == "MultiPolygon" else [geometry["arcs"]]
        for polygon in polygons:
            for number, ring in enumerate(polygon):
                outlines.add_ring(ring, number > 0)
    border_lines(topology, outlines)

    data = encode(outlines.result)
    packed = b"KELMAP1\n" + struct.pack(">I", len(data)) + zlib.compress(data, 9)
    with open(sys.argv[2], "wb") as file:
        file.write(packed)
    for kind, name in enumerate(["land", "holes", "polar", "borders"]):
        lines = [points for k, _, points in outlines.result if k == kind]
        print(f"{name}: {len(lines)} outlines, {sum(map(len, lines))} points", end="; ")
        print("by level", [sum(p[2] == level for points in lines for p in points) for level in range(4)])
    print(f"{len(packed)} bytes ({len(data)} unpacked)")


main()
