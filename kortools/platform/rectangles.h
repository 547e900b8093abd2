// SPDX-License-Identifier: MIT
// The window system's rules for rectangles of integers: right and bottom lie outside, and a
// rectangle that is not wider and higher than 0 is empty. Coordinates wrap around. A result may be
// one of the operands.
#pragma once

namespace kortools::platform {

struct Rectangle {
    int left;
    int top;
    int right;
    int bottom;

    bool operator==(Rectangle const &) const = default;
};

// As the system has them; the portable ones where there is no system to ask.
bool is_empty(Rectangle const &rect);
bool is_equal(Rectangle const &a, Rectangle const &b);
bool contains(Rectangle const &rect, int x, int y);
void inflate(Rectangle &rect, int dx, int dy); // on each side
void offset(Rectangle &rect, int dx, int dy);

// These return whether the result has an area; when it has none it is all zero.
bool intersect(Rectangle &result, Rectangle const &a, Rectangle const &b);
bool unite(
    Rectangle &result, Rectangle const &a, Rectangle const &b); // an empty one counts for nothing

// What is left of `a` when `b` covers one whole side of it; else `a` itself.
bool subtract(Rectangle &result, Rectangle const &a, Rectangle const &b);

namespace portable {

bool is_empty(Rectangle const &rect);
bool is_equal(Rectangle const &a, Rectangle const &b);
bool contains(Rectangle const &rect, int x, int y);
void inflate(Rectangle &rect, int dx, int dy);
void offset(Rectangle &rect, int dx, int dy);
bool intersect(Rectangle &result, Rectangle const &a, Rectangle const &b);
bool unite(Rectangle &result, Rectangle const &a, Rectangle const &b);
bool subtract(Rectangle &result, Rectangle const &a, Rectangle const &b);

} // namespace portable
} // namespace kortools::platform
