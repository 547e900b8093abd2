# SPDX-License-Identifier: MIT
"""Rules on the text of single files."""
import re

from . import tree

# Debian's tools read these from their first line on.
NO_ROOM_FOR_IT = {"debian/changelog", "debian/copyright", "debian/source/format"}
LICENCE = "SPDX-License-Identifier: MIT"
NO_LICENCE_LINE = {".tsv", ".bin", ".json", ".md", ".png", ".bmp", ".obj", ".txt", ".yml",
                   ".dae", ".gltf", ".off", ".ply", ".xyz", ".xml"}

# The tree must be understood by those who have nothing but the tree.
OUTSIDE = [
    (r"\b[s]pec(ification)?s?\b", "say what it does, not where that was specified"),
    (r"\b[P]arts? \d", "names a chapter of a document that is not here"),
    (r"\b[i]ssues?\b", "name the behaviour, not a ticket"),
    (r"\.\./[s]hared|/[w]ork/", "names a place outside the tree"),
]

WARN_LINES, MAX_LINES = 500, 700
LONGER = {}  # path: reason


def format():
    """Layout as clang-format makes it."""
    paths = tree.select("kortools", "apps", "plugins", "tests", "bench", "fuzz", "docs")
    size = 20
    batches = [paths[i:i + size] for i in range(0, len(paths), size)]
    for result in tree.run_all([["clang-format", "--dry-run", "-Werror", *batch]
                                for batch in batches]):
        yield from (line for line in result.stderr.splitlines() if ": error:" in line)


def licence():
    """The licence line comes first, or after #! and #compdef."""
    for path in tree.files():
        text = tree.lines(path)
        if (path.suffix in NO_LICENCE_LINE or path.name.startswith(".") or path.name == "LICENSE"
                or path.parts[:2] == ("fuzz", "corpus") or str(path) in NO_ROOM_FOR_IT):
            continue
        first = text[1:2] if text and text[0].startswith(("#!", "#compdef")) else text[:1]
        if text and not (first and LICENCE in first[0]):
            yield f"{path}:1: the first line is not '{LICENCE}'"


def size():
    """No source is longer than can be read."""
    for path in tree.select("kortools", "apps", "plugins", "tests", "bench", "fuzz", "scripts",
                            "cmake", suffixes=(*tree.CODE, ".cmake", ".py", "")):
        count = len(tree.lines(path))
        if count > MAX_LINES and str(path) not in LONGER:
            yield f"{path}: {count} lines, at most {MAX_LINES}"
        elif count > WARN_LINES:
            print(f"  note: {path} has {count} lines, aim for {WARN_LINES}")


def words():
    """Nothing refers to a document or a place outside the tree."""
    patterns = [(re.compile(pattern, re.IGNORECASE if "[P]" not in pattern else 0), reason)
                for pattern, reason in OUTSIDE]
    for path in tree.files():
        if path.suffix in (".tsv", ".bin", ".obj"):
            continue
        for number, line in enumerate([str(path), *tree.lines(path)]):
            for pattern, reason in patterns:
                if pattern.search(line):
                    yield f"{path}:{number}: '{pattern.search(line)[0]}': {reason}"


def commits():
    """Subjects of commits that are not on main yet: 'area: what changes', at most 72 characters."""
    base = next((name for name in ("origin/main", "main")
                 if tree.run(["git", "-c", "safe.directory=*", "rev-parse", "--verify", "-q", name]).returncode == 0), None)
    if base is None:
        return
    log = tree.run(["git", "-c", "safe.directory=*", "log", "--format=%h%x00%s%x00%b%x01", f"{base}..HEAD"]).stdout
    for entry in filter(None, (part.strip() for part in log.split("\x01"))):
        name, subject, body = entry.split("\0")
        if not re.fullmatch(r"[a-z_/.-]+: \S.*[^.]", subject) or len(subject) > 72:
            yield f"commit {name}: '{subject}' is not 'area: what changes' of at most 72 characters"
        for pattern, reason in OUTSIDE:
            if re.search(pattern, subject + "\n" + body):
                yield f"commit {name}: {reason}"


RULES = [licence, size, words, commits, format]
