// SPDX-License-Identifier: MIT
// A window of the recording back end, and a drawing surface, that write down what is asked of them.
// Sessions of mouse and keys are played to whoever waits.
#pragma once

#include "tests/ui/recording_back_end.h"

#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace kor_test {

template <class... Values> std::string describe(char const *call, Values const &...values)
{
    std::string text = call;
    ((text += ' ' + testing::PrintToString(values)), ...);
    return text;
}

class RecordingDC : public PixelDC {
public:
    RecordingDC()
        : PixelDC(m_nothing, {})
    {
    }
    void FillRect(CXRect const &rect, CRGBColor const &color) override
    {
        calls.push_back(describe("fill", rect, color.GetRGB()));
    }
    void DrawFrame(CXRect const &rect, kortools::ui::Pen const &pen) override
    {
        bool const is_dotted = pen.line == kortools::ui::Pen::Line::Dotted;
        calls.push_back(describe(is_dotted ? "dots" : "line", rect, pen.color.GetRGB()));
    }

    std::vector<std::string> calls;

private:
    Picture m_nothing;
};

struct WindowSystem {
    RecordingBackEnd back_end;
    kortools::ui::WindowHandler handler;
};

class RecordingWindow : private WindowSystem, public RecordingView {
public:
    explicit RecordingWindow(CXSize const &client)
        : RecordingView(
            WindowSystem::back_end, WindowSystem::handler, kortools::ui::ViewKind::Scrolling)
    {
        is_visible = true;
        set_size(client);
    }

    bool HasScrollBar(ScrollBar bar) const override { return bars.count(bar) == 1; }
    void SetScrollSizes(CXSize const &total, CXSize const &step) override
    {
        scroll_total = total;
        scroll_step = step;
    }
    void ScrollToPosition(CXPoint const &) override { }
    void SetRedraw(bool redraw) override { calls.push_back(redraw ? "redraw" : "freeze"); }
    void Invalidate(bool erase) override { calls.push_back(erase ? "erase" : "invalidate"); }
    void ShowRubberBand(CXRect const &rect) override { frames.push_back(rect); }
    void HideRubberBand() override { calls.push_back("hide"); }
    void SetCapture() override
    {
        calls.push_back("capture");
        RecordingView::SetCapture();
    }
    void ReleaseCapture() override
    {
        calls.push_back("release");
        RecordingView::ReleaseCapture();
    }

    // A session is written as "move 10 20 up 10 20", with "lost" beside.
    void record(std::string const &text)
    {
        std::istringstream words(text);
        for (std::string word; words >> word;) {
            using Kind = UserInput::Kind;
            UserInput input { word == "up" ? Kind::LeftUp : Kind::Move };
            if (word != "lost")
                words >> input.position.x >> input.position.y;
            post([=, this] { word == "lost" ? lose_capture() : handle(input); });
        }
    }
    void post(std::function<void()> event) { WindowSystem::back_end.post(std::move(event)); }
    void hold_keys(std::map<unsigned int, bool> const &keys) { WindowSystem::back_end.keys = keys; }
    std::vector<std::string> take_calls() { return std::exchange(calls, {}); }

    std::set<ScrollBar> bars; // leave the client area as it is
    std::vector<std::string> calls;
    std::vector<CXRect> frames;
    CXSize scroll_total;
    CXSize scroll_step;
};

} // namespace kor_test
