#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the meshes of samples/ that no program wrote: one box, 2 x 4 x 6 around the origin, in
several formats, and a small cloud of points.

    tests/plugins/make_models.py samples
"""
import base64
import json
import pathlib
import struct
import sys

# Vertex k has the low corner where a bit of k is 0: x is bit 0, y bit 1, z bit 2.
VERTICES = [((-1, 1)[k & 1], (-2, 2)[k >> 1 & 1], (-3, 3)[k >> 2 & 1]) for k in range(8)]
# Counter-clockwise seen from outside: -x, +x, -y, +y, -z, +z.
QUADS = [(0, 4, 6, 2), (1, 3, 7, 5), (0, 1, 5, 4), (2, 6, 7, 3), (0, 2, 3, 1), (4, 5, 7, 6)]
NORMALS = [(-1, 0, 0), (1, 0, 0), (0, -1, 0), (0, 1, 0), (0, 0, -1), (0, 0, 1)]
TRIANGLES = [t for q in QUADS for t in ((q[0], q[1], q[2]), (q[0], q[2], q[3]))]


def stl():
    body = b"".join(struct.pack("<12fH", *NORMALS[n // 2], *(c for k in t for c in VERTICES[k]), 0)
                    for n, t in enumerate(TRIANGLES))
    return b"a box".ljust(80) + struct.pack("<I", len(TRIANGLES)) + body


def ply():
    head = ["ply", "format ascii 1.0", "comment a box", "element vertex 8", "property float x",
            "property float y", "property float z", "element face 6",
            "property list uchar int vertex_indices", "end_header"]
    lines = [" ".join(map(str, v)) for v in VERTICES] + ["4 " + " ".join(map(str, q)) for q in QUADS]
    return "\n".join(head + lines).encode() + b"\n"


def gltf(uri=None):
    positions = b"".join(struct.pack("<3f", *v) for v in VERTICES)
    indices = b"".join(struct.pack("<3H", *t) for t in TRIANGLES)
    data = positions + indices
    buffer = {"byteLength": len(data)}
    if uri is None:
        buffer["uri"] = "data:application/octet-stream;base64," + base64.b64encode(data).decode()
    document = {
        "asset": {"version": "2.0", "generator": "make_models.py"},
        "scene": 0, "scenes": [{"nodes": [0]}],
        "nodes": [{"name": "stand", "translation": [10, 0, 0], "children": [1]},
                  {"name": "box", "mesh": 0, "scale": [2, 2, 2]}],
        "materials": [{"name": "red", "pbrMetallicRoughness": {"baseColorFactor": [1, 0, 0, 0.5]}}],
        "meshes": [{"name": "box", "primitives": [
            {"attributes": {"POSITION": 0}, "indices": 1, "material": 0}]}],
        "accessors": [
            {"bufferView": 0, "componentType": 5126, "count": 8, "type": "VEC3",
             "min": [-1, -2, -3], "max": [1, 2, 3]},
            {"bufferView": 1, "componentType": 5123, "count": 36, "type": "SCALAR"}],
        "bufferViews": [
            {"buffer": 0, "byteOffset": 0, "byteLength": len(positions), "target": 34962},
            {"buffer": 0, "byteOffset": len(positions), "byteLength": len(indices),
             "target": 34963}],
        "buffers": [buffer],
    }
    return document, data


def glb():
    document, data = gltf(uri="")
    text = json.dumps(document, separators=(",", ":")).encode()
    text += b" " * (-len(text) % 4)
    data += b"\0" * (-len(data) % 4)
    chunks = (struct.pack("<I4s", len(text), b"JSON") + text
              + struct.pack("<I4s", len(data), b"BIN\0") + data)
    return b"glTF" + struct.pack("<II", 2, 12 + len(chunks)) + chunks


def dae():
    positions = " ".join(str(c) for v in VERTICES for c in v)
    corners = " ".join(str(k) for q in QUADS for k in q)
    return f"""<?xml version="1.0" encoding="utf-8"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
  <asset><unit name="meter" meter="1"/><up_axis>Y_UP</up_axis></asset>
  <library_geometries><geometry id="box" name="box"><mesh>
    <source id="positions">
      <float_array id="numbers" count="24">{positions}</float_array>
      <technique_common><accessor source="#numbers" count="8" stride="3">
        <param name="X" type="float"/><param name="Y" type="float"/><param name="Z" type="float"/>
      </accessor></technique_common>
    </source>
    <vertices id="vertices"><input semantic="POSITION" source="#positions"/></vertices>
    <polylist count="6"><input semantic="VERTEX" source="#vertices" offset="0"/>
      <vcount>4 4 4 4 4 4</vcount><p>{corners}</p></polylist>
  </mesh></geometry></library_geometries>
  <library_visual_scenes><visual_scene id="scene"><node id="n" name="stand">
    <translate>10 0 0</translate><instance_geometry url="#box"/>
  </node></visual_scene></library_visual_scenes>
  <scene><instance_visual_scene url="#scene"/></scene>
</COLLADA>
""".encode()


def off():
    lines = ["OFF", "8 6 0"] + [" ".join(map(str, v)) for v in VERTICES]
    return "\n".join(lines + ["4 " + " ".join(map(str, q)) for q in QUADS]).encode() + b"\n"


def points():
    return "".join(f"{x} {y} {z}\n" for x, y, z in VERTICES).encode()


FILES = {
    "box.stl": stl, "box.ply": ply, "box.glb": glb, "box.dae": dae, "box.off": off,
    "box.xyz": points,
    "box.gltf": lambda: json.dumps(gltf()[0], indent=1).encode() + b"\n",
}

if __name__ == "__main__":
    for name, make in FILES.items():
        pathlib.Path(sys.argv[1], name).write_bytes(make())
