#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs a program of the guide and compares its page with it.

    check_page.py PAGE SOURCE... -- COMMAND...

Each block of code of the page stands in one of the sources (paths from the page's folder), and its
block of text is what the program prints.
"""
import pathlib
import re
import subprocess
import sys


def main(arguments):
    split = arguments.index("--")
    page = pathlib.Path(arguments[0])
    sources = [(page.parent / name).read_text(encoding="utf-8") for name in arguments[1:split]]
    blocks = re.findall(r"^```(\w*)\n(.*?)^```$", page.read_text(encoding="utf-8"), re.M | re.S)
    failed = [block for kind, block in blocks if kind in ("c", "cpp")
              and not any("\n" + block in source for source in sources)]
    for block in failed:
        print(f"{page}: in no source:\n{block}")
    printed = subprocess.run(arguments[split + 1:], stdout=subprocess.PIPE, check=False, timeout=100)
    output = printed.stdout.decode("utf-8").replace("\r\n", "\n")
    if printed.returncode != 0 or output not in [block for kind, block in blocks if kind == "text"]:
        print(f"{page}: the program ends with {printed.returncode} and prints\n{output}")
        return 1
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
