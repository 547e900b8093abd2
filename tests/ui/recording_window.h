// SPDX-License-Identifier: MIT
// The windowing layer for tests: a window, scrolling view or not, and a drawing surface that write
// down what is asked of them. Mouse and keys come from a recorded session.
#pragma once

#include "kortools/ui/window.h"

#include <deque>
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

class RecordingDC : public CDC {
public:
    void FillRect(CXRect const &rect, CRGBColor const &color) override
    {
        calls.push_back(describe("fill", rect, color.GetRGB()));
    }
    void FillPattern(CXRect const &rect, kortools::ui::HatchPattern const &pattern,
        CRGBColor const &color) override
    {
        calls.push_back(describe("hatch", rect, int(pattern[0]), color.GetRGB()));
    }
    void DrawFrame(CXRect const &rect, kortools::ui::Pen const &pen) override
    {
        bool const is_dotted = pen.line == kortools::ui::Pen::Line::Dotted;
        calls.push_back(describe(is_dotted ? "dots" : "line", rect, pen.color.GetRGB()));
    }

    void DrawLine(CXPoint const &from, CXPoint const &to, kortools::ui::Pen const &pen) override
    {
        calls.push_back(describe("stroke", from, to, pen.color.GetRGB()));
    }
    void DrawString(
        CXPoint const &position, wchar_t const *text, int length, CRGBColor const &color) override
    {
        calls.push_back(
            describe("text", position, std::wstring(text, std::size_t(length)), color.GetRGB()));
    }
    void DrawPixels(
        CXRect const &target, kortools::ui::Pixels const &picture, CXRect const &part) override
    {
        calls.push_back(describe("pixels", target, picture.size, part));
    }
    CXRect GetClipBox() const override { return { -1000000, -1000000, 1000000, 1000000 }; }

    std::vector<std::string> calls;
};

class RecordingWindow : public CScrollView {
public:
    explicit RecordingWindow(CXSize const &size, bool is_view = true)
        : client_size(size)
        , m_is_view(is_view)
    {
    }

    CScrollView *GetScrollView() override { return m_is_view ? this : nullptr; }
    CXSize GetClientSize() const override { return client_size; }
    int GetTextWidth(wchar_t const *, int length) const override { return 8 * length; }
    bool HasScrollBar(kortools::ui::ScrollBar bar) const override { return bars.count(bar) == 1; }
    CXSize GetScrollBarSize() const override { return { 15, 17 }; }
    void SetScrollInfo(kortools::ui::ScrollBar bar, kortools::ui::ScrollRange const &range) override
    {
        bool const is_horizontal = bar == kortools::ui::ScrollBar::Horizontal;
        (is_horizontal ? scroll_total.cx : scroll_total.cy) = range.size;
        (is_horizontal ? scroll_position.x : scroll_position.y) = range.position;
        EXPECT_EQ(range.page, is_horizontal ? client_size.cx : client_size.cy);
    }
    void SetScrollSizes(CXSize const &total, CXSize const &step) override
    {
        scroll_total = total;
        scroll_step = step;
    }
    void ScrollToPosition(CXPoint const &position) override { scroll_position = position; }
    void SetRedraw(bool redraw) override { calls.push_back(redraw ? "redraw" : "freeze"); }
    void Invalidate(bool erase) override { calls.push_back(erase ? "erase" : "invalidate"); }
    void InvalidateRect(CXRect const &rect, bool) override { invalid |= rect; }
    void UpdateWindow() override { calls.push_back("paint"); }
    void ShowRubberBand(CXRect const &rect) override { frames.push_back(rect); }
    void HideRubberBand() override { calls.push_back("hide"); }
    CXPoint GetCursorPos() const override { return cursor_pos; }
    void SetCursor(kortools::ui::CursorShape shape) override { cursor = shape; }
    bool IsKeyDown(unsigned int key) const override { return keys_down.count(key) == 1; }
    void SetCapture() override { calls.push_back("capture"); }
    void ReleaseCapture() override { calls.push_back("release"); }
    bool WaitForInput(kortools::ui::InputEvent &event) override
    {
        if (session.empty())
            return false;
        event = session.front();
        session.pop_front();
        return true;
    }

    void SetTimer(unsigned int id, unsigned int milliseconds) override
    {
        calls.push_back(describe("timer", id, milliseconds));
    }
    void KillTimer(unsigned int id) override { calls.push_back(describe("no timer", id)); }
    int TrackPopupMenu(CXPoint const &position, CXArray<CXTString<wchar_t>> const &entries) override
    {
        calls.push_back(describe("menu", position, entries.GetSize()));
        return -1;
    }

    // A session is written as "move 10 20 up 10 20", with "right", "lost" and "key 27" beside.
    void record(std::string const &text)
    {
        using Kind = kortools::ui::InputEvent::Kind;
        std::istringstream words(text);
        for (std::string word; words >> word;) {
            kortools::ui::InputEvent event {};
            event.kind = word == "move" ? Kind::MouseMove
                : word == "up"          ? Kind::LeftButtonUp
                : word == "right"       ? Kind::RightButtonDown
                : word == "key"         ? Kind::KeyDown
                                        : Kind::CaptureLost;
            if (word == "key")
                words >> event.key;
            else if (word != "right" && word != "lost")
                words >> event.position.x >> event.position.y;
            session.push_back(event);
        }
    }
    std::vector<std::string> take_calls() { return std::exchange(calls, {}); }

    CXSize client_size;
    std::set<kortools::ui::ScrollBar> bars;
    CXPoint cursor_pos;
    std::set<unsigned int> keys_down;
    std::deque<kortools::ui::InputEvent> session;

    std::vector<std::string> calls;
    std::vector<CXRect> frames;
    CXRect invalid;
    CXSize scroll_total;
    CXSize scroll_step;
    CXPoint scroll_position;
    kortools::ui::CursorShape cursor = kortools::ui::CursorShape::Arrow;

private:
    bool m_is_view;
};

} // namespace kor_test
