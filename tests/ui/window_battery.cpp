// SPDX-License-Identifier: MIT
// Frames and views: sizes, scroll bars, input, timers.
#include "tests/ui/battery.h"

#include "kortools/archive/archive.h"

#include <algorithm>

using namespace kor_test;
using kortools::ui::InputEvent;

TEST_F(Windows, ShowTitleAndStatusUntilTheyAreClosed)
{
    auto const hidden = back_end.CreateViewFrame(recorder, ViewKind::Plain, L"Caf\u00E9 & bar");
    EXPECT_FALSE(hidden->IsVisible());
    EXPECT_EQ(driver.read(*hidden).title, L"Caf\u00E9 & bar");
    EXPECT_TRUE(frame->IsVisible());
    frame->SetTitle(L"\u0416 1");
    frame->SetStatus(L"10 & 20");
    EXPECT_EQ(driver.read(*frame).title, L"\u0416 1");
    EXPECT_EQ(driver.read(*frame).status, L"10 & 20");
    for (bool const closes : { false, true }) {
        recorder.closes = closes;
        driver.close(*frame);
        settle();
        EXPECT_EQ(recorder.take_log(), Log { "close" });
        EXPECT_EQ(frame->IsVisible(), !closes);
    }
    frame->Show(true);
    settle();
    EXPECT_TRUE(frame->IsVisible());
}

TEST_F(Windows, GiveTheViewWhatScrollBarsLeave)
{
    CXSize const bars = view().GetScrollBarSize();
    EXPECT_GT(bars.cx, 0);
    EXPECT_GT(bars.cy, 0);
    for (ViewKind const kind : { ViewKind::Plain, ViewKind::Scrolling }) {
        for (int const shown : { 0, 1, 3, 2, 0 }) {
            CXSize const outer(260 + 40 * shown, 200);
            if (shown == 0)
                make_frame(kind, outer);
            frame->SetViewSize(outer);
            settle();
            bool const is_wide = (shown & 1) != 0;
            bool const is_high = (shown & 2) != 0;
            CXSize const total(is_wide ? 1000 : 50, is_high ? 2000 : 60);
            CXSize const client = outer - CXSize(is_high ? bars.cx : 0, is_wide ? bars.cy : 0);
            if (CScrollView *const scrolling = view().GetScrollView()) {
                scrolling->SetScrollSizes(total, { 10, 10 });
            } else {
                view().SetScrollInfo(ScrollBar::Horizontal, { total.cx, client.cx, 0 });
                view().SetScrollInfo(ScrollBar::Vertical, { total.cy, client.cy, 0 });
            }
            settle();
            EXPECT_EQ(view().GetScrollView() != nullptr, kind == ViewKind::Scrolling);
            EXPECT_EQ(view().HasScrollBar(ScrollBar::Horizontal), is_wide);
            EXPECT_EQ(view().HasScrollBar(ScrollBar::Vertical), is_high);
            EXPECT_EQ(view().GetClientSize(), client) << shown;
            EXPECT_EQ(recorder.size, client) << shown;
            EXPECT_EQ(frame->CaptureView().size, client);
        }
    }
    driver.resize(*frame, { 30, 20 });
    settle();
    EXPECT_EQ(recorder.size, CXSize(290, 220));
    EXPECT_EQ(view().GetClientSize(), CXSize(290, 220));
}

TEST_F(Windows, ScrollWithinTheirRange)
{
    for (ViewKind const kind : { ViewKind::Plain, ViewKind::Scrolling }) {
        make_frame(kind, { 300, 200 });
        CScrollView *const scrolling = view().GetScrollView();
        auto const scroll_to = [&](int x, int y) {
            CXSize const client = view().GetClientSize();
            if (scrolling) {
                scrolling->ScrollToPosition({ x, y });
            } else {
                view().SetScrollInfo(ScrollBar::Horizontal, { 1000, client.cx, x });
                view().SetScrollInfo(ScrollBar::Vertical, { 70000, client.cy, y });
            }
            settle();
        };
        if (scrolling)
            scrolling->SetScrollSizes({ 1000, 70000 }, { 10, 10 });
        scroll_to(0, 0); // shows the bars
        scroll_to(20, 66000);
        EXPECT_EQ(recorder.take_log(), Log {}); // only what the user does is told
        CXSize const last = CXSize(1000, 70000) - view().GetClientSize();
        driver.scroll(*frame, ScrollBar::Vertical, 69000); // more than 16 bits
        driver.scroll(*frame, ScrollBar::Horizontal, 40);
        driver.scroll(*frame, ScrollBar::Vertical, 1000000);
        driver.scroll(*frame, ScrollBar::Horizontal, 1000000);
        driver.scroll(*frame, ScrollBar::Horizontal, 0);
        settle();
        EXPECT_EQ(recorder.take_log(),
            (Log { "down to 69000", "across 40", line("down to", last.cy), line("across", last.cx),
                "across 0" }));
    }
}

TEST_F(Windows, TellWhatTheUserDoes)
{
    recorder.set_cursor = [this] {
        view().SetCursor(CursorShape::SizeVertical);
        return true;
    };
    input(Kind::Move, { 10, 20 });
    settle();
    EXPECT_EQ(view().GetCursorPos(), CXPoint(10, 20));
    EXPECT_EQ(driver.read(*frame).cursor, CursorShape::SizeVertical);
    input(Kind::Move, { 110, 20 });
    settle();
    EXPECT_EQ(driver.read(*frame).cursor, CursorShape::Arrow);
    play("press 110 20 up 110 20 right 110 20");
    driver.input(*frame, { Kind::Wheel, { 110, 20 }, 0, 2 });
    driver.input(*frame, { Kind::Wheel, { 110, 20 }, 0, -1 });
    settle();
    EXPECT_EQ(recorder.take_log(),
        (Log { "move 10 20", "move 110 20", "press 110 20", "up 110 20", "right 110 20",
            "wheel 110 20 2", "wheel 110 20 -1" }));

    using namespace kortools::ui;
    std::string held;
    recorder.on_event = [&](std::string const &) {
        held += view().IsKeyDown(KeyShift) ? 'S' : '-';
        held += view().IsKeyDown(KeyControl) ? 'C' : '-';
    };
    for (unsigned int const modifier : { KeyShift, KeyControl, KeyLeft }) {
        key(Kind::KeyDown, modifier);
        key(Kind::KeyDown, KeyUp);
        key(Kind::KeyUp, KeyUp);
        key(Kind::KeyUp, modifier);
    }
    for (unsigned int const number : { KeyReturn + 0U, KeyEscape + 0U, KeyPageDown + 0U, 65U }) {
        key(Kind::KeyDown, number);
        key(Kind::KeyUp, number);
    }
    settle();
    EXPECT_EQ(recorder.take_log(),
        (Log { "key 16", "key 38", "key 17", "key 38", "key 37", "key 38", "key 13", "key 27",
            "key 34", "key 65" }));
    EXPECT_EQ(held, "S-S--C-C------------");
}

TEST_F(Windows, CallTimersUntilTheyAreKilled)
{
    auto const count
        = [this](char const *name) { return std::ranges::count(recorder.log, std::string(name)); };
    view().SetTimer(1, 10);
    view().SetTimer(2, 1);
    view().SetTimer(2, 3600000); // replaces the other
    EXPECT_TRUE(serve_until([&] { return count("timer 1") >= 3; }));
    EXPECT_EQ(count("timer 2"), 0);
    recorder.take_log();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    back_end.PumpMessages();
    EXPECT_LE(count("timer 1"), 10); // not 30
    view().KillTimer(1);
    settle();
    recorder.take_log();
    view().KillTimer(1); // does no harm
    std::this_thread::sleep_for(std::chrono::milliseconds(40));
    settle();
    EXPECT_EQ(recorder.take_log(), Log {});
}

TEST_F(Windows, WaitForTheCapturedMouse)
{
    Log seen;
    recorder.on_event = [&](std::string const &text) {
        if (text == "timer 3") { // is served, too
            view().KillTimer(3);
            play("right -30 900 key 65 lost");
        }
        if (text != "press 50 50")
            return;
        view().SetCapture();
        for (InputEvent event {}; view().WaitForInput(event);) {
            seen.push_back(
                line("event", int(event.kind), event.position.x, event.position.y, event.key));
            if (event.kind == InputEvent::Kind::CaptureLost)
                break;
            if (event.kind == InputEvent::Kind::LeftButtonUp)
                view().SetTimer(3, 1);
        }
        view().ReleaseCapture();
    };
    view().Invalidate(true);
    play("move 50 50 press 50 50 move -20 1000 up -30 900");
    EXPECT_TRUE(serve_until([&] { return !seen.empty() && seen.back().starts_with("event 4"); }));
    std::erase_if(seen, [](std::string const &text) { // window systems tell where the mouse is
        return text.starts_with("event 0") && text != "event 0 -20 1000 0";
    });
    for (std::string &text : seen) {
        if (text.starts_with("event 3") || text.starts_with("event 4"))
            text.erase(7, text.rfind(' ') - 7); // where the mouse is does not matter
    }
    EXPECT_EQ(seen,
        (Log { "event 0 -20 1000 0", "event 1 -30 900 0", "event 2 -30 900 0", "event 3 65",
            "event 4 0" }));
    EXPECT_FALSE(recorder.paints.empty()); // everything else was served

    recorder.on_event = {};
    settle();
    recorder.take_log();
    view().SetCapture();
    driver.post([this] { back_end.Quit(7); });
    InputEvent event {};
    EXPECT_FALSE(view().WaitForInput(event));
    view().ReleaseCapture();
    EXPECT_EQ(back_end.Run(), 7); // is still told to who runs the program
    driver.post([this] { back_end.Quit(8); });
    EXPECT_EQ(back_end.Run(), 8);
    EXPECT_TRUE(back_end.PumpMessages());
}

namespace {

struct Failure { };

} // namespace

TEST_F(Windows, ThrowWhatHandlersThrowWhereEventsAreServed)
{
    recorder.on_event = [](std::string const &text) {
        if (text.starts_with("press"))
            throw Failure();
    };
    auto const press = [this] { play("move 60 60 press 60 60 up 60 60"); };
    press();
    EXPECT_THROW(settle(), Failure);
    settle();
    recorder.draw = [](CDC &, CXRect const &) { throw Failure(); };
    view().Invalidate(true);
    EXPECT_THROW(view().UpdateWindow(), Failure);
    auto const fails = [this](auto const &modal) {
        recorder.draw = [](CDC &, CXRect const &) { throw Failure(); };
        view().Invalidate(true);
        driver.answer_next([](Modal const &) { return 1; });
        int failures = 0;
        for (int i = 0; i < 3; ++i) { // the answer may have come first
            try {
                i == 0 ? modal() : settle();
            } catch (Failure const &) {
                ++failures;
                recorder.draw = {};
            }
        }
        recorder.draw = {};
        return failures == 1;
    };
    EXPECT_TRUE(fails([this] { back_end.ShowMessageBox(L"Text", L"Title", 0); }));
    CXArray<CXTString<wchar_t>> entries;
    entries.Add(L"one");
    entries.Add(L"two");
    EXPECT_TRUE(fails([&] { view().TrackPopupMenu({ 10, 10 }, entries); }));

    recorder.on_event = [this](std::string const &text) {
        InputEvent event {};
        if (text.starts_with("timer"))
            throw Failure();
        if (!text.starts_with("press"))
            return;
        view().SetCapture();
        view().SetTimer(1, 1);
        EXPECT_THROW(while (view().WaitForInput(event)) {}, Failure);
        view().KillTimer(1);
        view().ReleaseCapture();
    };
    press();
    settle();
    recorder.on_event = {};
    recorder.take_log();
    recorder.paints.clear();
    play("move 61 60 press 61 60 up 61 60");
    view().Invalidate(true);
    settle();
    EXPECT_EQ(recorder.take_log(), (Log { "move 61 60", "press 61 60", "up 61 60" }));
    EXPECT_EQ(recorder.paints.size(), 1U);
}

TEST_F(Windows, MayBeDeletedByTheirHandlers)
{
    CXSize const size(300, 200);
    struct Row {
        char const *event;
        std::function<void()> act;
    } const rows[] = {
        { "move",
            [this] {
                input(Kind::Move, { 33, 44 });
            } },
        { "press",
            [this] {
                input(Kind::LeftDown, { 33, 44 });
            } },
        { "up", [this] { play("press 1 1 up 1 1"); } },
        { "right", [this] { play("right 9 9"); } },
        { "wheel",
            [this] {
                driver.input(*frame, { Kind::Wheel, { 9, 9 }, 0, 1 });
            } },
        { "key", [this] { play("key 65"); } },
        { "timer", [this] { view().SetTimer(1, 1); } },
        { "close", [this] { driver.close(*frame); } },
        { "down to", [this] { driver.scroll(*frame, ScrollBar::Vertical, 5); } },
    };
    for (Row const &row : rows) {
        SCOPED_TRACE(row.event);
        make_frame(ViewKind::Scrolling, size);
        view().GetScrollView()->SetScrollSizes({ 100, 5000 }, { 10, 10 });
        input(Kind::LeftUp, { 1, 1 }); // from the frame before
        settle();
        recorder.take_log();
        recorder.on_event = [&](std::string const &text) {
            if (text.starts_with(row.event))
                frame.reset();
        };
        row.act();
        EXPECT_TRUE(serve_until([&] { return !frame; }));
        settle();
        recorder.on_event = {};
        EXPECT_TRUE(recorder.log.back().starts_with(row.event));
    }
    make_frame(ViewKind::Plain, size);
    view().SetCapture();
    CWnd &waiting = view();
    driver.post([this] { frame.reset(); });
    InputEvent event {};
    while (waiting.WaitForInput(event)) // at most what the mouse did before
        ASSERT_TRUE(frame);
    EXPECT_FALSE(frame);
}
