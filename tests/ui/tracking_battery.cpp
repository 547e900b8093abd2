// SPDX-License-Identifier: MIT
// Trackers and the view's coordinates, as a program uses them in its windows.
#include "tests/ui/battery.h"

#include "kortools/graphics/kor_coord.h"
#include "kortools/graphics/kor_tracker.h"

#include <algorithm>
#include <cmath>
#include <random>

using namespace kor_test;

namespace {

// The events as letters: begin, changed, end, cancelled.
void note_event(CKorTracker *tracker, CKorTracker::Event event, void *data)
{
    *static_cast<std::string *>(data) += "bxec"[event];
    EXPECT_EQ(tracker->IsTracking(), event < CKorTracker::trackEnd);
}

} // namespace

TEST_F(Windows, LetTrackersFollowRecordedSessions)
{
    CKorTracker::SetNominalHandleSize(4);
    struct Row {
        CXPoint at;
        char const *session;
        CXRect rect;
        char const *events;
    } const rows[] = {
        { { 130, 130 }, "move 140 125 move 140 125 up 135 131", { 105, 101, 205, 161 }, "bxxe" },
        { { 201, 161 }, "move 231 150 up 221 191", { 100, 100, 220, 190 }, "bxxe" },
        { { 100, 100 }, "move 300 300 up 300 300", { 192, 152, 200, 160 }, "bxe" },
        { { 130, 130 }, "move 140 125 key 65 key 27", { 100, 100, 200, 160 }, "bxc" },
        { { 130, 130 }, "move 140 125 lost", { 100, 100, 200, 160 }, "bxc" },
        { { 130, 130 }, "move 140 125 right 140 125", { 100, 100, 200, 160 }, "bxc" },
        { { 130, 130 }, "up 130 130", { 100, 100, 200, 160 }, "bc" },
        { { 10, 10 }, "up 50 50", { 100, 100, 200, 160 }, "" },
        { { 50, 90 }, "move 20 95 up 30 80", { 30, 80, 50, 90 }, "bxxe" }, // a rubber band
        { { 130, 130 }, "quit", { 100, 100, 200, 160 }, "bc" },
    };
    for (Row const &row : rows) {
        SCOPED_TRACE(row.session);
        CKorTracker tracker({ 100, 100, 200, 160 }, CKorTracker::solidLine);
        std::string events;
        bool is_changed = false;
        tracker.SetCallback(note_event, &events);
        recorder.on_event = [&](std::string const &text) {
            if (!text.starts_with("press"))
                return;
            is_changed = row.at.x == 50 ? tracker.TrackRubberBand(&view(), row.at)
                                        : tracker.Track(&view(), row.at);
        };
        std::string const begin = line("", row.at.x, row.at.y);
        play("move" + begin);
        play("press" + begin);
        play(row.session);
        settle();
        EXPECT_EQ(is_changed, row.rect != CXRect(100, 100, 200, 160));
        EXPECT_EQ(tracker.GetRect(), row.rect);
        EXPECT_EQ(events, row.events);
        if (std::string(row.session).ends_with("quit")) {
            EXPECT_EQ(back_end.Run(), 5);
        }
        recorder.on_event = {};
        if (std::string(row.session).find("up") == std::string::npos)
            play("up 0 0");
        settle();
    }
    CKorTracker::SetNominalHandleSize(6);
}

namespace {

// What must hold after every operation, by arithmetic in doubles on one axis.
struct Axis {
    int client, doc, scroll, vis_low, vis_end, vis_client_low, vis_client_end;
    float zoom;
};

void expect_limits(Axis const &axis)
{
    int const scaled = static_cast<int>(static_cast<float>(axis.doc) * axis.zoom);
    int const room = axis.client - scaled;
    EXPECT_GE(axis.scroll, 0);
    EXPECT_LE(axis.scroll, std::max(0, -room));
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

class Coordinates : public Windows {
protected:
    // A program: what the window tells goes to the coordinates.
    class Program : public Recorder {
    public:
        void OnSize(CXSize const &client) override
        {
            if (coord)
                coord->ClientSizeChange(client);
        }
        void OnScroll(ScrollBar bar, int position) override
        {
            CSize const before = coord->GetScrollPos();
            bool const is_across = bar == ScrollBar::Horizontal;
            CSize delta(is_across ? position - before.cx : 0, is_across ? 0 : position - before.cy);
            coord->Scroll(delta);
        }
        CKorCoord *coord = nullptr;
    };

    int pick(int low, int high) { return std::uniform_int_distribution(low, high)(m_random); }
    void expect_all_limits(CKorCoord const &coord);
    void step(CKorCoord &coord);
    void scroll_to_end(CKorCoord &coord);
    void center(CKorCoord &coord, float zoom, CPoint const &point);

    std::mt19937 m_random { 7 };
    Program program;
};

void Coordinates::expect_all_limits(CKorCoord const &coord)
{
    EXPECT_GE(coord.GetZoom(), 1 / 32.0F);
    EXPECT_LE(coord.GetZoom(), 32);
    CRect vis_doc;
    coord.GetVisDoc(vis_doc);
    CRect vis_client;
    coord.GetVisClient(vis_client);
    CSize const scroll = coord.GetScrollPos();
    CSize const doc = coord.GetDocSize();
    CSize const client = view().GetClientSize();
    EXPECT_EQ(coord.ClientCenter(), CPoint(client.cx / 2, client.cy / 2));
    expect_limits({ client.cx, doc.cx, scroll.cx, vis_doc.left, vis_doc.right, vis_client.left,
        vis_client.right, coord.GetZoom() });
    expect_limits({ client.cy, doc.cy, scroll.cy, vis_doc.top, vis_doc.bottom, vis_client.top,
        vis_client.bottom, coord.GetZoom() });
}

// The user finds as much to scroll as there is.
void Coordinates::scroll_to_end(CKorCoord &coord)
{
    if (!view().HasScrollBar(ScrollBar::Vertical))
        return;
    driver.scroll(*frame, ScrollBar::Vertical, 10000000);
    settle();
    int const last = static_cast<int>(static_cast<float>(coord.GetDocSize().cy) * coord.GetZoom())
        - view().GetClientSize().cy;
    EXPECT_LE(coord.GetScrollPos().cy, last);
    EXPECT_GE(coord.GetScrollPos().cy, last - 2 - static_cast<int>(coord.GetZoom()));
}

// The point comes to lie under the mouse, but for snapping, unless an end of the document is.
void Coordinates::center(CKorCoord &coord, float zoom, CPoint const &point)
{
    CSize const client = view().GetClientSize();
    input(Kind::Move, { pick(0, client.cx - 1), pick(0, client.cy - 1) });
    back_end.PumpMessages();
    CPoint const mouse = view().GetCursorPos();
    if (!coord.SetZoomAndCenter(zoom, point, 0, 1) || view().GetClientSize() != client)
        return;
    CPoint seen = point;
    coord.DocToViewport(seen);
    CSize const pos = coord.GetScrollPos();
    CPoint end = coord.GetDocSize();
    coord.DocToPage(end);
    double const slack = 2.0 + coord.GetZoom();
    if (pos.cx > 0 && pos.cx < end.x - client.cx - slack) {
        EXPECT_NEAR(seen.x, mouse.x, slack);
    }
    if (pos.cy > 0 && pos.cy < end.y - client.cy - slack) {
        EXPECT_NEAR(seen.y, mouse.y, slack);
    }
}

// One operation of the user's or the program's.
void Coordinates::step(CKorCoord &coord)
{
    CSize const doc = coord.GetDocSize();
    CPoint const point(pick(0, doc.cx - 1), pick(0, doc.cy - 1));
    CSize delta(pick(-300, 300), pick(-300, 300));
    float const zoom = std::exp2(static_cast<float>(pick(-600, 600)) / 100);
    switch (pick(0, 8)) {
    case 0:
        coord.SetZoom(zoom, pick(0, 1));
        break;
    case 1:
        center(coord, zoom, point);
        break;
    case 2:
        coord.Zoom(pick(0, 1));
        break;
    case 3:
        coord.AutoFit(pick(0, 1), pick(0, 1));
        break;
    case 4:
        coord.SetVisDoc(CRect(point, point + CSize(pick(1, 200), pick(1, 200))));
        break;
    case 5:
        frame->SetViewSize({ pick(220, 700), pick(150, 500) });
        break;
    case 6:
        scroll_to_end(coord);
        break;
    default:
        coord.Scroll(delta);
    }
    back_end.PumpMessages();
}

} // namespace

TEST_F(Coordinates, StayWithinTheirLimitsWhateverIsDone)
{
    bool const is_fast = std::string(back_end.GetName()) == "recording";
    for (int round = 0; round < 4; ++round) {
        frame = back_end.CreateViewFrame(
            program, round % 2 == 0 ? ViewKind::Plain : ViewKind::Scrolling, L"A view");
        frame->SetViewSize({ 400, 300 });
        frame->Show(true);
        settle();
        CKorCoord coord(&view(), { 40 + round * 970, 1500 / (1 + round * 4) });
        program.coord = &coord;
        coord.UpdateWindow();
        for (int i = 0; i < (is_fast ? 700 : 7); ++i) {
            SCOPED_TRACE(line("round", round, "step", i));
            step(coord);
            expect_all_limits(coord);
            CSize const pos = coord.GetScrollPos();
            coord.InitInfo(); // changes nothing when nothing changed
            EXPECT_EQ(coord.GetScrollPos(), pos);
            ASSERT_FALSE(HasFailure());
        }
        program.coord = nullptr;
        frame.reset();
    }
}
