#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the seeds of archive_fuzz to fuzz/corpus/archive: valid archives of everything that the
format has, behind the target's header (kind of file, window, script, zero)."""
import os
import struct

FOLDER = os.path.join(os.path.dirname(__file__), "..", "corpus", "archive")


def u16(*values):
    return struct.pack("<%dH" % len(values), *values)


def wide(text):
    units = text.encode("utf-16-le")
    return b"\xff" + u16(0xFFFE) + bytes([len(units) // 2]) + units


def narrow(text):
    return bytes([len(text)]) + text


def new_class(name, schema):
    return u16(0xFFFF, schema, len(name)) + name


text_body = wide("h\u00e9 \U0001f600") + narrow(b"bytes") + b"\x01" + struct.pack("<d", 0.5)
text = new_class(b"FuzzText", 2) + text_body
node = new_class(b"FuzzNode", 3)
seeds = {
    "values": (b"\x09\x0a\x0b\x0c\x0f\x0d", bytes(range(40))),
    "strings": (b"\x05\x06\x05\x06\x05\x05\x05",
                wide("plain") + narrow(b"plain") + narrow(b"to wide") + wide("to narrow")
                + b"\xff\xfd\xff\x03\xe2\x82\xac" + b"\xff\xfc\xff\x03???"
                + b"\xff\x2c\x01" + b"x" * 300),
    "lengths": (b"\x07\x07\x07\x07", b"\x05\xff\xff\x00\xff\xff\xff\x00\x00\x01\x00"
                + b"\xff\xfe\xff\xff\xff\xff\xff\xff\xff\xff\x01" + bytes(7)),
    "array": (b"\x08\x08", u16(3) + bytes(12) + u16(0xFFFF) + struct.pack("<I", 2) + bytes(8)),
    "null": (b"\x01\x02", u16(0, 0)),
    "text": (b"\x01\x0e\x01", text + u16(2)),
    # Node 2 has text 4 and the nodes 6 (a child with the same text), itself and none.
    "graph": (b"\x02", node + text + u16(0) + u16(3) + new_class(b"FuzzVersioned", 9) + u16(4, 2)
              + u16(1, 2) + u16(2, 0)),
    "chain": (b"\x02", node + u16(0, 0, 1) + (u16(0x8001) + u16(0, 0, 1)) * 40 + u16(0)),
    "classes": (b"\x03\x04\x03\x03", new_class(b"FuzzNode", 3) + u16(0x8001) + u16(0)
                + u16(0x7FFF) + struct.pack("<I", 0x80000001)),
    "refused": (b"\x01", new_class(b"FuzzTransient", 1)),
    "abstract": (b"\x01", new_class(b"FuzzObject", 1)),
}
os.makedirs(FOLDER, exist_ok=True)
for name, (script, archive) in seeds.items():
    for kind, header in (("memory", b"\x01\x00"), ("steps", b"\x0a\x00"), ("pipe", b"\x18\x10")):
        with open(os.path.join(FOLDER, name + "_" + kind), "wb") as seed:
            seed.write(header + script + b"\x00" + archive)
