// SPDX-License-Identifier: MIT
#include "kortools/platform/rectangles.h"

#include <algorithm>
#include <climits>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <utility>

namespace platform = kortools::platform;
namespace portable = kortools::platform::portable;
using platform::Rectangle;

namespace kortools::platform {

void PrintTo(Rectangle const &rect, std::ostream *stream)
{
    *stream << '(' << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom
            << ')';
}

} // namespace kortools::platform

namespace {

// A rectangle as the unit squares in it.
using Squares = std::set<std::pair<int, int>>;

Squares squares_of(Rectangle const &rect)
{
    Squares squares;
    for (int x = rect.left; x < rect.right; ++x) {
        for (int y = rect.top; y < rect.bottom; ++y)
            squares.emplace(x, y);
    }
    return squares;
}

// The smallest rectangle around squares.
Rectangle bounds_of(Squares const &squares)
{
    Rectangle bounds { INT_MAX, INT_MAX, INT_MIN, INT_MIN };
    for (auto const &[x, y] : squares)
        bounds = { std::min(bounds.left, x), std::min(bounds.top, y), std::max(bounds.right, x + 1),
            std::max(bounds.bottom, y + 1) };
    return squares.empty() ? Rectangle {} : bounds;
}

Rectangle subtract_squares(Rectangle const &a, Rectangle const &b)
{
    Squares left = squares_of(a);
    for (auto const &square : squares_of(b))
        left.erase(square);
    Rectangle const rest = bounds_of(left);
    return squares_of(rest) == left ? rest : bounds_of(squares_of(a));
}

void expect_squares(Rectangle const &a, Rectangle const &b)
{
    Squares const in_a = squares_of(a);
    Squares const in_b = squares_of(b);
    Squares common;
    std::ranges::set_intersection(in_a, in_b, std::inserter(common, common.end()));
    Squares all = in_a;
    all.insert(in_b.begin(), in_b.end());
    Rectangle result = a;
    ASSERT_EQ(platform::intersect(result, result, b), !common.empty());
    ASSERT_EQ(result, bounds_of(common));
    result = b;
    ASSERT_EQ(platform::unite(result, a, result), !all.empty());
    ASSERT_EQ(result, bounds_of(all));
    Rectangle const rest = subtract_squares(a, b);
    ASSERT_EQ(platform::subtract(result, a, b), rest != Rectangle {});
    ASSERT_EQ(result, rest);
    ASSERT_EQ(platform::is_empty(a), in_a.empty());
    ASSERT_EQ(platform::contains(a, b.left, b.top), in_a.count({ b.left, b.top }) == 1);
}

// The portable rules beside those of the system the tests run on.
void expect_same(Rectangle const &a, Rectangle const &b)
{
    for (auto const &[system, own] : { std::pair(&platform::intersect, &portable::intersect),
             std::pair(&platform::unite, &portable::unite),
             std::pair(&platform::subtract, &portable::subtract) }) {
        Rectangle expected {};
        Rectangle result {};
        ASSERT_EQ(own(result, a, b), system(expected, a, b));
        ASSERT_EQ(result, expected);
    }
    Rectangle expected = a;
    Rectangle result = a;
    platform::inflate(expected, b.left, b.top);
    portable::inflate(result, b.left, b.top);
    platform::offset(expected, b.right, b.bottom);
    portable::offset(result, b.right, b.bottom);
    ASSERT_EQ(result, expected);
    ASSERT_EQ(portable::is_empty(a), platform::is_empty(a));
    ASSERT_EQ(portable::is_equal(a, b), platform::is_equal(a, b));
    ASSERT_EQ(portable::contains(a, b.left, b.top), platform::contains(a, b.left, b.top));
}

} // namespace

TEST(Rectangles, AreSetsOfSquares)
{
    std::mt19937 random(1);
    auto const pick = [&] { return static_cast<int>(random() % 6) - 2; };
    for (int i = 0; i < 10000; ++i) {
        Rectangle const a { pick(), pick(), pick(), pick() };
        Rectangle const b { pick(), pick(), pick(), pick() };
        SCOPED_TRACE(testing::PrintToString(a) + " and " + testing::PrintToString(b));
        ASSERT_NO_FATAL_FAILURE(expect_squares(a, b));
        ASSERT_NO_FATAL_FAILURE(expect_same(a, b));
    }
}

TEST(Rectangles, AreThoseOfTheSystemUpToTheLimits)
{
    std::mt19937 random(2);
    auto const pick = [&] {
        int const choices[] { 0, 1, -1, 100, INT_MAX, INT_MIN, static_cast<int>(random()) };
        return choices[random() % 7];
    };
    for (int i = 0; i < 10000; ++i) {
        Rectangle const a { pick(), pick(), pick(), pick() };
        Rectangle const b { pick(), pick(), pick(), pick() };
        SCOPED_TRACE(testing::PrintToString(a) + " and " + testing::PrintToString(b));
        ASSERT_NO_FATAL_FAILURE(expect_same(a, b));
    }
}
