# SPDX-License-Identifier: MIT
"""The check of the binary interface sees each kind of change that breaks programs, and no other:
abi_rules_test.py SOURCE WORK"""
import os
import pathlib
import sys

SOURCE, WORK = map(pathlib.Path, sys.argv[1:])
sys.dont_write_bytecode = True
sys.path.insert(0, str(SOURCE / "scripts"))
from checks import abi_rules, tree  # noqa: E402

HEADER = """#pragma once
struct Point { int x; };
enum class Color { Red = 1 };
template <class T> class Box { T m_value; public: T get() const { return m_value; } };
class Private;
class __attribute__((visibility("default"))) Shape {
public:
    Shape();
    virtual ~Shape();
    int area(Point const &point, Color color, Box<int> const &box) const;
private:
    Private *m_private;
};
"""
SOURCE_TEXT = """#include "kortools/shape.h"
class Private { int a; };
Shape::Shape() : m_private(nullptr) {}
Shape::~Shape() { delete m_private; }
int Shape::area(Point const &, Color, Box<int> const &box) const { return box.get(); }
"""
LIBRARY = pathlib.Path("libshape.so")
CASES = [  # what is replaced, by what, and what the report says; None: it says nothing
    ("class Private { int a; };", "class Private { long a, b; };", None),
    ("Point const &point", "Point const &other", None),
    ("int x;", "int x, y;", "'int y'"),
    ("Red = 1", "Red = 2", "Color::Red"),
    ("T m_value;", "T m_value, m_more;", "'int m_more'"),
    ("Private *m_private;", "Private *m_private; int m_count;", "'int m_count'"),
    ("virtual ~Shape();", "virtual void draw() {} virtual ~Shape();", "Shape::draw()"),
    ("Shape::Shape()", "__attribute__((visibility(\"default\"))) void f() {} Shape::Shape()",
     "1 Added function"),
]


def build(before="", after="", *flags):
    for path, text in (("kortools/shape.h", HEADER), ("shape.cpp", SOURCE_TEXT)):
        pathlib.Path(path).write_text(text.replace(before, after, 1) if before else text)
    tree.run(["g++", "-std=c++20", *(flags or ["-g"]), "-fvisibility=hidden", "-shared", "-fPIC",
              "-I.", "shape.cpp", "-o", LIBRARY], check=True)


(WORK / "kortools").mkdir(parents=True, exist_ok=True)
os.chdir(WORK)
abi_rules.LIBRARIES = {LIBRARY: lambda: ["kortools/shape.h"]}
build()
abi_rules.write(LIBRARY, abi_rules.baseline(LIBRARY))
assert list(abi_rules.abi()) == [], "the same library differs"
for before, after, expected in CASES:
    build(before, after)
    report = "\n".join(abi_rules.abi())
    assert (expected in report) if expected else not report, f"{after}: {report}"
build("", "", "-O1")
assert "no debug information" in "".join(abi_rules.abi())
