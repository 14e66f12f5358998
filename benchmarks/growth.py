#!/usr/bin/env python3
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
"""Draws the growth of time and memory with the number of points, from the figures that compare.sh --growth stores.

    benchmarks/growth.py docs/pictures/growth.csv docs/pictures/growth.svg
"""

import csv
import math
import sys

COLORS = ('#1f6fb4', '#d1622b', '#3c8d40', '#8a4fb0')
WIDTH, HEIGHT = 900, 400
TOP, BOTTOM, LEFT, GAP, PANEL = 48, 96, 64, 84, 340


class Panel:
    """One diagram: both axes logarithmic, so that proportional growth is a straight line at 45 degrees to the grid."""

    def __init__(self, left, title, counts, values):
        self.left, self.title = left, title
        self.x_range = math.log10(min(counts)), math.log10(max(counts))
        self.y_range = math.floor(math.log10(min(values))), math.ceil(math.log10(max(values)))

    def at(self, count, value):
        across = (math.log10(count) - self.x_range[0]) / (self.x_range[1] - self.x_range[0])
        up = (math.log10(value) - self.y_range[0]) / (self.y_range[1] - self.y_range[0])
        return self.left + across * PANEL, HEIGHT - BOTTOM - up * (HEIGHT - TOP - BOTTOM)

    def grid(self):
        yield f'<text x="{self.left}" y="{TOP - 18}" font-weight="bold">{self.title}</text>'
        for exponent in range(round(self.x_range[0]), round(self.x_range[1]) + 1):
            x, _ = self.at(10 ** exponent, 10 ** self.y_range[0])
            yield f'<line x1="{x:.1f}" y1="{TOP}" x2="{x:.1f}" y2="{HEIGHT - BOTTOM}" class="grid"/>'
            yield f'<text x="{x:.1f}" y="{HEIGHT - BOTTOM + 18}" text-anchor="middle">{10 ** exponent:,}</text>'
        for exponent in range(self.y_range[0], self.y_range[1] + 1):
            _, y = self.at(10 ** self.x_range[0], 10 ** exponent)
            yield f'<line x1="{self.left}" y1="{y:.1f}" x2="{self.left + PANEL}" y2="{y:.1f}" class="grid"/>'
            yield f'<text x="{self.left - 6}" y="{y + 4:.1f}" text-anchor="end">{10 ** exponent:g}</text>'

    def curve(self, points, color):
        path = ' '.join(f'{x:.1f},{y:.1f}' for x, y in (self.at(*point) for point in points))
        yield f'<polyline points="{path}" fill="none" stroke="{color}" stroke-width="2"/>'
        for point in points:
            x, y = self.at(*point)
            yield f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3.5" fill="{color}"/>'


def draw(rows):
    works = list(dict.fromkeys(row['work'] for row in rows))
    counts = [int(row['points']) for row in rows]
    columns = (('cpu seconds', 'CPU time in seconds, by number of points'),
               ('peak MiB', 'Peak memory in MiB, by number of points'))
    yield (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" width="{WIDTH}" '
           f'height="{HEIGHT}" font-family="sans-serif" font-size="12" fill="#222">')
    # REUSE-IgnoreStart
    yield '<!-- SPDX-FileCopyrightText: The libKelGeoLocation authors -->'
    yield '<!-- SPDX-License-Identifier: MIT -->'
    # REUSE-IgnoreEnd
    yield '<style>.grid { stroke: #d8d8d8; stroke-width: 1 }</style>'
    yield f'<rect width="{WIDTH}" height="{HEIGHT}" fill="#ffffff"/>'
    for i, (column, title) in enumerate(columns):
        panel = Panel(LEFT + i * (PANEL + GAP), title, counts, [float(row[column]) for row in rows])
        yield from panel.grid()
        for work, color in zip(works, COLORS):
            yield from panel.curve([(int(row['points']), float(row[column])) for row in rows if row['work'] == work],
                                   color)
    for i, (work, color) in enumerate(zip(works, COLORS)):
        x = LEFT + i * 190
        yield f'<circle cx="{x}" cy="{HEIGHT - 34}" r="5" fill="{color}"/>'
        yield f'<text x="{x + 12}" y="{HEIGHT - 30}">{work}</text>'
    yield '</svg>'


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    with open(sys.argv[1], newline='', encoding='utf-8') as file:
        rows = list(csv.DictReader(line for line in file if not line.startswith('#')))
    with open(sys.argv[2], 'w', encoding='utf-8') as file:
        file.write('\n'.join(draw(rows)) + '\n')


if __name__ == '__main__':
    main()
