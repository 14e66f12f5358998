#!/usr/bin/env python3
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
"""Runs the benchmark programs and the peers and prints the table; started by compare.sh, which see."""

import argparse
import csv
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import zipfile

HERE = pathlib.Path(__file__).resolve().parent


class Cost:
    """What a process cost: CPU (user and system) and elapsed seconds, peak memory in MiB."""

    def __init__(self, cpu, wall, memory):
        self.cpu, self.wall, self.memory = cpu, wall, memory


def run_once(command, environment=None):
    """One process that does nothing else. Ends the program when it fails: a failed run is no measurement."""
    begin = time.monotonic()
    process = subprocess.Popen([str(part) for part in command], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                               env={**os.environ, 'QT_QPA_PLATFORM': 'offscreen', **(environment or {})})
    with process.stderr:
        errors = process.stderr.read()
    _, status, usage = os.wait4(process.pid, 0)
    wall = time.monotonic() - begin
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f'{command}: {errors.decode(errors="replace")}')
    return Cost(usage.ru_utime + usage.ru_stime, wall, usage.ru_maxrss / 1024)


def run_in_turn(commands, repetitions):
    """The best of so many runs of each, in turn, so that a busy moment does not hit one of them alone."""
    best = [Cost(1e9, 1e9, 1e9) for _ in commands]
    for _ in range(repetitions):
        for at, command in enumerate(commands):
            cost = run_once(command)
            best[at] = Cost(min(best[at].cpu, cost.cpu), min(best[at].wall, cost.wall),
                            min(best[at].memory, cost.memory))
    return best


class Table:
    """Prints one row after the other and counts."""

    FORMAT = '{:<50} {:>9} {:>9} {:>4}  {:>9}  {}'

    def __init__(self):
        self.reached = self.missed = 0
        print(self.FORMAT.format('work', 'goal', 'reached', '', 'peak', 'figures'))

    def row(self, name, goal, reached, figures='', memory=None, unit='x'):
        good = reached <= goal
        self.reached += good
        self.missed += not good
        print(self.FORMAT.format(name, f'{goal:g} {unit}', f'{reached:.3g} {unit}', 'yes' if good else 'NO',
                                 f'{memory:.0f} MiB' if memory is not None else '', figures), flush=True)

    def note(self, name, figures, memory=None):
        print(self.FORMAT.format(name, '', '', '', f'{memory:.0f} MiB' if memory is not None else '', figures),
              flush=True)


class Comparison:
    def __init__(self, arguments, folder):
        self.build = pathlib.Path(arguments.build)
        self.quick = arguments.quick
        self.only = arguments.only
        self.growth_file = arguments.growth
        self.folder = pathlib.Path(folder)
        self.million = 100_000 if self.quick else 1_000_000
        self.repetitions = 1 if self.quick else 3
        self.table = Table()

    def program(self, name):
        return self.build / 'benchmarks' / name

    def wanted(self, name):
        return self.only.lower() in name.lower()

    def tracks(self, form, count, kind='plain'):
        """The file of so many points, made when it is first asked for."""
        path = self.folder / f'{kind}-{count}-{form}.{"gpx" if form == "compact" else form}'
        if not path.exists():
            if form == 'kmz':
                with zipfile.ZipFile(path, 'w', zipfile.ZIP_DEFLATED) as archive:
                    archive.write(self.tracks('kml', count, kind), 'doc.kml')
            else:
                run_once([self.program('make_tracks'), form, kind, count, path])
        return path

    def google(self, program, pattern):
        """The best CPU time (of all threads) and elapsed time of each benchmark, in ms."""
        path = self.program(program)
        if not path.exists():
            return {}
        result = subprocess.run(
            [path, f'--benchmark_filter={pattern}', '--benchmark_format=json',
             f'--benchmark_repetitions={self.repetitions}', f'--benchmark_min_time={0.05 if self.quick else 0.2}',
             '--benchmark_enable_random_interleaving=true'],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=True,
            env={**os.environ, 'QT_QPA_PLATFORM': 'offscreen'})
        scale = {'ns': 1e-6, 'us': 1e-3, 'ms': 1.0, 's': 1e3}
        best = {}
        for entry in json.loads(result.stdout)['benchmarks']:
            if entry.get('run_type', 'iteration') != 'iteration':
                continue
            if entry.get('error_occurred'):
                sys.exit(f'{entry["name"]}: {entry["error_message"]}')
            factor = scale[entry['time_unit']]
            old = best.get(entry['name'])
            new = dict(entry, cpu=entry['cpu_time'] * factor, wall=entry['real_time'] * factor)
            if old:
                new['cpu'], new['wall'] = min(new['cpu'], old['cpu']), min(new['wall'], old['wall'])
            best[entry['name']] = new
        return best

    def pairs(self, program, rows):
        """Rows of (name, goal, ours, reference): prefixes of the names of two benchmarks in one program."""
        rows = [row for row in rows if self.wanted(row[0])]
        if not rows:
            return
        pattern = '|'.join(sorted({f'^{name}(/|$)' for row in rows for name in row[2:4]}))
        best = self.google(program, pattern)

        def find(prefix):
            return next((value for name, value in best.items() if name == prefix or name.startswith(prefix + '/')),
                        None)

        for name, goal, ours, reference in rows:
            a, b = find(ours), find(reference)
            if a is None or b is None:
                self.table.note(name, f'not measured: {program} has no {ours if a is None else reference}')
                continue
            self.table.row(name, goal, a['cpu'] / b['cpu'], f'{a["cpu"]:.4g} ms, reference {b["cpu"]:.4g} ms')

    def gpx(self):
        if not self.wanted('GPX reading'):
            return
        path = self.tracks('gpx', self.million)
        kel, expat, babel = run_in_turn([[self.program('bench_gpx'), '--read=kel', path],
                                         [self.program('bench_gpx'), '--read=expat', path],
                                         ['gpsbabel', '-i', 'gpx', '-f', path]], self.repetitions)
        size = path.stat().st_size / 1e6
        self.table.row('GPX reading, of expat with conversions', 0.5, kel.cpu / expat.cpu,
                       f'{kel.cpu:.2f} s, expat {expat.cpu:.2f} s ({expat.memory:.0f} MiB); {size:.0f} MB', kel.memory)
        self.table.row('GPX reading, of gpsbabel', 0.2, kel.cpu / babel.cpu,
                       f'gpsbabel {babel.cpu:.2f} s ({babel.memory:.0f} MiB)')
        self.table.row('GPX reading, peak memory', 200, kel.memory,
                       f'{kel.memory * 1024 * 1024 / self.million:.0f} bytes per point', unit='MiB')

    def kml(self):
        for form in ('kml', 'kmz'):
            name = f'{form.upper()} reading, of GDAL\'s LIBKML driver'
            if not self.wanted(name):
                continue
            if not self.program('peer_gdal').exists():
                self.table.note(name, 'not measured: GDAL is not installed')
                continue
            path = self.tracks(form, self.million)
            kel, gdal = run_in_turn([[self.program('bench_kml'), '--read=kel', path],
                                     [self.program('peer_gdal'), path]], self.repetitions)
            self.table.row(name, 0.55, kel.cpu / gdal.cpu,
                           f'{kel.cpu:.2f} s, GDAL {gdal.cpu:.2f} s ({gdal.memory:.0f} MiB)', kel.memory)

    def text(self):
        rows = []
        for fields in (2, 3, 4):
            rows.append((f'decodeTrackPoints, {fields} fields, of from_chars', 2.0,
                         f'decode_decodeTrackPoints/{fields}', f'decode_fromChars/{fields}'))
        for fields in (2, 3, 4):
            for name in ('toKml', 'toXml'):
                rows.append((f'segment {name}, {fields} fields, of to_chars', 1.0,
                             f'encode_{name}/{fields}', f'encode_toChars/{fields}'))
        self.pairs('bench_text', rows)

    def render_program(self):
        line = ['--no-map', '--no-scale', '--no-attribution', '--size', '1920x1080', '--line-width', '10',
                '--line-color', '#0000ff']
        kel_render = self.build / 'bin' / 'kel-render'
        plugins = subprocess.run(['mapnik-config', '--input-plugins'], stdout=subprocess.PIPE, check=True,
                                 text=True).stdout.strip()
        for form, layer, goal in (('gpx', 'tracks', 0.15), ('kml', 'A long way', 0.6)):
            name = f'kel-render, {form.upper()} to PNG, of Mapnik'
            if not self.wanted(name):
                continue
            path = self.tracks(form, self.million)
            layer = self.layer_of(path, layer)
            ours, mapnik = run_in_turn(
                [[kel_render, *line, path, '-o', self.folder / 'kel.png'],
                 [self.program('peer_mapnik'), plugins, path, layer, self.folder / 'mapnik.png']],
                self.repetitions)
            self.table.row(name, goal, ours.cpu / mapnik.cpu,
                           f'{ours.cpu:.2f} s, Mapnik {mapnik.cpu:.2f} s ({mapnik.memory:.0f} MiB)', ours.memory)
        if self.wanted('kel-render, first pixel of 10k points'):
            path = self.tracks('gpx', 10_000)
            (cost,) = run_in_turn([[kel_render, '--size', '1920x1080', path, '-o', self.folder / 'kel.png']],
                                  5 * self.repetitions)
            self.table.row('kel-render, first pixel of 10k points', 150, cost.wall * 1000,
                           f'elapsed, with the map of the world; CPU {cost.cpu * 1000:.0f} ms', cost.memory, 'ms')

    @staticmethod
    def layer_of(path, default):
        """GDAL names a layer of a KML file after its folder, or after nothing."""
        text = subprocess.run(['ogrinfo', '-q', path], stdout=subprocess.PIPE, check=True, text=True).stdout
        names = [line.split(': ', 1)[1].rsplit(' (', 1)[0] for line in text.splitlines() if ': ' in line]
        return default if default in names or not names else names[0]

    def points(self):
        """This program measures its rows itself, work and reference in turn."""
        program = self.program('bench_points')
        if not program.exists() or not self.wanted('points, path, distance, tracks'):
            return
        result = subprocess.run([program, '--ratios'], stdout=subprocess.PIPE, check=True, text=True,
                                env={**os.environ, 'QT_QPA_PLATFORM': 'offscreen'})
        line = re.compile(r'^(\S.*?) +([\d.]+) +([\d.]+) +(B|ms|ms CPU) +([\d.]+) +([\d.]+) (?:reached|MISSED)$', re.MULTILINE)
        for name, ours, reference, unit, ratio, goal in line.findall(result.stdout):
            absolute = float(goal) > 10  # an amount, not a ratio
            self.table.row(name, float(goal), float(ratio), f'{ours} {unit}, reference {reference} {unit}',
                           unit=unit.split()[0] if absolute else 'x')

    def growth(self):
        if not self.wanted('growth'):
            return
        counts = [10_000, 100_000] if self.quick else [10_000, 100_000, 1_000_000, 10_000_000]
        kel_render = self.build / 'bin' / 'kel-render'
        work = {
            'GPX reading': lambda count: [self.program('bench_gpx'), '--read=kel', self.tracks('gpx', count)],
            'compact GPX reading': lambda count: [self.program('bench_gpx'), '--read=kel',
                                                  self.tracks('compact', count)],
            'KML reading': lambda count: [self.program('bench_kml'), '--read=kel', self.tracks('kml', count)],
            'kel-render from GPX': lambda count: [kel_render, '--no-map', '--size', '1920x1080',
                                                  self.tracks('gpx', count), '-o', self.folder / 'kel.png'],
        }
        figures = []
        for name, command in work.items():
            per_point = []
            for count in counts:
                (cost,) = run_in_turn([command(count)], 1 if count > 1_000_000 else 3)
                figures.append((name, count, cost.cpu, cost.memory))
                per_point.append((cost.cpu / count, cost.memory / count))
                self.table.note(f'growth: {name}, {count:,} points',
                                f'{cost.cpu:.3f} s, {cost.cpu * 1e6 / count:.3f} us per point', cost.memory)
            # From one million to ten; below, starting the program counts most.
            self.table.row(f'growth: {name}, time per point', 1.25, per_point[-1][0] / per_point[-2][0],
                           f'{counts[-1]:,} against {counts[-2]:,} points')
            self.table.row(f'growth: {name}, memory per point', 1.25, per_point[-1][1] / per_point[-2][1],
                           f'{counts[-1]:,} against {counts[-2]:,} points')
            for path in self.folder.glob(f'*-{counts[-1]}-*'):
                if name == list(work)[-1] or 'compact' in path.name or 'kml' in path.name:
                    path.unlink()
        if self.growth_file:
            with open(self.growth_file, 'w', newline='', encoding='utf-8') as file:
                # REUSE-IgnoreStart
                file.write('# SPDX-FileCopyrightText: The libKelGeoLocation authors\n'
                           '# SPDX-License-Identifier: MIT\n')
                # REUSE-IgnoreEnd
                writer = csv.writer(file, lineterminator='\n')
                writer.writerow(('work', 'points', 'cpu seconds', 'peak MiB'))
                writer.writerows((n, c, f'{t:.3f}', f'{m:.1f}') for n, c, t, m in figures)

    def all(self):
        self.gpx()
        self.kml()
        self.text()
        self.points()
        self.pairs('bench_Rendering', RENDERING_ROWS)
        self.render_program()
        self.growth()
        print(f'{self.table.reached} goals reached, {self.table.missed} missed')


# (name, goal, benchmark, its reference)
RENDERING_ROWS = [
    ('render, stroke, fitted, of one drawPath', 0.17, 'stroke_render/pixels per degree:300',
     'stroke_drawPath/pixels per degree:300'),
    ('render, stroke, zoomed in, of one drawPath', 0.05, 'stroke_render/pixels per degree:3000',
     'stroke_drawPath/pixels per degree:3000'),
    ('render, filled polygon, zoomed in, of one fillPath', 0.25, 'fill_render/pixels per degree:3000',
     'fill_fillPath/pixels per degree:3000'),
    ('crop, 4000x3000, merge, of a pass over the memory', 1.5, 'merge_mergeCropping', 'merge_pass'),
    ('crop, 4000x3000, of the plain form', 0.6, 'crop_crop', 'crop_plain'),
]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('--build', default='build/release')
    parser.add_argument('--quick', action='store_true')
    parser.add_argument('--only', default='')
    parser.add_argument('--growth', metavar='FILE.csv')
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        Comparison(arguments, folder).all()


if __name__ == '__main__':
    main()
