# SPDX-License-Identifier: MIT
"""The picture of a program: a bar for each row, on a logarithmic scale around 1.

The colours are told apart in light and dark, also by those who cannot tell red from green; the
background stays that of the page.
"""
import math
from xml.sax.saxutils import escape

from rows import show

LEFT, RIGHT, BAR, STEP, TOP = 330, 900, 11, 17, 46  # pixels
LOWEST, HIGHEST = 0.1, 10                           # ratios beyond are cut, with their number
TICKS = [0.1, 0.2, 0.5, 1, 2, 5, 10]

STYLE = '''
text { font: 12px system-ui, sans-serif; fill: #1f2328 }
.small { font-size: 11px; fill: #59636e }
.grid { stroke: #d1d9e0 } .one { stroke: #59636e; stroke-width: 1.5 }
.faster { fill: #0969da } .slower { fill: #d4790a }
@media (prefers-color-scheme: dark) {
text { fill: #f0f6fc } .small { fill: #9198a1 }
.grid { stroke: #3d444d } .one { stroke: #9198a1 }
.faster { fill: #4493f8 } .slower { fill: #f0a13c }
}'''


def place(ratio):
    """Where a ratio lies from left to right."""
    cut = min(max(ratio, LOWEST), HIGHEST)
    return LEFT + (RIGHT - LEFT) * math.log(cut / LOWEST) / math.log(HIGHEST / LOWEST)


def draw_text(x, y, text, anchor='start', kind=''):
    return f'<text x="{x:.0f}" y="{y}" text-anchor="{anchor}"{kind}>{escape(text)}</text>'


def draw_scale(bottom):
    lines = [draw_text(place(1) - 8, 14, '◀ the best peer is faster', 'end', ' class="small"'),
             draw_text(place(1) + 8, 14, 'KorTools is faster ▶', 'start', ' class="small"')]
    for tick in TICKS:
        x = place(tick)
        lines += [f'<line x1="{x:.1f}" x2="{x:.1f}" y1="{TOP - 8}" y2="{bottom}" '
                  f'class="{"one" if tick == 1 else "grid"}"/>',
                  draw_text(x, TOP - 14, f'{tick:g}', 'middle', ' class="small"')]
    return lines


def draw_row(row, top, why):
    one, end = place(1), place(row.ratio)
    kind = 'faster' if row.ratio >= 1 else 'slower'
    # Beside the bar and off the scale's middle line.
    number = f'{row.ratio:.2f}' + (f' {why}' if why else '')
    text = (draw_text(max(end, one) + 5, top + BAR - 1, number, 'start', ' class="small"')
            if row.ratio >= 1 or end < LEFT + 110 else
            draw_text(end - 5, top + BAR - 1, number, 'end', ' class="small"'))
    title = f'{row.label}: {show(row.ours)}, {row.peer} {show(row.best)}'
    return [f'<g><title>{escape(title)}</title>', draw_text(LEFT - 12, top + BAR - 1, row.label, 'end'),
            f'<rect x="{min(one, end):.1f}" y="{top}" width="{max(abs(end - one), 1):.1f}" '
            f'height="{BAR}" rx="2" class="{kind}"/>', text, '</g>']


def draw(program, rows, limits):
    paired = [row for row in rows if row.ratio is not None]
    bottom = TOP + STEP * len(paired)
    lines = ['<!-- SPDX-License-Identifier: MIT -->',
             f'<svg xmlns="http://www.w3.org/2000/svg" width="{RIGHT + 80}" height="{bottom + 10}" '
             f'viewBox="0 0 {RIGHT + 80} {bottom + 10}" role="img" '
             f'aria-label="{escape(program)}: the best peer\'s time by ours">',
             f'<style>{STYLE}</style>', *draw_scale(bottom)]
    for number, row in enumerate(paired):
        lines += draw_row(row, TOP + STEP * number, limits.explain(program, row))
    return '\n'.join([*lines, '</svg>', ''])
