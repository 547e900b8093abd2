#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the seeds of tree_fuzz to fuzz/corpus/tree: valid trees behind the target's header."""
import os
import struct

FOLDER = os.path.join(os.path.dirname(__file__), "..", "corpus", "tree")


def u16(*values):
    return struct.pack("<%dH" % len(values), *values)


def u32(*values):
    return struct.pack("<%dI" % len(values), *values)


def new_class(name, schema):
    return u16(0xFFFF, schema, len(name)) + name


def text(content):
    return b"\xff" + u16(0xFFFE) + bytes([len(content)]) + content.encode("utf-16-le")


plain = u32(3) + new_class(b"CTreeNode", 2)
old = u32(3) + new_class(b"CTreeNode", 1)
named = u32(3) + new_class(b"FuzzTreeNode", 2)
block = u32(36, 1, 1, 4, 0, 0, 9, 4, 0x534C4E47, 5)
bodies = {
    "empty": u32(2, 0),
    "pair": u32(1) + plain + u32(3, 0x10, 2) + u32(3) + u16(0x8002) + u32(3, 1, 2, 0, 0),
    "nested": u32(1) + named + u32(3, 0) + text("a") + u32(1)
    + u32(3) + u16(0x8002) + u32(3, 1) + text("b") + u32(2) + plain + u32(3, 7, 2, 0, 0, 0),
    "chain": u32(1) + plain + u32(3, 0) + (u32(1, 3) + u16(0x8002) + u32(3, 0)) * 30 + u32(2)
    + u32(0) * 32,
    "old": u32(1) + old + u32(0x77, 2, 0, 0),
    "block": u32(1) + plain + u32(2, 0x77, 0x43555335) + block + u32(2, 0, 0),
    "old_block": u32(1) + plain + u32(2, 0x77, 0x43555354, 16, 1, 4, 0, 8) + u32(2, 0, 0),
}
os.makedirs(FOLDER, exist_ok=True)
for name, body in bodies.items():
    for kind, header in (("memory", b"\x00"), ("steps", b"\x01")):
        with open(os.path.join(FOLDER, name + "_" + kind), "wb") as seed:
            seed.write(header + new_class(b"CTree", 2) + u32(4) + body)
