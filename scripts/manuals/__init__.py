# SPDX-License-Identifier: MIT
"""Manual pages and completions of the programs."""
import pathlib

from . import bash, fish, man_page, program, zsh

# Every program that knows --describe, by its place in the build folder.
PROGRAMS = {
    "kordump": "apps/kordump",
    "scoutrix": "apps/scoutrix",
    "scoutrix-view": "apps/scoutrix-view",  # not built without its window system
}
BUILD = pathlib.Path("build/release")


def make(path, others):
    """(path, text) of each file of a program; asked again each time, as writers change it."""
    name = pathlib.Path(path).name
    yield pathlib.Path(f"docs/man/{name}.1"), man_page.write(program.ask(path), others)
    yield pathlib.Path(f"completions/bash/{name}"), bash.write(program.ask(path))
    yield pathlib.Path(f"completions/zsh/_{name}"), zsh.write(program.ask(path))
    yield pathlib.Path(f"completions/fish/{name}.fish"), fish.write(program.ask(path))


def make_all(missing):
    """Those of all programs; appends what is not built to `missing`."""
    for name, place in PROGRAMS.items():
        path = BUILD / place
        if path.exists():
            yield from make(path, [each for each in PROGRAMS if each != name])
        else:
            missing.append(path)
