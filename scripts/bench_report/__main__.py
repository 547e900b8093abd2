# SPDX-License-Identifier: MIT
"""Tables and pictures of measurements: bench_report [--write [--all]] FILE.json...

Prints the tables. With --write they replace those of the same programs in docs/performance.md, and
the pictures in docs/images/performance; with --all the other programs' go. The exit code is 1 when a
row that is slower than its best peer has no reason in bench/limits.txt.
"""
import argparse
import pathlib
import sys

from limits import BadLimits, Limits
from page import replace_sections
from plot import draw
from rows import BadMeasurement, pair, read_times
from table import section


def write(page, programs, limits, keep_others):
    images = page.parent / 'images' / 'performance'
    images.mkdir(parents=True, exist_ok=True)
    if not keep_others:
        for old in images.glob('*.svg'):
            old.unlink()
    for program, rows in programs.items():
        (images / f'{program}.svg').write_text(draw(program, rows, limits), encoding='utf-8')
    sections = {program: section(program, rows, limits) for program, rows in programs.items()}
    text = page.read_text(encoding='utf-8')
    page.write_text(replace_sections(text, sections, keep_others), encoding='utf-8')


def complain(page, programs, limits):
    """Rows without a reason, and reasons without a text."""
    complaints = [f'{program}: {row.label}: {row.ratio:.2f} without a reason'
                  for program, rows in programs.items() for row in rows
                  if limits.explain(program, row) is None]
    text = page.read_text(encoding='utf-8')
    return complaints + [f'{word}: {page} has no paragraph "**{limits.titles[word]}..."'
                         for word in limits.without_paragraph(text)]


def main():
    parser = argparse.ArgumentParser(prog='bench_report', description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--write', action='store_true')
    parser.add_argument('--all', action='store_true')
    parser.add_argument('--page', type=pathlib.Path, default='docs/performance.md')
    parser.add_argument('--limits', type=pathlib.Path, default='bench/limits.txt')
    parser.add_argument('files', nargs='+', type=pathlib.Path)
    options = parser.parse_args()
    try:
        limits = Limits(options.limits.read_text(encoding='utf-8'))
        programs = {path.stem: pair(read_times(path)) for path in options.files}
    except (BadLimits, BadMeasurement) as error:
        sys.exit(str(error))
    for program, rows in programs.items():
        print(section(program, rows, limits))
    if options.write:
        write(options.page, programs, limits, keep_others=not options.all)
    complaints = complain(options.page, programs, limits)
    for complaint in complaints:
        print(f'bench: {complaint}', file=sys.stderr)
    return 1 if complaints else 0


sys.exit(main())
