# SPDX-License-Identifier: MIT
"""The section of a program on the page: picture, table and count."""
from rows import show

HEAD = ['| operation | ours | best peer | ratio | limit | held by |', '|---|---|---|---|---|---|']


def section(program, rows, limits):
    lines = [f'### {program}', '', f'![Ratios of {program}](images/performance/{program}.svg)', '',
             *HEAD]
    paired = [row for row in rows if row.ratio is not None]
    for row in rows:
        limit = show(row.limit) if row.limit is not None else ''
        best = f'{show(row.best)} {row.peer} | {row.ratio:.2f}' if row.ratio is not None else '|'
        why = limits.explain(program, row)
        lines.append(f'| {row.label} | {show(row.ours)} | {best} | {limit} | '
                     f'{"?" if why is None else why} |')
    won = sum(row.ratio >= 1 for row in paired)
    lines += ['', f'{won} of {len(paired)} rows are at least as fast as the best peer.', '']
    return '\n'.join(lines) + '\n'
