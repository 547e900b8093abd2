# SPDX-License-Identifier: MIT
"""The page with the tables. What stands outside the two marks is written by hand and stays."""
import re

BEGIN, END = '<!-- BEGIN TABLE -->\n', '<!-- END TABLE -->'


def replace_sections(page, sections, keep_others):
    """The page with {program: text} in place of the sections it had, new ones behind them; others
    go when all programs were measured."""
    before, begin, rest = page.partition(BEGIN)
    table, end, after = rest.partition(END)
    if not begin or not end:
        raise ValueError('the page has no marks for the table')
    old = dict(re.findall(r'^### (\w+)\n(.*?)(?=^### |\Z)', table, re.M | re.S))
    result = {program: f'### {program}\n{text}' for program, text in old.items()
              if keep_others or program in sections}
    result.update(sections)
    return before + begin + ''.join(result.values()) + end + after
