#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the seeds of preferences_fuzz to fuzz/corpus/preferences."""
import os
import struct

FOLDER = os.path.join(os.path.dirname(__file__), "..", "corpus", "preferences")


def u32(*values):
    return struct.pack("<%dI" % len(values), *values)


def preferences(*records, count=None):
    return u32(len(records) if count is None else count) + b"".join(records)


def record(identifier, version, magic, contents=b""):
    return u32(identifier, version, magic, len(contents)) + contents


entry = u32(1, 4, 0x20494E54, 42)
empty = record(1, 2, 0x43555335)
number = record(1, 1, 0x43555335, u32(1, 1, 4, 0, 0) + entry)
old = record(2, 0, 0x43555354, u32(1, 4, 0) + b"abcd")
strange = record(0, 3, 0x3F3F3F3F, b"strange")
whole = preferences(empty, number, old, strange)
pairs = {
    "whole": (None, whole),
    "none": (None, b""),
    "no_records": (None, preferences()),
    "cut": (None, whole[:-3]),
    "committed": (whole, preferences(old)),
    "uncommitted": (preferences(number, old, count=0xFFFFFFFF), whole),
    "torn": (preferences(number, old), whole[:30] + b"\0" * 20),
    "both_cut": (whole[:50], whole[:70]),
}
os.makedirs(FOLDER, exist_ok=True)
for name, (copy, target) in pairs.items():
    size = 0xFFFF if copy is None else len(copy)
    with open(os.path.join(FOLDER, name), "wb") as seed:
        seed.write(struct.pack("<H", size) + (copy or b"") + target)
