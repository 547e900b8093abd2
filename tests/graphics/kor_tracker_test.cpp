// SPDX-License-Identifier: MIT
#include "kortools/graphics/kor_tracker.h"

#include "kortools/graphics/kor_coord.h"
#include "kortools/graphics/view_tracker.h"
#include "tests/ui/recording_window.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using kor_test::RecordingDC;
using kor_test::RecordingWindow;
using kortools::ui::CursorShape;

namespace {

using Calls = std::vector<std::string>;

constexpr unsigned int left_key = 0x25;
constexpr unsigned int up_key = 0x26;
constexpr unsigned int right_key = 0x27;
constexpr unsigned int down_key = 0x28;

class Trackers : public testing::Test {
protected:
    Trackers() { CKorTracker::SetNominalHandleSize(4); }
    ~Trackers() override { CKorTracker::SetNominalHandleSize(6); }

    RecordingWindow m_window { CXSize(400, 300) };
};

} // namespace

TEST_F(Trackers, ShowHandlesWhereThereIsRoom)
{
    struct Row {
        CRect rect;
        int size, mask;
    } const rows[] = { { { 0, 0, 10, 10 }, 4, 0x0F }, { { 0, 0, 6, 40 }, 3, 0xAF },
        { { 100, 10, 0, 0 }, 4, 0x5F }, { { 5, 5, 5, 5 }, 2, 0x0F }, { { 0, 0, 90, 90 }, 4, 0xFF },
        { { INT_MIN, 0, INT_MAX, 1 }, 2, 0x0F } };
    for (Row const &row : rows) {
        CKorTracker tracker(row.rect, CKorTracker::solidLine);
        SCOPED_TRACE(testing::PrintToString(row.rect));
        EXPECT_EQ(tracker.GetHandleSize(), row.size);
        EXPECT_EQ(tracker.GetHandleMask(), row.mask);
        EXPECT_EQ(tracker.SetStyle(CKorTracker::fixedHandleSize), CKorTracker::solidLine);
        EXPECT_EQ(tracker.GetHandleSize(), 4);
        tracker.SetConstraint(1, 0);
        EXPECT_EQ(tracker.GetHandleMask(), 0x0F);
    }
}

TEST_F(Trackers, AreHitByTheirOwnEdges)
{
    CKorTracker tracker(CRect(100, 100, 200, 160), CKorTracker::solidLine);
    struct Row {
        CPoint point;
        int upright, turned; // turned: left and right swapped
        CursorShape shape;
    } const rows[] = { { { 100, 100 }, 0, 1, CursorShape::SizeDiagonal },
        { { 98, 98 }, 0, 1, CursorShape::SizeDiagonal },
        { { 201, 98 }, 1, 0, CursorShape::SizeAntidiagonal },
        { { 201, 161 }, 2, 3, CursorShape::SizeDiagonal },
        { { 99, 161 }, 3, 2, CursorShape::SizeAntidiagonal },
        { { 150, 101 }, 4, 4, CursorShape::SizeVertical },
        { { 199, 130 }, 5, 7, CursorShape::SizeHorizontal },
        { { 150, 159 }, 6, 6, CursorShape::SizeVertical },
        { { 100, 130 }, 7, 5, CursorShape::SizeHorizontal },
        { { 130, 130 }, 8, 8, CursorShape::Move }, { { 97, 98 }, -1, -1, CursorShape::Move },
        { { 202, 130 }, -1, -1, CursorShape::Move } };
    for (bool const is_turned : { false, true }) {
        tracker.SetRect(is_turned ? CRect(200, 100, 100, 160) : CRect(100, 100, 200, 160));
        for (Row const &row : rows) {
            SCOPED_TRACE(testing::PrintToString(row.point));
            int const hit = tracker.HitTest(row.point);
            EXPECT_EQ(hit, is_turned ? row.turned : row.upright);
            EXPECT_EQ(tracker.NormalizeHit(hit), row.upright);
            EXPECT_EQ(tracker.SetCursor(&m_window, row.point), hit != CKorTracker::nothing);
            EXPECT_EQ(m_window.cursor, row.shape);
        }
        EXPECT_EQ(tracker.GetTrueRect(), CRect(98, 98, 202, 162));
    }
}

TEST_F(Trackers, KeepTheirSizeAndRatio)
{
    struct Row {
        int handle, mode;
        float ratio;
        bool may_invert;
        CRect rect, result;
    } const rows[] = {
        { 2, 1, 0.5F, false, { 0, 0, 101, 9 }, { 0, 0, 101, 50 } }, // 50.5 goes down
        { 3, 2, 2.0F, false, { 70, 0, 100, 50 }, { 75, 0, 100, 50 } },
        { 2, 3, 0.5F, false, { 0, 0, 100, 9 }, { 0, 0, 100, 50 } },    // other modes by the ratio
        { 2, 1, 0.5F, true, { 0, 0, -100, 50 }, { 0, 0, -100, -50 } }, // signed
        { 5, 1, 0.5F, false, { 0, 0, 100, 10 }, { 0, 0, 100, 10 } },   // sides are free
        { 2, 0, 1, false, { 0, 0, 3, 50 }, { 0, 0, 8, 50 } },          // at least 8
        { 2, 0, 1, false, { 0, 0, -30, -3 }, { 0, 0, 8, 8 } },
        { 0, 0, 1, false, { 120, 99, 100, 100 }, { 92, 92, 100, 100 } },
        { 7, 0, 1, false, { 95, 99, 100, 100 }, { 92, 99, 100, 100 } }, // moves one edge only
        { 8, 1, 0.5F, false, { 0, 0, 1, 1 }, { 0, 0, 1, 1 } },
        { 2, 0, 1, true, { 0, INT_MIN, 50, INT_MAX }, { 0, INT_MIN, 50, INT_MAX } },
    };
    for (Row const &row : rows) {
        CKorTracker tracker;
        tracker.SetConstraint(row.mode, row.ratio);
        tracker.SetAllowInvert(row.may_invert);
        CRect rect = row.rect;
        tracker.AdjustRect(row.handle, rect);
        EXPECT_EQ(rect, row.result) << testing::PrintToString(row.rect) << row.handle;
    }
}

TEST_F(Trackers, ObeyArrowKeys)
{
    struct Row {
        unsigned int key, modifier;
        CRect free, fixed; // without constraint, and with the ratio 0.5
    } const rows[] = { { up_key, 0, { 10, 9, 30, 19 }, { 10, 9, 30, 19 } },
        { right_key, 0, { 11, 10, 31, 20 }, { 11, 10, 31, 20 } },
        { up_key, 0x10, { 10, 9, 30, 20 }, { 10, 9, 32, 20 } },
        { right_key, 0x10, { 11, 10, 30, 20 }, { 11, 10, 30, 19 } }, // 9.5 goes down
        { down_key, 0x11, { 10, 10, 30, 21 }, { 10, 10, 32, 21 } },
        { right_key, 0x11, { 10, 10, 31, 20 }, { 10, 10, 31, 20 } } };
    for (Row const &row : rows) {
        for (int const mode : { 0, 1 }) {
            CKorTracker tracker(CRect(10, 10, 30, 20), CKorTracker::solidLine);
            tracker.SetConstraint(mode, 0.5F);
            tracker.SetWnd(&m_window);
            m_window.hold_keys(
                { { row.modifier, true }, { 0x11, row.modifier != 0 } }); // Shift wins
            EXPECT_EQ(tracker.OnKey(row.key, nullptr), 1);
            EXPECT_EQ(tracker.GetRect(), mode ? row.fixed : row.free) << row.key << row.modifier;
        }
    }
    CKorTracker tracker(CRect(10, 10, 30, 20), CKorTracker::solidLine);
    CRect const bounds(9, 0, 31, 20);
    for (int i = 0; i < 3; ++i) // stays inside with its size
        EXPECT_EQ(tracker.OnKey(right_key, &bounds), 1);
    EXPECT_EQ(tracker.GetRect(), CRect(11, 10, 31, 20));
    tracker.SetWnd(&m_window);
    tracker.SetConstraint(1, 0.5F);
    m_window.hold_keys({ { 0x10, true } });
    tracker.OnKey(up_key, &bounds); // would grow to the right, too
    EXPECT_EQ(tracker.GetRect(), CRect(11, 10, 31, 20));
}

TEST_F(Trackers, DrawRubberBands)
{
    CKorTracker tracker(CRect(1, 2, 3, 4), CKorTracker::dottedLine | CKorTracker::redLine);
    m_window.record("move 20 95 up 30 80");
    EXPECT_TRUE(tracker.TrackRubberBand(&m_window, { 50, 90 }));
    EXPECT_EQ(tracker.GetRect(), CRect(30, 80, 50, 90));
    EXPECT_EQ(m_window.frames, (std::vector { CXRect(20, 90, 50, 98), CXRect(30, 80, 50, 90) }));

    RecordingDC dc;
    tracker.Draw(&dc);
    ASSERT_EQ(dc.calls.size(), 7U);
    EXPECT_EQ(dc.calls[0], "dots (30, 80, 50, 90) 255");
    EXPECT_EQ(dc.calls[1], "fill (28, 78, 32, 82) 0");
    struct Failure { };
    tracker.SetCallback([](CKorTracker *, CKorTracker::Event, void *) { throw Failure(); });
    m_window.take_calls();
    EXPECT_THROW(tracker.TrackHandle(8, &m_window, { 50, 90 }), Failure);
    EXPECT_EQ(m_window.take_calls(), (Calls { "capture", "hide", "release" }));
    EXPECT_FALSE(tracker.IsTracking());
    EXPECT_THROW(tracker.TrackRubberBand(&m_window, { 50, 90 }), Failure);
    CRect rect(0, 0, -30, -3);
    tracker.AdjustRect(CKorTracker::bottomRight, rect); // may be inverted no more
    EXPECT_EQ(rect, CRect(0, 0, 8, 8));
}

TEST_F(Trackers, OnAViewKeepToWholeUnits)
{
    CKorCoord coord(&m_window, CSize(100, 100));
    CViewTracker *const tracker = coord.InitTracker(CRect(10, 10, 30, 20));
    tracker->SetMinSize({ 1, 1 });
    for (float const zoom : { 1 / 5.0F, 2 / 3.0F, 1.3F, 3.0F, 7.5F, 32.0F }) {
        SCOPED_TRACE(zoom);
        coord.SetZoomAndCenter(zoom, CPoint(20, 15), 0, 0);
        CRect expected = tracker->GetDocRect();
        coord.DocToViewport(expected);
        EXPECT_EQ(tracker->GetRect(), expected);
        CRect const before = tracker->GetDocRect();
        auto const drag = [&](int handle, CSize const &units, char const *end) {
            CPoint const target = CPoint(0, 0)
                + CSize(CPoint(static_cast<int>(std::lround(static_cast<float>(units.cx) * zoom)),
                    static_cast<int>(std::lround(static_cast<float>(units.cy) * zoom))));
            m_window.record(
                "move 1 1 move " + std::to_string(target.x) + ' ' + std::to_string(target.y) + end);
            tracker->TrackHandle(handle, &m_window, { 0, 0 });
        };
        drag(CKorTracker::inside, { 15, 10 }, " lost");
        EXPECT_EQ(tracker->GetDocRect(), before);
        drag(CKorTracker::inside, { 15, 10 }, " up 1000000 -1000000");
        EXPECT_EQ(tracker->GetDocRect(), CRect(80, 0, 100, 10)); // all the way, with its size
        tracker->SetDocRect(before);
        tracker->SetAllowInvert(true);
        drag(CKorTracker::leftSide, { -5, 50 }, " up -1000000 0");
        EXPECT_EQ(tracker->GetDocRect(), CRect(0, 10, 30, 20));
        tracker->SetDocRect(before);
        drag(CKorTracker::rightSide, { 0, 0 }, " up -1000000 0"); // over to the other side
        EXPECT_EQ(tracker->GetDocRect(), CRect(0, 10, 10, 20));
        tracker->SetDocRect(before);
    }
    coord.ReleaseTracker(tracker);
}
