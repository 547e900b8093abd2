# SPDX-License-Identifier: MIT
"""Rules on what is built: exported names, and clang-tidy over the sources."""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re

import manuals

from . import tree

PRODUCTS = {
    "linux": (pathlib.Path("build/release/kortools/libKorTools.Qxl.so.16"), "release"),
    "windows": (pathlib.Path("build/windows/kortools/KorTools.Qxl.16.dll"), "windows"),
}
# Beside the compiler's cache, so that all checkouts share what one of them has found to be clean.
TIDY_CACHE = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache",
                          "kortools", "tidy")


def list_of_exports(system):
    return pathlib.Path(f"kortools/exports.{system}.txt")


def exported_names(system):
    """The demangled names that a built library exports, sorted."""
    library = PRODUCTS[system][0]
    if system == "linux":
        output = tree.run(["nm", "-D", "--defined-only", library], check=True).stdout
        names = [line.split()[-1] for line in output.splitlines()]
    else:
        output = tree.run(["x86_64-w64-mingw32-objdump", "-p", library], check=True).stdout
        table = output.split("[Ordinal/Name Pointer] Table", 1)[1].split("\n\n", 1)[0]
        names = re.findall(r"^\s*\[\s*\d+\]\s+(?:\+base\[\s*\d+\]\s+)?(?:[0-9a-f]+\s+)?(\S+)$", table, re.M)
    demangled = tree.run(["c++filt"], input="\n".join(names)).stdout.splitlines()
    # Lambdas are named after the instance they lie in; whatever that is, it stands in the list.
    return sorted({name for name in demangled if "{lambda" not in name})


def exports():
    """The exported names are those of the lists in kortools/; scripts/update-exports writes them."""
    for system, (library, preset) in PRODUCTS.items():
        if not library.exists():
            yield f"{library}: missing; build the preset '{preset}' first"
            continue
        recorded = set(list_of_exports(system).read_text().splitlines())
        names = set(exported_names(system))
        for name in sorted(names - recorded):
            yield f"{list_of_exports(system)}: new: {name}"
        for name in sorted(recorded - names):
            yield f"{list_of_exports(system)}: lost: {name}"


def manual():
    """Manual pages and completions say what the programs say of themselves."""
    missing = []
    for path, text in manuals.make_all(missing):
        if not path.exists() or path.read_text(encoding="utf-8") != text:
            yield f"{path}: stale; scripts/update-manuals writes it"
    if len(missing) == len(manuals.PROGRAMS):
        yield f"{missing[0]}: missing; build the preset 'release' first"


def digest(command, source, settings):
    """Changes when the source, a header it includes, the flags or the settings change."""
    parts = re.sub(r" -[oc] \S+", "", command).split()
    preprocessed = tree.run([part.replace('\\"', '"') for part in parts if part != "ccache"
                             and not part.endswith("/ccache")] + ["-E", "-P", "-C", source])
    content = preprocessed.stdout + command.replace(os.getcwd(), "") + settings
    return hashlib.sha256(content.encode()).hexdigest()


def tidy():
    """clang-tidy has no complaint; what was clean is remembered by its content."""
    database = pathlib.Path("build/release/compile_commands.json")
    if not database.exists():
        yield f"{database}: missing; configure the preset 'release' first"
        return
    top = os.getcwd() + "/"
    entries = [(entry["file"].removeprefix(top), entry["command"])
               for entry in json.loads(database.read_text())]
    entries = [(source, command) for source, command in entries
               if source.startswith(("kortools/", "apps/"))]
    TIDY_CACHE.mkdir(parents=True, exist_ok=True)
    settings = pathlib.Path(".clang-tidy").read_text() + tree.run(["clang-tidy", "--version"]).stdout
    with concurrent.futures.ThreadPoolExecutor(tree.jobs()) as pool:
        digests = pool.map(lambda entry: digest(entry[1], entry[0], settings), entries)
    stamps = {source: TIDY_CACHE / name for (source, _), name in zip(entries, digests)}
    waiting = [source for source, stamp in stamps.items() if not stamp.exists()]

    def lint(source):
        result = tree.run(["clang-tidy", "--quiet", "--extra-arg=-Wno-unknown-warning-option",
                           "-p", database.parent, source])
        if result.returncode == 0:
            stamps[source].touch()
        return result

    with concurrent.futures.ThreadPoolExecutor(tree.jobs()) as pool:
        results = list(pool.map(lint, waiting))
    seen = set()
    for source, result in zip(waiting, results):
        if result.returncode != 0 and " error: " not in result.stdout:
            yield f"{source}: clang-tidy failed: {result.stderr.strip()[-200:]}"
        for line in result.stdout.splitlines():
            if re.search(r": (error|warning): ", line) and line not in seen:
                seen.add(line)
                yield line.removeprefix(top)


def docs():
    """Doxygen has no complaint: every public name is described."""
    result = tree.run(["scripts/docs"])
    if result.returncode != 0:
        yield from result.stdout.splitlines() or result.stderr.splitlines()[-3:]


RULES = [exports, manual, tidy, docs]
