# SPDX-License-Identifier: MIT
"""Rows of Google Benchmark's JSON files, ours paired with the peers.

A row's name ends with the library that it measures, as in int/hit/random/1000/KorTools,
BM_Compare_CXTString/8 or BM_Walk<VectorTree>. Ours are those named Kor..., or after one of our
classes: C and another capital. memcpy and a plain loop are limits, not peers.
"""
import dataclasses
import json
import re

OURS = re.compile(r'^(Kor[\w ]*|C[A-Z]\w*)$')
LIMITS = {'memcpy', 'Memcpy', 'plain loop'}
SUFFIX = re.compile(r'/(manual_time|real_time|process_time|min_time:[^/]*|repeats:\d+|iterations:\d+)')
NANOSECONDS = {'ns': 1, 'us': 1e3, 'ms': 1e6, 's': 1e9}


@dataclasses.dataclass
class Row:
    """One of our measurements; times are medians in nanoseconds."""
    label: str
    ours: float
    best: float = None   # of the peers, None without any
    peer: str = ''
    limit: float = None  # of what cannot be undercut

    @property
    def ratio(self):
        """Above 1 we are faster."""
        return self.best / self.ours if self.best else None


class BadMeasurement(Exception):
    pass


def split(name):
    """(row, library) of a benchmark's name."""
    name = SUFFIX.sub('', name)
    classic = re.match(r'^BM_([^/<]*)_([A-Za-z0-9:]+)((?:/.*)?)$', name)
    if classic:
        return classic[1] + classic[3], classic[2]
    template = re.match(r'^(?:BM_)?(\w+)<([\w:]+)>((?:/.*)?)$', name)
    if template:
        return template[1] + template[3], template[2]
    row, _, library = name.rpartition('/')
    return row, library


def read_times(path):
    """{row: {library: nanoseconds}}, in the order of the program: it has measured in random order."""
    with open(path, encoding='utf-8') as file:
        benchmarks = json.load(file)['benchmarks']
    repeated = {each['run_name'] for each in benchmarks if each['run_type'] == 'aggregate'}
    times, order = {}, {}
    for each in benchmarks:
        if each.get('error_occurred'):
            raise BadMeasurement(f"{each['name']}: {each['error_message']}")
        median = each['run_type'] == 'aggregate' and each['aggregate_name'] == 'median'
        if median or each['run_name'] not in repeated:
            row, library = split(each['run_name'])
            times.setdefault(row, {})[library] = each['real_time'] * NANOSECONDS[each['time_unit']]
            place = each['family_index'], each['per_family_instance_index']
            order[row] = min(place, order.get(row, place))
    if not times:
        raise BadMeasurement(f'{path}: no benchmark has run')
    return {row: times[row] for row in sorted(times, key=order.get)}


def pair(times):
    """The rows of what read_times() gives; two where two of our ways are measured."""
    rows = []
    for name, libraries in times.items():
        ours = {library: time for library, time in libraries.items() if OURS.match(library)}
        peers = [(time, library) for library, time in libraries.items()
                 if library not in ours and library not in LIMITS]
        best, peer = min(peers, default=(None, ''))
        limit = min((libraries[each] for each in LIMITS & libraries.keys()), default=None)
        for library, time in ours.items():
            label = name if len(ours) == 1 else f'{name} ({library})'
            rows.append(Row(label, time, best, peer, limit))
    return rows


def show(nanoseconds):
    for unit, size in NANOSECONDS.items():
        if nanoseconds < 1000 * size or unit == 's':
            return f'{nanoseconds / size:.3g} {unit}'
