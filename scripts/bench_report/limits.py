# SPDX-License-Identifier: MIT
"""What holds the rows that lose: bench/limits.txt.

    [width] Characters of four bytes
    xstring: Construct/length:*

In brackets is the word that stands in the tables, then the beginning of the paragraph, in bold, of
docs/performance.md that explains it; below are programs and rows. The first pattern that fits counts.
"""
import fnmatch
import re

EVEN = 0.95  # rows from here on are equal to their peer within what measurements vary


class BadLimits(Exception):
    pass


class Limits:
    def __init__(self, text):
        self.titles = {}    # word: paragraph
        self.patterns = []  # (program, pattern, word)
        word = None
        for number, line in enumerate(text.splitlines(), 1):
            line = line.partition('#')[0].strip()
            head = re.fullmatch(r'\[([\w-]+)\] (\S.*)', line)
            entry = re.fullmatch(r'(\w+): (\S.*)', line)
            if head:
                word = head[1]
                self.titles[word] = head[2]
            elif entry and word:
                self.patterns.append((entry[1], entry[2], word))
            elif line:
                raise BadLimits(f'limits, line {number}: neither "[word] paragraph" nor "program: row"')

    def find(self, program, label):
        """The word for a row, or None."""
        return next((word for name, pattern, word in self.patterns
                     if name == program and fnmatch.fnmatchcase(label, pattern)), None)

    def explain(self, program, row):
        """What the table says: nothing for a row that wins, None for one that lacks a reason."""
        if row.ratio is None or row.ratio >= 1:
            return ''
        return self.find(program, row.label) or ('even' if row.ratio >= EVEN else None)

    def without_paragraph(self, page):
        """Words whose paragraph is not on the page."""
        return [word for word, title in self.titles.items() if f'**{title}' not in page]
