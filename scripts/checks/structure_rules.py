# SPDX-License-Identifier: MIT
"""Rules on how the files of the tree lie and depend on each other."""
import pathlib
import re

from . import tree

# What each area may include, besides itself and kortools/export.h.
BELOW = {
    "platform": set(),
    "core": {"platform"},
    "text tables": {"platform", "core"},
    "archive": {"platform", "core", "text tables"},
}
for area in ("data", "files", "app", "graphics", "text", "window services"):
    BELOW[area] = {"platform", "core", "text tables", "archive", "data", "files", "app", "graphics",
                   "text", "window services"}
BELOW["ui"] = set(BELOW)

STANDARD_HEADERS = set("""
    algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono
    cinttypes climits clocale cmath compare complex concepts condition_variable coroutine csetjmp
    csignal cstdarg cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque
    exception execution filesystem format forward_list fstream functional future initializer_list
    iomanip ios iosfwd iostream istream iterator latch limits list locale map memory memory_resource
    mutex new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator
    semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf
    string string_view syncstream system_error thread tuple type_traits typeindex typeinfo
    unordered_map unordered_set utility valarray variant vector version
    omp.h emmintrin.h""".split())  # the last two: OpenMP, and SSE2, which every x86-64 processor has
C_HEADERS = set("stdbool.h stddef.h stdint.h string.h".split())
FOR_C = {"kortools/files/io_plugin.h", "kortools/files/io_plugin_mode.h"}  # read by C compilers
APP_HEADERS = {"CLI/CLI.hpp", "nlohmann/json.hpp", "nlohmann/json_fwd.hpp", "zlib.h"}
SYSTEM_FOLDERS = ("kortools/platform/posix/", "kortools/platform/win32/", "kortools/ui/win32/",
                  "kortools/ui/qt/")
SYSTEM_MACRO = re.compile(
    r"^\s*#\s*(?:if|ifdef|ifndef|elif)\b.*\b(?:_WIN32|_WIN64|WIN32|__MINGW\w*|_MSC_VER|__linux__|"
    r"__unix__|__GLIBC__|__CYGWIN__)\b")
SYSTEM_MACRO_ALLOWED = {
    "kortools/platform/export_words.h",  # the two systems export in different words
    "kortools/platform/time_records.h",  # the system's own records where it has them
    "kortools/platform/rectangles.h",  # the rules of the system that has some, others inlined
}

# Global classes and functions of the public interface; forward declarations are not meant.
PUBLIC_DECLARATION = re.compile(
    r"\bKORTOOLS_API\b|^(?:template\s*<.*>\s*)?(?:class|struct)\s+C[A-Z]\w*\b(?!::)[^;]*\{")
NOT_PUBLIC = {  # header: reason
    "kortools/ui/win32/back_end.h": "for programs that show windows on Windows",
    "kortools/ui/qt/back_end.h": "for programs that use Qt",
}


def area_of(path):
    """The folder; the tables of texts lie below the functions beside them, and so does what the
    library asks of windows, which the back ends of ui implement."""
    if path.parts[1] == "ui" and path.name in ("window.h", "pixels.h"):
        return "window services"
    if path.parts[1] == "text" and path.stem in ("string_table", "texts"):
        return "text tables"
    return path.parts[1]


def direction():
    """Includes point from an area to those below it."""
    for path in tree.select("kortools"):
        area = area_of(path)
        if len(path.parts) < 3:
            continue
        for number, kind, name in tree.includes(path):
            other = pathlib.PurePosixPath(name)
            if kind == '"' and (other.parts[0] != "kortools" or len(other.parts) > 2
                                and area_of(other) not in {area} | BELOW[area]):
                yield f"{path}:{number}: {area} must not include {name}"


def systems():
    """System headers and system macros stay below the seam."""
    for path in tree.select("kortools", "apps", "bench", "fuzz"):
        if str(path).startswith(SYSTEM_FOLDERS):
            continue
        third_party = path.parts[0] in ("bench", "fuzz")
        allowed = STANDARD_HEADERS | (APP_HEADERS if path.parts[0] == "apps" else set()) \
            | (C_HEADERS if str(path) in FOR_C else set())
        for number, kind, name in tree.includes(path):
            if kind == "<" and name not in allowed and not third_party:
                yield f"{path}:{number}: <{name}> belongs below the seam"
        if str(path) in SYSTEM_MACRO_ALLOWED:
            continue
        for number, line in enumerate(tree.lines(path), 1):
            if SYSTEM_MACRO.match(line):
                yield f"{path}:{number}: the system is asked for above the seam"


def listed():
    """Every source, test, benchmark and fuzz target is built."""
    lists = {folder: "\n".join(tree.lines(pathlib.PurePosixPath(folder, "CMakeLists.txt")))
             for folder in ("tests", "bench", "fuzz")}
    for folder, function in (("tests", "test"), ("bench", "bench"), ("fuzz", "fuzz")):
        for path in tree.select(folder, suffixes=(".cpp",)):
            name = path.stem.removesuffix("_" + function)
            if name == path.stem:
                continue
            area = path.parts[1]
            if not re.search(rf"^\s*kor_{function}\({area} {name}\b", lists[folder], re.M):
                yield f"{path}: not in {folder}/CMakeLists.txt"
    for path in tree.select("kortools", "apps", suffixes=(".cpp",)):
        top = pathlib.PurePosixPath(*path.parts[:2] if path.parts[0] == "kortools" else
                                    path.parts[:1])
        text = "\n".join(tree.lines(top / "CMakeLists.txt"))
        if not re.search(rf"(?<![\w/]){re.escape(str(path.relative_to(top)))}\b", text):
            yield f"{path}: not in {top}/CMakeLists.txt"


def umbrella():
    """kortools.h brings every public header, and nothing that is not installed is public."""
    public = tree.closure("kortools/kortools.h")
    for path in tree.select("kortools", suffixes=(".h",)):
        if path in public or str(path) in NOT_PUBLIC:
            continue
        for number, line in enumerate(tree.lines(path), 1):
            if PUBLIC_DECLARATION.search(line):
                yield f"{path}:{number}: public, but kortools/kortools.h does not bring it"
                break


RULES = [direction, systems, listed, umbrella]
