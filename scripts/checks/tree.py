# SPDX-License-Identifier: MIT
"""What the rules share: the source tree, and running commands side by side."""
import concurrent.futures
import functools
import os
import pathlib
import re
import subprocess

CODE = (".cpp", ".h")


@functools.cache
def files():
    """Every file of the tree, tracked or new but not ignored, as a path below its top."""
    listing = subprocess.run(["git", "-c", "safe.directory=*", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                             check=True, capture_output=True, text=True).stdout
    return [path for path in map(pathlib.PurePosixPath, sorted(set(listing.split("\0")) - {""}))
            if os.path.isfile(path)]


def select(*folders, suffixes=CODE):
    return [path for path in files() if path.parts[0] in folders and path.suffix in suffixes]


@functools.cache
def lines(path):
    try:
        return pathlib.Path(path).read_text(encoding="utf-8").splitlines()
    except UnicodeDecodeError:
        return []


def run(command, **options):
    return subprocess.run(list(map(str, command)), capture_output=True, text=True, **options)


def jobs():
    """How many commands run at a time."""
    return int(os.environ.get("KORTOOLS_JOBS", os.cpu_count() or 1))


def run_all(commands):
    """Runs commands, as many at a time as there are processors; results in the same order."""
    with concurrent.futures.ThreadPoolExecutor(jobs()) as pool:
        return list(pool.map(run, commands))


def includes(path):
    """The (line number, opening character, name) of each #include of a file."""
    for number, line in enumerate(lines(path), 1):
        match = re.match(r'\s*#\s*include\s*(["<])([^">]+)[">]', line)
        if match:
            yield number, match[1], match[2]


def closure(header):
    """The header and the project's headers that it includes, directly or not."""
    found, waiting = set(), [pathlib.PurePosixPath(header)]
    while waiting:
        path = waiting.pop()
        if path not in found:
            found.add(path)
            waiting += [pathlib.PurePosixPath(name) for _, kind, name in includes(path)
                        if kind == '"']
    return found
