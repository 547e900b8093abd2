// SPDX-License-Identifier: MIT
#include "kortools/ui/progress_dlg.h"

#include "kortools/archive/exception.h"
#include "kortools/text/string_table.h"
#include "tests/support/thread_language.h"
#include "tests/ui/recording_back_end.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <thread>
#include <vector>

using namespace kor_test;
using namespace kortools::ui;

namespace {

// A window whose timer is the test's.
class Window : public RecordingProgress {
public:
    using RecordingProgress::RecordingProgress;
    void UpdateWindow() override { ++updates; }
    void SetTimer(unsigned int id, unsigned int milliseconds) override
    {
        has_timer = id == 4896 && milliseconds == 500;
    }
    void KillTimer(unsigned int) override { has_timer = false; }

    std::wstring get_texts() const { return contents.title + L'/' + contents.status; }
    std::wstring const &get_label(std::size_t bar = 0) const { return contents.bars.at(bar).label; }

    int updates = 0;
    bool has_timer = false;
};

// Installed while it lives.
class PumpedBackEnd : public RecordingBackEnd {
public:
    PumpedBackEnd() { set_back_end(this); }
    ~PumpedBackEnd() override { set_back_end(nullptr); }
    std::unique_ptr<ProgressWindow> CreateProgressWindow(
        CWnd *, ProgressWindowHandler &handler) override
    {
        auto made = std::make_unique<Window>(*this, handler);
        window = made.get();
        is_there = made->alive;
        return made;
    }
    bool PumpMessages() override
    {
        ++pumps;
        return RecordingBackEnd::PumpMessages();
    }

    Window *window = nullptr; // the last one
    std::weak_ptr<bool> is_there;
    int pumps = 0;
};

class Dialog : public CProgressDlg {
public:
    std::atomic<long long> now { 1'000'000 }; // milliseconds

private:
    long long GetTick() const override { return now; }
};

void on_worker(std::function<void()> const &work)
{
    std::thread(work).join();
}

class ProgressDlg : public testing::Test {
protected:
    void create() { ASSERT_TRUE(dialog.Create(nullptr, L"Import", L"reading")); }
    void tick(int milliseconds = 500)
    {
        dialog.now += milliseconds;
        back_end.window->handler.OnTimer(4896);
    }
    ProgressContents const &seen() const { return back_end.window->contents; }
    bool has_window() const { return dialog.HasWindow() && !back_end.is_there.expired(); }

    ThreadLanguage language { kortools::text::english };
    PumpedBackEnd back_end;
    Dialog dialog;
};

// --- Positions

struct MoveCase {
    int low, high, step;
    struct Move {
        int pos;
        bool result;
        int stored;
    };
    std::vector<Move> moves;
};

constexpr int int_min = std::numeric_limits<int>::min();
constexpr int int_max = std::numeric_limits<int>::max();

TEST_F(ProgressDlg, PositionsAdvanceInStepsThatShow)
{
    MoveCase const cases[] = {
        { 0, 1000, 1, { { 0, false, -1 }, { 3, false, -1 }, { 10, true, 10 }, { 19, false, 10 } } },
        { 0, 100, 10, { { 9, false, -1 }, { 10, true, 10 }, { 19, false, 10 }, { 5, true, 5 } } },
        { 5, 5, 1, { { 4, true, 5 }, { 7, true, 6 } } },
        { 900, 1000, 0, { { 0, true, 900 }, { 909, false, 900 }, { int_max, true, 1000 } } },
        { 0, int_max, 1, { { 21474837, true, 21474837 }, { int_max, true, int_max } } },
        { int_min, -1, -1, { { -2, true, -2 }, { 5, true, -1 } } },
        { -1, -1, 1, { { 0, false, -1 }, { int_min, false, -1 } } }, // a high of 0
    };
    create();
    for (MoveCase const &test : cases) {
        SCOPED_TRACE(testing::Message() << test.low << " to " << test.high);
        auto const run = [&] {
            for (auto const &move : test.moves) {
                EXPECT_EQ(dialog.SetPos(move.pos), move.result) << move.pos;
                EXPECT_EQ(dialog.GetPos(), move.stored) << move.pos;
            }
        };
        dialog.SetStep(test.step);
        dialog.SetRange(test.low, test.high);
        run();
        dialog.SetRange(test.low, test.low == 17 ? 18 : 17);
        dialog.SetRange(test.low, test.high);
        EXPECT_EQ(dialog.GetPos(), -1);
        on_worker(run);
    }
    dialog.SetRange(2, 3);
    dialog.SetPos(3);
    dialog.SetRange(2, 2);
    EXPECT_EQ(dialog.GetPos(), 3) << "the same range once it is adjusted";
}

TEST(ProgressDlgWithoutBackEnd, KeepsValuesButHasNoWindow)
{
    CProgressDlg dialog;
    EXPECT_FALSE(dialog.Create(nullptr, L"Import"));
    dialog.SetRange(0, 500);
    EXPECT_FALSE(dialog.SetPos(100));
    EXPECT_EQ(dialog.GetPos(), -1);
    EXPECT_TRUE(dialog.OffsetPos(102) && !dialog.OffsetPos(0));
    EXPECT_EQ(dialog.GetPos(), 101);
    dialog.SetErrorMsg(L"no disk");
    dialog.DelayDestroy();
    EXPECT_FALSE(dialog.HasWindow() || dialog.CheckCancelButton(true));
}

// --- Sub-ranges

constexpr int long_range = 1'000'000;

// Works through a part of the second bar in steps, some of which have steps of their own.
void work(CProgressDlg &dialog, std::mt19937 &random, int depth, double start, double width)
{
    int const steps = 1 + static_cast<int>(random() % 7);
    EXPECT_EQ(dialog.PushSubRange(steps, false), depth);
    for (int step = 0; step <= steps; ++step) {
        EXPECT_TRUE(dialog.SetSubRangePos(step, false));
        double const expected = start + width * step / steps;
        // Bars move by a per cent, and each level truncates.
        ASSERT_NEAR(dialog.GetPos(false), expected, long_range / 100.0 + 4);
        if (depth < 4 && step < steps && random() % 2 == 0)
            work(dialog, random, depth + 1, expected, width / steps);
    }
    EXPECT_EQ(dialog.PullSubRange(false), depth);
}

TEST_F(ProgressDlg, NestedSubRangesComeOutWhereExactArithmeticDoes)
{
    std::mt19937 random(4); // a failure can be repeated
    create();
    for (int round = 0; round < 50; ++round) {
        dialog.SetRange(0, long_range - 1, false);
        dialog.SetRange(0, long_range, false);
        dialog.OffsetPos(1, false); // to 0
        work(dialog, random, 0, 0, long_range);
        EXPECT_EQ(dialog.GetPos(false), long_range);
    }
}

TEST_F(ProgressDlg, StepCountsOfSubRangesKeepTheirForms)
{
    create();
    dialog.SetRange(0, 500);
    EXPECT_EQ(dialog.PullSubRange(), -1);
    EXPECT_EQ(dialog.PullToSubRange(0), 0);
    EXPECT_FALSE(dialog.SetSubRangePos(1));
    dialog.SetPos(100);
    EXPECT_EQ(dialog.PushSubRange(4), 0);
    EXPECT_TRUE(dialog.SetSubRangePos(2));
    EXPECT_EQ(dialog.GetPos(), 300);
    dialog.SetNextSubRangeStepCount(2); // 300 to 500
    EXPECT_EQ(dialog.PushSubRange(10), 1);
    dialog.SetSubRangePos(5);
    EXPECT_EQ(dialog.GetPos(), 400);
    EXPECT_THROW(dialog.PullToSubRange(-1), CXInvalidArgException *);
    XDeleteThreadException();
    EXPECT_EQ(dialog.PullToSubRange(1), 1);
    EXPECT_EQ(dialog.PullToSubRange(7), 1);
    dialog.SetNextSubRangeStepCount(6); // 600 is beyond 500: 500 - 600 = -100 steps
    dialog.PushSubRange(10);            // 300 to 300 - 10000
    dialog.SetSubRangePos(1);
    EXPECT_EQ(dialog.GetPos(), 0) << "limited";
    EXPECT_EQ(dialog.PullSubRange(), 1);
    EXPECT_EQ(dialog.PullSubRange(), 0);
    EXPECT_EQ(dialog.GetPos(), 500);

    dialog.SetPos(100);
    dialog.SetNextSubRangeStepCount(450); // 550 is beyond 500: 500 - 450
    dialog.PushSubRange(1);
    dialog.PullSubRange();
    EXPECT_EQ(dialog.GetPos(), 150);
    dialog.PushSubRange(0); // no steps: nowhere, but no fault
    EXPECT_TRUE(dialog.SetSubRangePos(0) && dialog.SetSubRangePos(1));
}

// --- What shows

TEST_F(ProgressDlg, ShowsAtOnceOnTheMainThread)
{
    create();
    Window &window = *back_end.window;
    EXPECT_TRUE(seen().is_shown && window.has_timer && seen().is_cancel_shown);
    EXPECT_EQ(window.get_texts() + L'/' + seen().cancel_text, L"Import/reading/Cancel");
    EXPECT_FALSE(dialog.Create(nullptr, L"twice"));

    dialog.SetProgressDlgMode(progressHideCancel | progressElapsed | progressElapsedMainBar);
    EXPECT_FALSE(seen().is_cancel_shown);
    dialog.SetRange(0, 200);
    dialog.now += ((2 * 60 + 61) * 60 + 5) * 1000 + 999;
    int const pumps = back_end.pumps;
    EXPECT_TRUE(dialog.SetPos(50));
    EXPECT_EQ(window.get_label(), L"25 % - 01 mn 05 s elapsed") << "hours are not shown";
    EXPECT_EQ(seen().task_bar, 25);
    EXPECT_EQ(window.updates, 1);
    EXPECT_EQ(back_end.pumps, pumps + 1);

    EXPECT_FALSE(seen().bars[1].is_shown);
    dialog.SetStep(7, false);
    dialog.SetPos(60, false);
    EXPECT_TRUE(dialog.OffsetPos(3, false));
    EXPECT_EQ(window.get_label(1), L"67 %") << "moved by its step";
    tick();
    EXPECT_EQ(window.get_label(1), L"63 %");
    EXPECT_TRUE(seen().bars[1].is_shown);
    EXPECT_EQ(seen().task_bar, 25);

    dialog.SetPos(-5);
    EXPECT_EQ(window.get_label(), L"0 % - 00 mn 00 s elapsed") << "the clock starts again";
    dialog.SetIndeterminate(true);
    dialog.EnableCancel(false);
    on_worker([&] {
        dialog.EnableCancel(true);
        dialog.SetIndeterminate(false);
        EXPECT_FALSE(dialog.IsIndeterminate() || dialog.Create(nullptr, L""));
    });
    EXPECT_TRUE(seen().bars[0].is_marquee && dialog.IsIndeterminate());
    EXPECT_FALSE(dialog.IsIndeterminate(false) || seen().is_cancel_enabled);
}

TEST_F(ProgressDlg, ShowsWhatAWorkerStoresOnTheNextTick)
{
    create();
    Window &window = *back_end.window;
    dialog.ShowWindow(false);
    on_worker([&] {
        dialog.SetTitle(L"title");
        dialog.SetCancel(L"stop");
        dialog.SetStatus(nullptr);
        dialog.SetErrorMsg(L"error");
        dialog.SetStatus(L"status");
        EXPECT_TRUE(dialog.SetPos(40));
        dialog.SetPos(70, false);
    });
    EXPECT_EQ(window.get_texts() + L'/' + window.get_label(), L"Import/reading/0 %");
    tick();
    EXPECT_EQ(window.get_texts() + L'/' + seen().cancel_text, L"title/error/stop");
    EXPECT_EQ(window.get_label() + L'/' + window.get_label(1), L"40 %/70 %");
    EXPECT_TRUE(seen().is_shown);
    tick(1999);
    EXPECT_EQ(seen().status, L"error");
    tick(1);
    EXPECT_EQ(seen().status, L"status");
    dialog.SetErrorMsg(L"another");
    dialog.SetStatus(L"at once");
    EXPECT_EQ(seen().status, L"at once");
}

// --- Cancel and the end

TEST_F(ProgressDlg, CancelIsSeenByWorkersAndStopsTheTexts)
{
    create();
    back_end.post([&] { back_end.window->act(ProgressAction::Cancel); });
    EXPECT_FALSE(dialog.SetPos(10)) << "clicked while messages were served";
    EXPECT_EQ(dialog.GetPos(), 10);
    EXPECT_FALSE(dialog.OffsetPos(1));
    on_worker([&] {
        EXPECT_TRUE(dialog.CheckCancelButton(true)) << "resets on the main thread only";
        EXPECT_TRUE(dialog.OffsetPos(1));
        EXPECT_FALSE(dialog.SetPos(90));
        dialog.SetStatus(L"too late");
    });
    tick();
    EXPECT_EQ(seen().status, L"reading");
    EXPECT_TRUE(dialog.CheckCancelButton(true));
    EXPECT_FALSE(dialog.CheckCancelButton(false));
    tick();
    EXPECT_EQ(seen().status, L"too late");

    back_end.window->act(ProgressAction::Cancel);
    dialog.SetEndProcessMsg(L"done");
    dialog.SetProgressDlgMode(progressKeepAtEnd);
    dialog.DelayDestroy();
    EXPECT_TRUE(dialog.HasWindow());
    tick();
    EXPECT_FALSE(dialog.HasWindow());
    ASSERT_FALSE(back_end.is_there.expired()) << "not deleted by its own handler";
    EXPECT_FALSE(seen().is_shown || back_end.window->has_timer || seen().is_ok_shown);
    EXPECT_EQ(seen().task_bar, -1);
    dialog.Destroy();
    EXPECT_TRUE(back_end.is_there.expired());
    create();
    EXPECT_FALSE(dialog.CheckCancelButton(false)) << "a new process";
}

TEST_F(ProgressDlg, EndsAtOnceOrAfterItsLastMessage)
{
    create();
    dialog.DelayDestroy();
    EXPECT_TRUE(!dialog.HasWindow() && back_end.is_there.expired());
    create();
    on_worker([&] { dialog.DelayDestroy(); });
    EXPECT_TRUE(has_window());
    tick();
    EXPECT_FALSE(dialog.HasWindow());
    for (bool const is_pressed : { false, true }) {
        create();
        dialog.SetProgressDlgMode(progressKeepAtEnd);
        dialog.SetEndProcessMsg(L"12 files");
        dialog.ShowWindow(false);
        on_worker([&] { dialog.DelayDestroy(); });
        tick();
        EXPECT_EQ(seen().status + L'/' + seen().ok_text, L"12 files/OK");
        EXPECT_EQ(seen().ok_width, 100);
        EXPECT_TRUE(seen().is_shown && seen().is_ok_shown && !seen().is_cancel_shown);
        tick(1999);
        EXPECT_TRUE(has_window());
        if (is_pressed)
            back_end.window->act(ProgressAction::Ok);
        else
            tick(1);
        EXPECT_FALSE(dialog.HasWindow());
    }
}

// --- Messages

TEST_F(ProgressDlg, ServesNoMessagesFromWithinItsMessages)
{
    create();
    int served = 0;
    int pumps_within = -1;
    back_end.post([&] {
        int const pumps = back_end.pumps;
        EXPECT_TRUE(dialog.SetPos(20));
        dialog.SetStatus(L"from within");
        tick();
        pumps_within = back_end.pumps - pumps;
    });
    back_end.post([&] { ++served; });
    dialog.SetPos(10);
    EXPECT_EQ(pumps_within, 0);
    EXPECT_EQ(served, 1);

    back_end.post([] { throw 1; });
    EXPECT_THROW(dialog.SetPos(30), int);
    back_end.post([&] { ++served; });
    dialog.SetPos(40);
    EXPECT_EQ(served, 2) << "messages are served again after an exception";
    back_end.post([&] { dialog.Destroy(); });
    EXPECT_TRUE(dialog.SetPos(50));
    EXPECT_TRUE(!dialog.SetPos(60) && back_end.is_there.expired());
}

} // namespace
