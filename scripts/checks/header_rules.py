# SPDX-License-Identifier: MIT
"""Rules that compile the headers."""
import pathlib
import re
import shutil

from . import tree

WORK = pathlib.Path("build/check/headers")
FLAGS = ["-std=c++20", "-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Wshadow", "-Werror",
         "-Wno-unused-const-variable", "-I.", '-DKOR_SAMPLES="samples"',
         '-DKOR_TEST_DATA="tests/data"']
LINUX = ["g++", "-isystem", "/usr/src/googletest/googletest/include"]
WINDOWS = ["x86_64-w64-mingw32-g++-posix", "-isystem", "/usr/src/googletest/googletest/include",
           "-isystem", "build/release/host-headers"]  # headers that both systems share
WINDOWS_HEADER = "#include <windows.h>\n"
QT_FOLDER = "kortools/ui/qt/"  # for Linux only, where Qt's headers are


def compile_command(compiler, name, text):
    """The command that compiles `text`; ccache makes it quick when nothing changed."""
    WORK.mkdir(parents=True, exist_ok=True)
    source = WORK / (name + ".cpp")
    if not source.exists() or source.read_text() != text:
        source.write_text(text)
    launcher = ["ccache"] if shutil.which("ccache") else []
    return [*launcher, *compiler, *FLAGS, "-c", source, "-o", source.with_suffix(".o")]


def qt_flags():
    """Where Qt's headers lie; nothing where it is not installed."""
    result = tree.run(["pkg-config", "--cflags", "Qt6Widgets"])
    return ["-fPIC", *result.stdout.replace("-I", "-isystem").split()] if result.returncode == 0 else []


def complain(what, results):
    for path, result in zip(what, results):
        if result.returncode != 0:
            errors = [line for line in result.stderr.splitlines() if "error:" in line][:3]
            yield f"{path}: does not compile alone, twice or around <windows.h>\n    " + "\n    ".join(errors)


def headers():
    """Every header compiles alone and twice with both compilers, public ones also around
    <windows.h>."""
    public = tree.closure("kortools/kortools.h")
    qt = qt_flags()
    what, commands = [], []
    for path in tree.select("kortools", "apps", "tests", suffixes=(".h",)):
        include = f'#include "{path}"\n'
        flat = str(path).replace("/", "_").removesuffix(".h")
        uses_qt = str(path).startswith(QT_FOLDER)
        if uses_qt and not qt:
            continue
        if "win32" not in path.parts:
            what.append(path)
            commands.append(compile_command([*LINUX, *(qt if uses_qt else [])], flat + "_linux",
                                            include * 2))
        if "posix" not in path.parts and not uses_qt:
            after = WINDOWS_HEADER + include if path in public else ""
            what.append(path)
            commands.append(compile_command(WINDOWS, flat + "_windows", include * 2 + after))
        if path in public and "posix" not in path.parts:
            what.append(path)
            commands.append(compile_command(WINDOWS, flat + "_after_windows_h",
                                            WINDOWS_HEADER + include))
    yield from complain(what, tree.run_all(commands))


def own_lines(preprocessed):
    """The lines of our own headers in the preprocessor's output, with their places."""
    place = None
    for line in preprocessed.splitlines():
        marker = re.match(r'# (\d+) "([^"]*)"', line)
        if marker:
            number, file = int(marker[1]), marker[2].removeprefix("./")
            place = (file, number) if file.startswith("kortools/") else None
        elif place:
            text = " ".join(line.split())
            if text and not text.startswith("#"):
                yield place, text
            place = (place[0], place[1] + 1)


def meaning():
    """The macros of <windows.h> change nothing in the public headers."""
    include = '#include "kortools/kortools.h"\n'
    texts = []
    for before in ("", WINDOWS_HEADER):
        result = tree.run([*WINDOWS, "-std=c++20", "-I.", "-E", "-x", "c++", "-"],
                          input=before + include)
        if result.returncode != 0:
            yield "kortools/kortools.h: cannot be preprocessed for Windows"
            return
        texts.append(list(own_lines(result.stdout)))
    changed = dict(texts[1])
    for place, text in dict(texts[0]).items():
        if changed.get(place) != text:
            yield (f"{place[0]}:{place[1]}: after <windows.h> '{text}' reads"
                   f" '{changed.get(place, '')}'")


RULES = [headers, meaning]
