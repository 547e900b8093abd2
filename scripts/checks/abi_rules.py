# SPDX-License-Identifier: MIT
"""The rule on the binary interface: types, layouts, virtual tables and functions of the Linux
libraries, as libabigail sees them through the public headers, against the baselines in abi/.

The Windows library is made of the same headers; its list of exported names is all that is kept.
"""
import pathlib
import re
import shutil

from . import tree

WORK = pathlib.Path("build/check/abi")
BUILD = pathlib.Path("build/release/kortools")
FOREIGN_TYPES = pathlib.Path(__file__).resolve().parents[2] / "abi/suppressions.ini"
# File of the library: the headers that bring its interface.
LIBRARIES = {
    BUILD / "libKorTools.Qxl.so.16": lambda: ["kortools/kortools.h"],
    BUILD / "ui/libKorToolsQt.Qxl.so.16": lambda: ["kortools/ui/qt/back_end.h"],
}


def baseline(library):
    return pathlib.Path("abi", library.name + ".xml")


def public_headers(library):
    """A folder with the headers of a library and nothing else."""
    folder = WORK / library.name / "include"
    shutil.rmtree(folder, ignore_errors=True)
    for header in LIBRARIES[library]():
        for path in tree.closure(header):
            target = folder / path
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(path, target)
    return folder


def compiler(library):
    """Name and version of the compiler, as it wrote them into the library."""
    output = tree.run(["readelf", "-p", ".comment", library], check=True).stdout
    return "; ".join(re.findall(r"^\s*\[\s*[0-9a-f]+\]\s+(.*\S)\s*$", output, re.M))


def write(library, target):
    """Describes a built library in `target`; raises when libabigail cannot."""
    target.parent.mkdir(parents=True, exist_ok=True)
    command = ["abidw", "--headers-dir", public_headers(library), "--drop-private-types",
               "--suppressions", FOREIGN_TYPES,
               "--exported-interfaces-only", "--drop-undefined-syms", "--no-parameter-names",
               "--debug-info-dir", library.parent, "--no-elf-needed", "--no-architecture",
               "--no-corpus-path", "--no-comp-dir-path", "--no-show-locs", "--short-locs",
               "--type-id-style", "hash", "--out-file", target, library]
    result = tree.run(command)
    if result.returncode != 0:
        raise RuntimeError(f"{library}: abidw failed: {result.stderr.strip()}")
    if "<class-decl" not in target.read_text():  # which abidiff would take for a match
        raise RuntimeError(f"{library}: has no debug information")
    lines = [line.strip() for line in target.read_text().splitlines()]
    lines.insert(1, f"<!-- compiled with {compiler(library)} -->")  # abidiff wants its own line first
    target.write_text("\n".join(lines) + "\n")


def abi():
    """The binary interface of the Linux libraries is that of abi/; scripts/update-abi writes it."""
    for library in LIBRARIES:
        recorded = baseline(library)
        if not library.exists():
            if recorded.exists() or library.parent == BUILD:
                yield f"{library}: missing; build the preset 'release' first"
            continue
        if not recorded.exists():
            yield f"{recorded}: missing; scripts/update-abi writes it"
            continue
        built = WORK / (library.name + ".xml")
        try:
            write(library, built)
        except RuntimeError as error:
            yield str(error)
            continue
        result = tree.run(["abidiff", "--no-show-locs", recorded, built])
        if result.returncode == 0:
            continue
        yield f"{library}: its binary interface is not that of {recorded}:"
        yield from (line for line in (result.stdout + result.stderr).splitlines() if line.strip())
        before, now = (path.read_text().splitlines()[1] for path in (recorded, built))
        if before != now:
            yield f"the compilers differ, too, which may be the reason: before {before}, now {now}"
        yield "scripts/update-abi makes this the interface, when it is meant"


RULES = [abi]
