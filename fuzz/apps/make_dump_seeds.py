#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the seeds of dump_fuzz to fuzz/corpus/dump: files of every format behind the byte that
chooses it."""
import pathlib

TOP = pathlib.Path(__file__).resolve().parents[2]
FOLDER = TOP / "fuzz/corpus/dump"
ARCHIVE, CUSTOM_DATA, PREFERENCES, TREE, RECOGNISED = range(5)

FOLDER.mkdir(parents=True, exist_ok=True)


def write(name, choice, content):
    (FOLDER / name).write_bytes(bytes([choice]) + content)


write("scene_1", ARCHIVE, (TOP / "tests/data/scene_1.scene").read_bytes())
write("scene_2", ARCHIVE, (TOP / "samples/models.scene").read_bytes())
write("preferences", PREFERENCES, (TOP / "samples/settings.prefs").read_bytes())
write("window", RECOGNISED, (TOP / "samples/window.data").read_bytes())
for path in sorted((TOP / "fuzz/corpus/custom_data").iterdir()):
    write("data_" + path.name, CUSTOM_DATA, path.read_bytes())
for path in sorted((TOP / "fuzz/corpus/tree").glob("*_memory")):
    write("tree_" + path.name.removesuffix("_memory"), TREE, path.read_bytes()[1:])
for path in sorted((TOP / "fuzz/corpus/archive").glob("*_memory")):
    write("archive_" + path.name.removesuffix("_memory"), ARCHIVE,
          path.read_bytes()[2:].split(b"\0", 1)[1])
