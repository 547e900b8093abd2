// SPDX-License-Identifier: MIT
#include "kortools/graphics/kor_coord.h"

#include "kortools/graphics/view_tracker.h"
#include "tests/ui/recording_window.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

using kor_test::RecordingWindow;
using kortools::ui::ScrollBar;

namespace {

using Calls = std::vector<std::string>;

constexpr float ladder[] = { 1 / 32.0F, 1 / 16.0F, 1 / 8.0F, 1 / 6.0F, 1 / 5.0F, 1 / 4.0F, 1 / 3.0F,
    1 / 2.0F, 2 / 3.0F, 1, 2, 3, 4, 5, 6, 8, 16, 24, 32 };

} // namespace

TEST(Coord, StepsOverTheLadder)
{
    RecordingWindow window({ 400, 300 });
    CKorCoord coord(&window, CSize(1000, 1000));
    std::size_t const one = 9;
    for (std::size_t i = one + 1; i < std::size(ladder); ++i) {
        EXPECT_EQ(coord.Zoom(1), 1);
        EXPECT_EQ(coord.GetZoom(), ladder[i]);
    }
    EXPECT_EQ(coord.Zoom(1), 0);
    for (std::size_t i = std::size(ladder) - 1; i-- > 0;) {
        EXPECT_EQ(coord.Zoom(0), 1);
        EXPECT_EQ(coord.GetZoom(), ladder[i]);
    }
    EXPECT_EQ(coord.Zoom(0), 0);
    coord.SetZoom(0.9995F, 0); // as good as 1
    EXPECT_EQ(coord.GetDefaultRatio(1), 2);
    EXPECT_EQ(coord.GetDefaultRatio(0), 2 / 3.0F);
    EXPECT_EQ(coord.VerifyZoom(100, 0), 32);
    EXPECT_EQ(coord.VerifyZoom(NAN, 1), 1 / 32.0F);

    coord.Init(&window, CSize(INT_MAX, INT_MAX));
    CSize to_end(INT_MAX, INT_MAX);
    coord.Scroll(to_end);
    coord.Zoom(0); // around the end
    EXPECT_GT(coord.GetScrollPos().cx, INT_MAX / 2);
}

TEST(Coord, FitsAndTellsTheWindow)
{
    RecordingWindow window({ 400, 300 });
    CKorCoord coord(&window, CSize(100, 80));
    window.take_calls();
    EXPECT_EQ(coord.AutoFit(0, 0), 0);
    EXPECT_EQ(window.take_calls(), Calls {});
    EXPECT_EQ(coord.AutoFit(1, 1), 1);
    EXPECT_EQ(coord.GetZoom(), 3.75F * 0.98F);
    EXPECT_EQ(window.take_calls(), Calls { "erase" });
    EXPECT_EQ(coord.AutoFit(0, 0), 1);
    EXPECT_EQ(coord.GetZoom(), 1);
    coord.Init(&window, CSize(830, 300));
    window.bars = { ScrollBar::Vertical };
    EXPECT_EQ(coord.AutoFit(0, 1), 1);
    EXPECT_EQ(coord.GetZoom(), 0.5F); // 415 pixels without the bar
    coord.Init(&window, CSize(100, 634));
    window.take_calls();
    EXPECT_EQ(coord.SetVisDoc({ 10, 10, 20, 30 }), 1);
    EXPECT_EQ(coord.GetZoom(), 15); // higher than wide: 300 pixels for 20
    EXPECT_EQ(window.take_calls(), (Calls { "freeze", "redraw", "erase" }));
    EXPECT_EQ(window.scroll_total, CSize(1500, 9510));
    EXPECT_EQ(window.scroll_step, CSize(30, 30));    // whole units
    EXPECT_EQ(coord.GetScrollPos(), CSize(15, 150)); // 25 snapped down
    CSize far_away(100000, -100000);
    EXPECT_EQ(coord.Scroll(far_away), 1);
    EXPECT_EQ(far_away, CSize(1080, -150)); // 1100 - 15, snapped
}

TEST(Coord, MapsPointsAndRectanglesBothWays)
{
    RecordingWindow window({ 400, 300 });
    CKorCoord coord(&window, CSize(100, 1000));
    coord.SetZoomAndCenter(2, CPoint(50, 500), 0, 0); // page from x 100; scrolled by 850
    struct Row {
        CPoint client, doc;
        int is_inside;
    } const rows[] = { { { 100, 0 }, { 0, 425 }, 1 }, { { 299, 299 }, { 99, 574 }, 1 },
        { { 99, 0 }, { 0, 425 }, 1 }, { { 98, 0 }, { 0, 424 + 1 }, 0 },
        { { 300, -850 }, { 99, 0 }, 0 }, { { 200, 5000 }, { 50, 999 }, 0 } };
    for (Row const &row : rows) {
        CPoint point = row.client;
        EXPECT_EQ(coord.ClientToDoc(point), row.is_inside) << testing::PrintToString(row.client);
        EXPECT_EQ(point, row.doc);
    }
    CPoint point(0, 425);
    coord.DocToPage(point);
    EXPECT_EQ(point, CPoint(100, 850));

    CRect rect(305, 11, 101, 7); // inverted, odd pixels, past the edge
    EXPECT_EQ(coord.ClientToDoc(rect), 0);
    EXPECT_EQ(rect, CRect(0, 428, 100, 431));
    coord.DocToViewport(rect);
    EXPECT_EQ(rect, CRect(100, 6, 300, 12));
    EXPECT_EQ(coord.ClientToDoc(rect), 1);
    CRect visible;
    coord.GetVisPage(visible);
    EXPECT_EQ(visible, CRect(100, 850, 300, 1150));

    kor_test::RecordingDC dc;
    coord.EraseBackground(&dc, 0x0000FF, 0);
    EXPECT_EQ(dc.calls, (Calls { "fill (0, 0, 100, 300) 255", "fill (300, 0, 400, 300) 255" }));
    coord.EraseBackground(&dc, 0x0000FF, 1);
    EXPECT_EQ(dc.calls.back(), "fill (0, 0, 400, 300) 255");

    coord.Init(&window, CSize(1000, 1000));
    coord.SetZoom(1.5F, 0);
    CSize delta(101, 0);
    coord.Scroll(delta); // to 67 units, which begin at 100.5
    EXPECT_EQ(delta, CSize(100, 0));
    coord.GetVisDoc(visible);
    EXPECT_EQ(visible, CRect(66, 0, 335, 201));
    window.take_calls();
    coord.ClientSizeChange({ 401, 299 });
    EXPECT_EQ(window.take_calls(), Calls {});
    coord.ClientSizeChange({ 1600, 299 }); // the document moves to the middle
    EXPECT_EQ(window.take_calls(), Calls { "erase" });
}

TEST(Coord, ComesBackToEveryUnitAtEveryZoom)
{
    RecordingWindow window({ 400, 300 });
    CKorCoord coord(&window, CSize(5000, 4000));
    for (float const zoom : ladder) {
        coord.SetZoomAndCenter(zoom, CPoint(2500, 2000), 0, 0);
        std::vector<CPoint> points(1000);
        for (int i = 0; i < 1000; ++i)
            points[static_cast<std::size_t>(i)] = { i * 5, 4 * i };
        std::vector<CPoint> mapped = points;
        coord.DocToViewport(mapped.data(), int(mapped.size()));
        ASSERT_EQ(coord.ClientToDoc(mapped.data(), int(mapped.size())), 1) << zoom;
        int const slack = zoom < 1 ? static_cast<int>(1 / zoom + 1) : 0; // units in a pixel
        for (std::size_t i = 0; i < points.size(); ++i) {
            CSize const off = points[i] - mapped[i];
            ASSERT_TRUE(off.cx >= 0 && off.cx <= slack && off.cy >= 0 && off.cy <= slack)
                << zoom << testing::PrintToString(points[i]) << testing::PrintToString(mapped[i]);
            CPoint single = points[i];
            coord.DocToViewport(single);
            coord.ClientToDoc(single);
            ASSERT_EQ(single, mapped[i]);
        }
    }
}
