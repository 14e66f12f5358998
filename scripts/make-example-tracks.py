#!/usr/bin/env python3
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
"""Makes the files in examples/tracks. All of them are invented: real places, tracks that nobody ever recorded.

    scripts/make-example-tracks.py [folder]

The same bytes come out every time, the KMZ archive included.
"""

import datetime
import math
import pathlib
import random
import sys
import zipfile

# REUSE-IgnoreStart
HEADER = "<!-- SPDX-FileCopyrightText: The libKelGeoLocation authors -->\n<!-- SPDX-License-Identifier: MIT -->\n"
# REUSE-IgnoreEnd
GPX = ('<?xml version="1.0" encoding="UTF-8"?>\n' + HEADER
       + '<gpx version="1.1" creator="libKelGeoLocation examples" xmlns="http://www.topografix.com/GPX/1/1"{more}>\n')


def smooth(anchors, steps):
    """A curve through the anchors (Catmull-Rom) with that many points between two of them."""
    result = []
    padded = [anchors[0]] + anchors + [anchors[-1]]
    for i in range(len(anchors) - 1):
        p0, p1, p2, p3 = padded[i:i + 4]
        for k in range(steps):
            t = k / steps
            result.append(tuple(
                0.5 * (2 * b + (c - a) * t + (2 * a - 5 * b + 4 * c - d) * t * t + (3 * b - a - 3 * c + d) * t ** 3)
                for a, b, c, d in zip(p0, p1, p2, p3)))
    return result + [anchors[-1]]


def wander(points, degrees, seed):
    """The points, each a little off the straight way; the first and the last stay."""
    generator = random.Random(seed)
    drift_lat = drift_lon = 0.0
    result = [points[0]]
    for lat, lon in points[1:-1]:
        drift_lat = 0.7 * drift_lat + generator.gauss(0, degrees)
        drift_lon = 0.7 * drift_lon + generator.gauss(0, degrees)
        result.append((lat + drift_lat, lon + drift_lon))
    return result + [points[-1]]


def great_circle(start, end, count):
    def vector(lat, lon):
        lat, lon = math.radians(lat), math.radians(lon)
        return math.cos(lat) * math.cos(lon), math.cos(lat) * math.sin(lon), math.sin(lat)

    a, b = vector(*start), vector(*end)
    angle = math.acos(sum(x * y for x, y in zip(a, b)))
    for i in range(count + 1):
        t = i / count
        wa, wb = math.sin((1 - t) * angle) / math.sin(angle), math.sin(t * angle) / math.sin(angle)
        x, y, z = (wa * p + wb * q for p, q in zip(a, b))
        yield math.degrees(math.asin(z)), math.degrees(math.atan2(y, x))


def kilometres(a, b):
    lat = math.radians((a[0] + b[0]) / 2)
    return 111.2 * math.hypot(b[0] - a[0], (b[1] - a[1]) * math.cos(lat))


def timed_points(points, start, speed, elevation, indent="      "):
    """trkpt elements with elevations and times; speed in km/h."""
    lines = []
    hours = 0.0
    for i, point in enumerate(points):
        if i:
            hours += kilometres(points[i - 1], point) / speed
        time = start + datetime.timedelta(seconds=round(hours * 3600))
        lines.append(f'{indent}<trkpt lat="{point[0]:.6f}" lon="{point[1]:.6f}">'
                     f'<ele>{elevation(i, len(points)):.1f}</ele>'
                     f'<time>{time:%Y-%m-%dT%H:%M:%SZ}</time></trkpt>\n')
    return "".join(lines)


def city_walk():
    # Around the old town of Oldenburg and through the palace garden.
    anchors = [(53.13793, 8.21650), (53.13860, 8.21455), (53.13957, 8.21360), (53.14085, 8.21345), (53.14190, 8.21240),
               (53.14275, 8.21420), (53.14230, 8.21640), (53.14130, 8.21790), (53.13985, 8.21895), (53.13870, 8.21960),
               (53.13750, 8.22045), (53.13610, 8.21990), (53.13475, 8.21845), (53.13365, 8.21610), (53.13340, 8.21330),
               (53.13450, 8.21170), (53.13585, 8.21260), (53.13660, 8.21440), (53.13715, 8.21580), (53.13788, 8.21652)]
    points = wander(smooth(anchors, 9), 0.00004, 1)
    start = datetime.datetime(2024, 5, 11, 9, 30)
    text = GPX.format(more="") + "  <trk>\n    <name>Morning walk in Oldenburg</name>\n    <trkseg>\n"
    text += timed_points(points, start, 4.4, lambda i, n: 5.0 + 2.5 * math.sin(i / 17.0) + 0.4 * math.sin(i / 3.1))
    return text + "    </trkseg>\n  </trk>\n</gpx>\n"


def long_ride():
    # From the North Sea to Lake Constance in five days; every night the device was switched off.
    days = [
        [(53.868, 8.706), (53.545, 8.580), (53.300, 8.640), (53.079, 8.801), (52.900, 9.020), (52.635, 9.208)],
        [(52.628, 9.215), (52.510, 9.460), (52.374, 9.738), (52.150, 9.950), (51.900, 9.820), (51.533, 9.935)],
        [(51.528, 9.940), (51.320, 9.700), (51.060, 9.710), (50.870, 9.710), (50.555, 9.675), (50.300, 9.790)],
        [(50.295, 9.795), (50.050, 9.930), (49.794, 9.930), (49.570, 10.060), (49.378, 10.180), (49.070, 10.320)],
        [(49.062, 10.325), (48.850, 10.490), (48.570, 10.230), (48.401, 9.988), (48.060, 9.800), (47.780, 9.610),
         (47.555, 9.685)],
    ]
    text = GPX.format(more="") + "  <trk>\n    <name>From the sea to the lake</name>\n"
    text += "    <desc>Five days by bicycle</desc>\n"
    for day, anchors in enumerate(days):
        points = wander(smooth(anchors, 14), 0.006, 10 + day)
        start = datetime.datetime(2024, 7, 1 + day, 7, 45)
        low, high = [(1, 20), (25, 150), (150, 290), (250, 420), (400, 560)][day]
        text += "    <trkseg>\n" + timed_points(
            points, start, 19.0, lambda i, n: low + (high - low) * i / n + 18 * math.sin(i / 5.0)) + "    </trkseg>\n"
    return text + "  </trk>\n</gpx>\n"


def date_line_flight():
    auckland, honolulu, san_francisco = (-37.008, 174.785), (21.325, -157.925), (37.619, -122.375)
    text = GPX.format(more="") + "  <trk>\n    <name>Auckland to San Francisco by way of Honolulu</name>\n"
    start = datetime.datetime(2024, 10, 3, 20, 15)
    for leg in (great_circle(auckland, honolulu, 48), great_circle(honolulu, san_francisco, 28)):
        points = list(leg)
        text += "    <trkseg>\n" + timed_points(
            points, start, 860.0, lambda i, n: 10600 * min(1.0, 9 * min(i, n - 1 - i) / n)) + "    </trkseg>\n"
        start += datetime.timedelta(hours=11)
    return text + "  </trk>\n</gpx>\n"


def polygon_with_enclave():
    # Roughly the outline of South Africa, around which Lesotho stays free.
    country = [(-28.6, 16.5), (-30.3, 17.3), (-31.7, 18.2), (-32.8, 17.9), (-34.3, 18.5), (-34.8, 20.0), (-34.1, 22.2),
               (-34.1, 24.8), (-33.7, 26.6), (-32.6, 28.5), (-31.1, 30.2), (-29.8, 31.1), (-28.3, 32.5), (-26.9, 32.9),
               (-27.3, 31.9), (-26.4, 30.9), (-25.7, 31.9), (-24.0, 31.9), (-22.4, 31.3), (-22.2, 29.4), (-23.6, 27.0),
               (-25.2, 25.8), (-25.8, 23.9), (-26.9, 22.0), (-26.8, 20.7), (-24.8, 20.0), (-28.4, 20.0), (-28.9, 17.9)]
    enclave = [(-28.6, 28.6), (-28.9, 29.3), (-29.6, 29.3), (-30.1, 28.4), (-30.6, 27.8), (-30.3, 27.3), (-29.6, 27.0),
               (-29.1, 27.5)]

    def segment(points, indent):
        return "".join(f'{indent}<trkpt lat="{lat:.3f}" lon="{lon:.3f}"/>\n' for lat, lon in points + points[:1])

    return (GPX.format(more="") + "  <trk>\n    <name>A country around a country</name>\n    <trkseg>\n"
            + segment(country, "      ") + "    </trkseg>\n    <shape>polygon</shape>\n    <enclaves>\n      <trk>\n"
            + "        <name>The inner country</name>\n"
            + "        <shape>polygon</shape>\n        <trkseg>\n" + segment(enclave, "          ")
            + "        </trkseg>\n      </trk>\n    </enclaves>\n  </trk>\n</gpx>\n")


def planned_route():
    # Around Iceland: a planned route, whose course between its points stands in an extension.
    stops = [("Reykjavik", (64.13, -21.90), [(64.32, -21.95), (64.55, -21.90), (64.80, -21.50), (65.20, -21.10)]),
             ("Blonduos", (65.66, -20.28), [(65.55, -19.45), (65.66, -18.75), (65.70, -18.30)]),
             ("Akureyri", (65.68, -18.10), [(65.70, -17.40), (65.60, -16.90), (65.60, -16.10), (65.40, -15.20)]),
             ("Egilsstadir", (65.26, -14.40), [(64.95, -14.10), (64.65, -14.35), (64.35, -14.95)]),
             ("Hofn", (64.25, -15.21), [(64.05, -16.10), (63.90, -16.70), (63.95, -17.40), (63.78, -18.05)]),
             ("Vik", (63.42, -19.01), [(63.50, -19.50), (63.60, -19.95), (63.85, -20.40), (63.95, -21.10)]),
             ("Reykjavik", (64.13, -21.90), [])]
    text = GPX.format(more='\n     xmlns:gpxx="http://www.garmin.com/xmlschemas/GpxExtensions/v3"')
    text += "  <rte>\n    <name>Around Iceland</name>\n"
    for i, (name, place, via) in enumerate(stops):
        text += f'    <rtept lat="{place[0]:.4f}" lon="{place[1]:.4f}">\n      <name>{name}</name>\n'
        if via:
            points = wander(smooth([place] + via + [stops[i + 1][1]], 6), 0.012, 40 + i)
            text += "      <extensions>\n        <gpxx:RoutePointExtension>\n"
            text += "".join(f'          <gpxx:rpt lat="{lat:.5f}" lon="{lon:.5f}"/>\n' for lat, lon in points)
            text += "        </gpxx:RoutePointExtension>\n      </extensions>\n"
        text += "    </rtept>\n"
    return text + "  </rte>\n</gpx>\n"


def kml_tour():
    def coordinates(points):
        return " ".join(f"{lon:.4f},{lat:.4f},0" for lat, lon in points)

    river = wander(smooth([(-3.74, -73.25), (-3.45, -72.00), (-4.22, -69.94), (-3.00, -67.90), (-3.35, -64.70),
                           (-3.90, -62.00), (-3.13, -60.02), (-2.63, -56.74), (-2.42, -54.71), (-1.75, -52.24),
                           (-1.45, -48.50)], 10), 0.05, 50)
    bus = wander(smooth([(-0.18, -78.47), (-2.90, -79.00), (-5.19, -80.63), (-8.11, -79.03), (-12.05, -77.04),
                         (-13.16, -74.22), (-13.53, -71.97), (-15.84, -70.02), (-16.50, -68.15)], 8), 0.06, 51)
    reserve = [(-1.2, -65.9), (-1.1, -63.9), (-2.2, -62.3), (-3.0, -63.2), (-2.8, -65.0), (-2.0, -66.2)]
    islands = [(-0.2, -51.3), (-0.3, -49.2), (-0.8, -48.6), (-1.6, -49.5), (-1.5, -50.6)]

    def placemark(name, style, geometry, description=""):
        about = f"<description>{description}</description>" if description else ""
        return (f"        <Placemark>\n          <name>{name}</name>{about}\n          <styleUrl>#{style}</styleUrl>\n"
                f"          {geometry}\n        </Placemark>\n")

    def line(points):
        return f"<LineString><tessellate>1</tessellate><coordinates>{coordinates(points)}</coordinates></LineString>"

    def polygon(points):
        return ("<Polygon><outerBoundaryIs><LinearRing><coordinates>" + coordinates(points + points[:1])
                + "</coordinates></LinearRing></outerBoundaryIs></Polygon>")

    def style(name, line_color, width, fill_color=None):
        fill = f"<PolyStyle><color>{fill_color}</color></PolyStyle>" if fill_color else ""
        return (f'    <Style id="{name}"><LineStyle><color>{line_color}</color><width>{width}</width></LineStyle>'
                f"{fill}</Style>\n")

    # Colours are written as alpha, blue, green, red.
    return ('<?xml version="1.0" encoding="UTF-8"?>\n' + HEADER
            + '<kml xmlns="http://www.opengis.net/kml/2.2">\n  <Document>\n    <name>Across South America</name>\n'
            + style("boat", "ffb4641e", 1) + style("bus", "ff2828c8", 1) + style("forest", "ff3c8c28", 0.6, "8050b43c")
            + style("island", "ff8c28a0", 0.6, "80c86edc") + style("town", "ff202020", 1.6, "ff30d0ff")
            + "    <Folder>\n      <name>On the way</name>\n      <Folder>\n        <name>By boat and bus</name>\n"
            + placemark("Down the river", "boat", line(river), "From Iquitos to the sea")
            + placemark("Over the mountains", "bus", line(bus))
            + "      </Folder>\n      <Folder>\n        <name>Places</name>\n"
            + placemark("Manaus", "town", "<Point><coordinates>-60.0200,-3.1300,0</coordinates></Point>")
            + placemark("Cusco", "town", "<Point><coordinates>-71.9700,-13.5300,0</coordinates></Point>")
            + "      </Folder>\n    </Folder>\n    <Folder>\n      <name>Areas</name>\n      <Folder>\n"
            + "        <name>Green</name>\n"
            + placemark("The reserve", "forest", polygon(reserve))
            + placemark("The island in the river's mouth", "island",
                        "<MultiGeometry>" + polygon(islands)
                        + "<Point><coordinates>-49.8,-0.9,0</coordinates></Point></MultiGeometry>")
            + "      </Folder>\n    </Folder>\n  </Document>\n</kml>\n")


def main():
    default = pathlib.Path(__file__).parent.parent / "examples" / "tracks"
    folder = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else default
    folder.mkdir(parents=True, exist_ok=True)
    tour = kml_tour()
    files = {"city-walk.gpx": city_walk(), "long-ride.gpx": long_ride(), "date-line-flight.gpx": date_line_flight(),
             "polygon-with-enclave.gpx": polygon_with_enclave(), "planned-route.gpx": planned_route(), "tour.kml": tour}
    for name, text in files.items():
        (folder / name).write_text(text, encoding="utf-8")
    with zipfile.ZipFile(folder / "tour.kmz", "w") as archive:
        # A fixed time, so that the archive is the same every time.
        entry = zipfile.ZipInfo("doc.kml", (2024, 1, 1, 0, 0, 0))
        entry.compress_type = zipfile.ZIP_DEFLATED
        archive.writestr(entry, tour)
    # REUSE-IgnoreStart
    (folder / "tour.kmz.license").write_text(
        "SPDX-FileCopyrightText: The libKelGeoLocation authors\nSPDX-License-Identifier: MIT\n", encoding="utf-8")
    # REUSE-IgnoreEnd


main()
