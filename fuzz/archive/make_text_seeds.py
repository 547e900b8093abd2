#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the seeds of text_file_fuzz to fuzz/corpus/text_file: texts in every encoding behind the
target's header (flags, size of a part)."""
import os

FOLDER = os.path.join(os.path.dirname(__file__), "..", "corpus", "text_file")
TEXT = "first line\r\nh\u00e9 \u20ac \U0001f600\n\n\ttabs\rand a return\n\u0a0a\u0a00\u010a\nlast"
JAPANESE = " \u3042\u30bd\u8868\u80fd\uff71\u3042"

encodings = {
    "ansi": (0, b"", "utf-8"),
    "ansi_1252": (0x10, b"", "cp1252"),
    "ansi_932": (0x20, b"", "cp932"),
    "ansi_54936": (0x30, b"", "gb18030"),
    "utf8": (0, b"\xef\xbb\xbf", "utf-8"),
    "utf16": (0, b"\xff\xfe", "utf-16-le"),
    "utf16be": (0, b"\xfe\xff", "utf-16-be"),
    "utf8_plain": (3, b"", "utf-8"),
    "utf16_plain": (1, b"", "utf-16-le"),
    "utf16be_plain": (5, b"", "utf-16-be"),
}
seeds = {}
for name, (flags, mark, codec) in encodings.items():
    body = TEXT.encode(codec, "ignore") + JAPANESE.encode(codec, "ignore")
    seeds[name] = bytes([flags, 5]) + mark + body
    seeds[name + "_binary"] = bytes([flags | 8, 0]) + mark + body
    seeds[name + "_cut"] = bytes([flags | 8, 1]) + mark + body[:-1] + body[22:25]
seeds["lone"] = b"\x08\x00\xff\xfe" + b"\x00\xd8" * 3 + b"\x00\xdc" * 2 + b"\n\x00"
seeds["malformed"] = b"\x08\x01\xef\xbb\xbf\xed\xa0\x80\xc0\x80\xf4\x90\x80\x80\xe2\x82\n\x80" * 3
seeds["long"] = b"\x08\x00\xff\xfe" + "x\u20ac".encode("utf-16-le") * 20000 + b"\r\x00\n\x00"
os.makedirs(FOLDER, exist_ok=True)
for name, data in seeds.items():
    with open(os.path.join(FOLDER, name), "wb") as seed:
        seed.write(data)
