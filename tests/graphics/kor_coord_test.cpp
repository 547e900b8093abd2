// SPDX-License-Identifier: MIT
#include "kortools/graphics/kor_coord.h"

#include "kortools/graphics/view_tracker.h"
#include "tests/ui/recording_window.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

using kor_test::RecordingWindow;
using kortools::ui::ScrollBar;

namespace {

using Calls = std::vector<std::string>;

constexpr float ladder[] = { 1 / 32.0F, 1 / 16.0F, 1 / 8.0F, 1 / 6.0F, 1 / 5.0F, 1 / 4.0F, 1 / 3.0F,
    1 / 2.0F, 2 / 3.0F, 1, 2, 3, 4, 5, 6, 8, 16, 24, 32 };

// What must hold after every operation, by arithmetic in doubles on one axis.
struct Axis {
    int client, doc, scroll, total, vis_low, vis_end, vis_client_low, vis_client_end;
    float zoom;
};

void expect_limits(Axis const &axis)
{
    int const scaled = static_cast<int>(static_cast<float>(axis.doc) * axis.zoom);
    int const room = axis.client - scaled;
    EXPECT_GE(axis.scroll, 0);
    EXPECT_LE(axis.scroll, std::max(0, -room));
    EXPECT_GE(axis.total, scaled - 1); // whole units, in floats
    EXPECT_LE(axis.total, scaled + static_cast<double>(axis.zoom) + 1);
    EXPECT_GE(axis.vis_low, 0);
    EXPECT_LT(axis.vis_low, axis.vis_end);
    EXPECT_LE(axis.vis_end, axis.doc);
    EXPECT_EQ(axis.vis_client_low, std::max(room, 0) / 2);
    EXPECT_EQ(axis.vis_client_end - axis.vis_client_low, std::min(axis.client, scaled));
    // The visible units reach from one end of what is seen to the other, and one beyond at most.
    double const low = axis.scroll / static_cast<double>(axis.zoom);
    double const end
        = (axis.scroll + std::min(axis.client, scaled)) / static_cast<double>(axis.zoom);
    EXPECT_NEAR(axis.vis_low, std::floor(low + 1e-4), 1);
    EXPECT_GE(axis.vis_end, std::min<double>(axis.doc, std::floor(end - 1e-4)));
    EXPECT_LE(axis.vis_end, std::ceil(end + 1e-4) + 1 + 1 / axis.zoom);
}

void expect_limits(CKorCoord const &coord, RecordingWindow const &window)
{
    EXPECT_GE(coord.GetZoom(), 1 / 32.0F);
    EXPECT_LE(coord.GetZoom(), 32);
    EXPECT_EQ(CPoint(coord.GetScrollPos()), window.scroll_position);
    CRect vis_doc;
    coord.GetVisDoc(vis_doc);
    CRect vis_client;
    coord.GetVisClient(vis_client);
    CSize const scroll = coord.GetScrollPos();
    CSize const doc = coord.GetDocSize();
    CSize const client = window.client_size;
    CSize const total = window.scroll_total;
    expect_limits({ client.cx, doc.cx, scroll.cx, total.cx, vis_doc.left, vis_doc.right,
        vis_client.left, vis_client.right, coord.GetZoom() });
    expect_limits({ client.cy, doc.cy, scroll.cy, total.cy, vis_doc.top, vis_doc.bottom,
        vis_client.top, vis_client.bottom, coord.GetZoom() });
}

// One operation as a user's program does it.
class Driver {
public:
    Driver(CKorCoord &coord, RecordingWindow &window, unsigned seed)
        : m_coord(coord)
        , m_window(window)
        , m_random(seed)
    {
    }
    void step()
    {
        CSize const doc = m_coord.GetDocSize();
        CPoint const point(pick(0, doc.cx - 1), pick(0, doc.cy - 1));
        CSize delta(pick(-300, 300), pick(-300, 300));
        float const zoom = std::exp2(static_cast<float>(pick(-600, 600)) / 100);
        switch (pick(0, 7)) {
        case 0:
            m_coord.SetZoom(zoom, pick(0, 1));
            break;
        case 1:
            center(zoom, point);
            break;
        case 2:
            m_coord.Zoom(pick(0, 1));
            break;
        case 3:
            m_coord.AutoFit(pick(0, 1), pick(0, 1));
            break;
        case 4:
            m_coord.SetVisDoc(CRect(point, point + CSize(pick(1, 200), pick(1, 200))));
            break;
        case 5:
            m_window.client_size = { pick(1, 900), pick(1, 700) };
            m_coord.ClientSizeChange(m_window.client_size);
            break;
        default:
            m_coord.Scroll(delta);
        }
    }

private:
    int pick(int low, int high) { return std::uniform_int_distribution(low, high)(m_random); }

    // The point comes to lie under the mouse, but for snapping, unless an end of the document is.
    void center(float zoom, CPoint const &point)
    {
        m_window.cursor_pos
            = { pick(0, m_window.client_size.cx), pick(0, m_window.client_size.cy) };
        if (!m_coord.SetZoomAndCenter(zoom, point, 0, 1))
            return;
        CPoint seen = point;
        m_coord.DocToViewport(seen);
        CSize const off = seen - m_window.cursor_pos;
        double const slack = 2.0 + m_coord.GetZoom();
        CSize const pos = m_coord.GetScrollPos();
        CSize const scaled(
            static_cast<int>(static_cast<float>(m_coord.GetDocSize().cx) * m_coord.GetZoom()),
            static_cast<int>(static_cast<float>(m_coord.GetDocSize().cy) * m_coord.GetZoom()));
        if (pos.cx > 0 && pos.cx < scaled.cx - m_window.client_size.cx - slack) {
            EXPECT_LE(std::abs(off.cx), slack);
        }
        if (pos.cy > 0 && pos.cy < scaled.cy - m_window.client_size.cy - slack) {
            EXPECT_LE(std::abs(off.cy), slack);
        }
    }

    CKorCoord &m_coord;
    RecordingWindow &m_window;
    std::mt19937 m_random;
};

} // namespace

TEST(Coord, StaysWithinItsLimitsWhateverIsDone)
{
    for (unsigned seed = 0; seed < 40; ++seed) {
        RecordingWindow window({ 400, 300 }, seed % 2 == 0);
        CKorCoord coord(&window, CSize(40 + int(seed) * 97, 1500 / (1 + int(seed))));
        Driver driver(coord, window, seed);
        for (int i = 0; i < 250; ++i) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(i));
            driver.step();
            expect_limits(coord, window);
            CSize const pos = coord.GetScrollPos();
            coord.InitInfo(); // changes nothing when nothing changed
            EXPECT_EQ(coord.GetScrollPos(), pos);
            ASSERT_FALSE(testing::Test::HasFailure());
        }
    }
}

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
