# SPDX-License-Identifier: MIT
"""The report of benchmarks, over a recorded measurement: bench_report_test.py SOURCE WORK"""
import json
import pathlib
import subprocess
import sys

SOURCE, WORK = map(pathlib.Path, sys.argv[1:])


def measured(*rows):
    """Google Benchmark's JSON, where a repetition is worth less than the median."""
    return json.dumps({'benchmarks': [
        {'name': name, 'run_name': name, 'run_type': kind, 'aggregate_name': 'median',
         'real_time': time * (1 if kind == 'aggregate' else 7), 'time_unit': 'us',
         'family_index': family, 'per_family_instance_index': 0}
        for family, (name, time) in reversed(list(enumerate(rows)))
        for kind in ('iteration', 'aggregate')]})


def report(*arguments):
    result = subprocess.run([sys.executable, SOURCE / 'scripts/bench_report', *arguments,
                             '--page', 'page.md', '--limits', 'limits.txt', 'speed.json'],
                            cwd=WORK, capture_output=True, text=True, encoding='utf-8')
    return result.returncode, result.stdout, result.stderr


WORK.mkdir(parents=True, exist_ok=True)
page = WORK / 'page.md'
page.write_text('**Bytes.** Kept.\n<!-- BEGIN TABLE -->\n### speed\nold\n### other\nstays\n'
                '<!-- END TABLE -->\nKept, too.\n')
(WORK / 'limits.txt').write_text('[bytes] Bytes\nspeed: read/*  # all of them\n')
rows = [('BM_read_CXFile/8', 20), ('BM_read_std/8', 10), ('BM_read_memcpy/8', 5),
        ('even/KorTools', 10), ('even/Qt', 9.6), ('BM_fast<CTree>', 1), ('BM_fast<VectorTree>', 2),
        ('way/KorTools by <position>', 1e6), ('way/KorTools', 4), ('alone/KorTools', 3)]
(WORK / 'speed.json').write_text(measured(*rows))
code, output, errors = report('--write')
assert (code, errors) == (0, ''), errors
assert [line for line in output.splitlines() if line.startswith('| ')][1:] == [
    '| read/8 | 20 us | 10 us std | 0.50 | 5 us | bytes |',
    '| even | 10 us | 9.6 us Qt | 0.96 |  | even |',
    '| fast | 1 us | 2 us VectorTree | 2.00 |  |  |',
    '| way | 4 us | 1 s KorTools by <position> | 250000.00 |  |  |',
    '| alone | 3 us | | |  |  |'], output
text = page.read_text()
assert text.startswith('**Bytes.** Kept.\n') and text.endswith('-->\nKept, too.\n'), text
assert 'old' not in text and '### other\nstays\n' in text and output.strip() in text, text
picture = (WORK / 'images/performance/speed.svg').read_text(encoding='utf-8')
assert picture.count('<rect') == 4 and '&lt;position&gt;' in picture, picture

rows += [('slow/KorTools', 3), ('slow/std', 1)]
(WORK / 'speed.json').write_text(measured(*rows))
page.write_text(page.read_text().replace('**Bytes.**', 'Bytes'))
code, output, errors = report('--write', '--all')
assert code == 1, output
assert 'speed: slow: 0.33 without a reason' in errors and 'read' not in errors, errors
assert 'bytes: page.md has no paragraph' in errors, errors
assert '### other' not in page.read_text()
