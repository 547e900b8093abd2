// SPDX-License-Identifier: MIT
#include "kortools/graphics/float_rect.h"

#include "kortools/archive/exception.h"
#include "kortools/graphics/rect.h"

#include <climits>
#include <cstddef>
#include <gtest/gtest.h>
#include <limits>
#include <utility>

namespace {

struct NativePoint {
    int x, y;
};
struct NativeSize {
    int cx, cy;
};
struct NativeRect {
    int left, top, right, bottom;
};

static_assert(offsetof(CXPoint, y) == 4 && offsetof(CXSize, cy) == 4);
static_assert(offsetof(CXRect, top) == 4 && offsetof(CXRect, right) == 8);
static_assert(offsetof(CFRect, right) == 4 && offsetof(CFRect, top) == 8);
static_assert(!std::is_convertible_v<CFRect, NativeRect>);

} // namespace

TEST(Points, PassForTheRecordsOfTheSystem)
{
    NativePoint const native { 1, -2 };
    CXPoint point = native;
    EXPECT_EQ(point, CXPoint(1, -2));
    NativePoint *const pointer = point;
    pointer->y = 7;
    EXPECT_EQ(point.y, 7);
    NativeSize const extent = CXSize(point);
    EXPECT_EQ(extent.cy, 7);
    EXPECT_EQ(point + (NativeSize { 1, 1 }), CXPoint(2, 8));
    CXRect rect(NativeRect { 1, 2, 3, 4 });
    static_cast<NativeRect *>(rect)->right = 30;
    NativeRect const back = rect;
    EXPECT_EQ(CXRect(&back), CXRect(1, 2, 30, 4));
}

TEST(Points, AddUpByKind)
{
    CXPoint const p(10, 20);
    CXSize const s(3, -4);
    CXRect const r(1, 2, 5, 8);
    static_assert(std::is_same_v<decltype(p - p), CXSize>);
    static_assert(std::is_same_v<decltype(s + p), CXPoint>);
    EXPECT_EQ(p - CXPoint(1, 2), CXPoint(9, 18)); // a size and a point
    EXPECT_EQ(p + s, CXPoint(13, 16));
    EXPECT_EQ(s - p, CXPoint(-7, -24));
    EXPECT_EQ(p + r, CXRect(11, 22, 15, 28));
    EXPECT_EQ(p - r, CXRect(-9, -18, -5, -12));
    EXPECT_EQ(s - r, r - s);
    EXPECT_EQ(CXPoint(INT_MAX, INT_MIN) + CXSize(1, -1), CXPoint(INT_MIN, INT_MAX));
    EXPECT_EQ(-CXSize(INT_MIN, 0), CXSize(INT_MIN, 0));
}

TEST(Rects, MoveGrowAndTurn)
{
    CXRect rect(CXPoint(10, 20), CXSize(30, 40));
    EXPECT_EQ(CXRect(-3, -3, 0, -2).CenterPoint(), CXPoint(-1, -2)); // toward zero
    EXPECT_EQ(rect + CXRect(1, 2, 3, 4), CXRect(9, 18, 43, 64));
    rect.InflateRect(CXSize(1, 2));
    rect.DeflateRect(2, 3);
    rect.DeflateRect(1, 2, 3, 4);
    EXPECT_EQ(rect, CXRect(12, 23, 36, 55));
    rect = CXRect(5, 1, 2, 9);
    EXPECT_FALSE(rect.PtInRect({ 3, 3 }));
    rect.NormalizeRect();
    EXPECT_EQ(rect, CXRect(2, 1, 5, 9));
    EXPECT_TRUE(rect.PtInRect({ 2, 1 }));
    EXPECT_FALSE(rect.PtInRect({ 5, 1 }));
    EXPECT_TRUE(CXRect(7, 7, 7, 9).IsRectEmpty());
    EXPECT_FALSE(CXRect(7, 7, 7, 9).IsRectNull());
    rect &= rect;
    rect |= rect;
    rect += rect;
    EXPECT_EQ(rect, CXRect(0, 0, 10, 18));
    EXPECT_FALSE(rect.SubtractRect(rect, rect));
    EXPECT_TRUE(rect.IsRectNull());
}

TEST(Rects, ScaleInTruncatingArithmeticThatWraps)
{
    EXPECT_EQ(CXRect(1, 1, 3, 3).MulDiv(3, 2), CXRect(1, 1, 4, 4));
    EXPECT_EQ(CXRect(0x40000000, 0x10000, 1, INT_MIN).MulDiv(4, 1), CXRect(0, 0x40000, 4, 0));
    try {
        CXRect(1, 1, 1, 1).MulDiv(1, 0);
        ADD_FAILURE() << "divided by 0";
    } catch (CXInvalidArgException *exception) {
        exception->Delete();
    }
}

TEST(RealGeometry, RoundsByThreeRules)
{
    struct Row {
        float value;
        int nearest, size, rect;
    } const rows[] = { { 2.5F, 2, 3, 3 }, { -2.5F, -3, -2, -3 }, { -0.7F, -1, 0, -1 },
        { -0.5F, -1, 0, -1 }, { 0.5F, 0, 1, 1 }, { -0.0F, 0, 0, 0 }, { 1.49F, 1, 1, 1 },
        { 0.49999997F, 0, 0, 0 }, { 8388609.0F, 8388609, 8388609, 8388609 }, { -1e-10F, 0, 0, 0 },
        { 3e9F, INT_MAX, INT_MAX, INT_MAX }, { -3e9F, INT_MIN, INT_MIN, INT_MIN },
        { std::numeric_limits<float>::quiet_NaN(), 0, 0, 0 } };
    for (Row const &row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(NearestInt(row.value), row.nearest);
        EXPECT_EQ(CXSize(CFSize(row.value, 2.5F)), CXSize(row.size, 3));
        EXPECT_EQ(CXPoint(CFPoint(row.value, -2.5F)), CXPoint(row.size, -2));
        EXPECT_EQ(CXRect(CFRect(row.value, 0, 0, row.value)), CXRect(row.rect, 0, 0, row.rect));
    }
    EXPECT_EQ(CXRect(CFRect(0.5F, 2.5F, -0.5F, -2.5F)), CXRect(1, -1, 3, -3));
}

TEST(RealGeometry, MeetsAtTouchingEndsAndSaysWhatIsEmptyTheOtherWayRound)
{
    EXPECT_FALSE(CFRect(0, 10, 0, 0).IsEmpty());
    EXPECT_TRUE(CFRect(0, 10, 0, 5).IsEmpty());

    CFRect result;
    EXPECT_TRUE(result.IntersectRect(CFRect(0, 4, 0, 4), CFRect(4, 9, 1, 2)));
    EXPECT_EQ(result, CFRect(4, 4, 1, 2));
    EXPECT_TRUE(result.IntersectRect(CFRect(0, 9, 3, 7), CFRect(4, 4, 1, 5)));
    EXPECT_EQ(result, CFRect(4, 4, 3, 5));
    result = CFRect(-1, -1, -1, -1);
    EXPECT_FALSE(result.IntersectRect(CFRect(0, 4, 0, 4), CFRect(1, 3, 5, 9)));
    EXPECT_EQ(result, CFRect(1, 3, -1, -1)); // x was stored before y failed
    result.UnionRect(CFRect(3, 2, 0, 0), CFRect(1, 1, 7, -1));
    EXPECT_EQ(result, CFRect(1, 2, 0, 0));
}
