#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares what GDB shows in a stopped program with what its source says that it shows.

    debugger_views_test.py GDB PROGRAM SOURCE LIBRARY_FOLDER

Ends with 77, which CTest reports as skipped, where a program must not be traced.
"""
import os
import re
import subprocess
import sys

SKIPPED = 77
EXPECTATION = re.compile(r"; //: (\S+) => (.*)")
CANNOT_TRACE = re.compile(r"ptrace.*not permitted|could not trace|cannot trace", re.I)


def expectations(source):
    """For each function in turn, the pairs of expression and text; the last thing it does is to
    stop."""
    functions = []
    with open(source, encoding="utf-8") as lines:
        for line in lines:
            if re.match(r"void \w+\(\)$", line):
                functions.append([])
            elif match := EXPECTATION.search(line):
                functions[-1].append(match.groups())
    return functions


def run_gdb(gdb, program, library_folder, functions):
    command = [gdb, "-nx", "-batch", "-iex", f"add-auto-load-safe-path {library_folder}"]
    steps = ["set width 0", "set print elements 8", "set print address off",
             "set disable-randomization off", "set startup-with-shell off",
             "set debuginfod enabled off", "break stop_here", "run"]
    for function in functions:
        steps.append("up")
        steps += [f"print {expression}" for expression, _ in function]
        steps.append("continue")
    for step in steps:
        command += ["-ex", step]
    environment = dict(os.environ, LC_ALL="C.UTF-8", PYTHONUTF8="1")
    return subprocess.run([*command, program], env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8",
                          timeout=250).stdout


def main(gdb, program, source, library_folder):
    functions = expectations(source)
    if not os.access(gdb, os.X_OK):
        print("skipped: there is no gdb")
        return SKIPPED
    output = run_gdb(gdb, program, library_folder, functions)
    shown = re.findall(r"^\$\d+ = (.*)$", output, re.M)
    if not shown and CANNOT_TRACE.search(output):
        print("skipped: programs must not be traced here\n" + output)
        return SKIPPED
    expected = [pair for function in functions for pair in function]
    wrong = [f"{expression}\n  shows    {actual}\n  expected {text}"
             for (expression, text), actual in zip(expected, shown)
             if re.sub(r"^\(.*? &\) (@\S+: )?", "", actual) != text]
    print(*wrong, sep="\n")
    print(f"{len(expected)} objects, {len(shown)} shown, {len(wrong)} not as expected")
    if wrong or len(shown) != len(expected) or "Traceback" in output:
        print(output)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
