// SPDX-License-Identifier: MIT
// What the battery's tests have in common: a frame whose handler writes down what it is told.
#pragma once

#include "tests/ui/driver.h"

#include <chrono>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <thread>

namespace kor_test {

using kortools::ui::CursorShape;
using kortools::ui::ScrollBar;
using kortools::ui::ViewKind;
using Kind = UserInput::Kind;
using Log = std::vector<std::string>;

template <class... Values> std::string line(char const *name, Values const &...values)
{
    std::ostringstream text;
    text << name;
    ((text << ' ' << values), ...);
    return text.str();
}

class Recorder : public kortools::ui::WindowHandler {
public:
    void OnPaint(CDC &dc, CXRect const &invalid) override
    {
        paints.push_back(invalid);
        EXPECT_EQ(dc.GetClipBox(), invalid);
        if (draw)
            draw(dc, invalid);
    }
    void OnSize(CXSize const &client) override { size = client; }
    void OnScroll(ScrollBar bar, int position) override
    {
        note(line(bar == ScrollBar::Horizontal ? "across" : "down to", position));
    }
    void OnMouseMove(CXPoint const &at) override
    {
        std::string const text = line("move", at.x, at.y);
        if (log.empty() || log.back() != text) // window systems like to repeat themselves
            note(text);
    }
    void OnLeftButtonDown(CXPoint const &at) override { note(line("press", at.x, at.y)); }
    void OnLeftButtonUp(CXPoint const &at) override { note(line("up", at.x, at.y)); }
    void OnRightButtonDown(CXPoint const &at) override { note(line("right", at.x, at.y)); }
    void OnMouseWheel(CXPoint const &at, int steps) override
    {
        note(line("wheel", at.x, at.y, steps));
    }
    bool OnSetCursor(CXPoint const &at) override
    {
        return at.x < 100 && set_cursor && set_cursor();
    }
    bool OnKeyDown(unsigned int key) override
    {
        note(line("key", key));
        return true;
    }
    void OnTimer(unsigned int id) override { note(line("timer", id)); }
    bool OnClose() override
    {
        note("close");
        return closes;
    }
    Log take_log() { return std::exchange(log, {}); }

    Log log;
    std::vector<CXRect> paints;
    CXSize size;
    bool closes = true;
    std::function<void(CDC &, CXRect const &)> draw;
    std::function<bool()> set_cursor; // where x is below 100
    std::function<void(std::string const &)> on_event;

private:
    void note(std::string const &text)
    {
        log.push_back(text);
        if (on_event)
            on_event(text);
    }
};

class Windows : public testing::Test {
protected:
    Windows() { make_frame(ViewKind::Plain, { 300, 200 }); }
    ~Windows() override
    {
        frame.reset();
        kortools::ui::set_back_end(nullptr);
    }

    void make_frame(ViewKind kind, CXSize const &size)
    {
        frame.reset();
        frame = back_end.CreateViewFrame(recorder, kind, L"A frame");
        frame->SetViewSize(size);
        frame->Show(true);
        settle();
        recorder.take_log();
        recorder.paints.clear();
    }
    CWnd &view() { return frame->GetView(); }

    // Serves what is under way in the window system, too, which takes its time.
    void settle()
    {
        for (int i = 0; i < 4; ++i) {
            back_end.PumpMessages();
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        back_end.PumpMessages();
    }
    template <class Condition> bool serve_until(Condition const &condition)
    {
        auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition() && std::chrono::steady_clock::now() < end)
            settle();
        return condition();
    }
    void input(Kind kind, CXPoint const &at) { driver.input(*frame, { kind, at, 0, 0 }); }
    void key(Kind kind, unsigned int number) { driver.input(*frame, { kind, {}, number, 0 }); }

    // A session is written as "move 10 20 press 10 20 up 10 20 right 10 20", with "lost", "key 27"
    // and "quit" beside.
    void play(std::string const &session);

    // The driver lives as long as the program, whose window system there is only once.
    static Driver &get_driver()
    {
        static Driver *const s_driver = make_driver().release();
        return *s_driver;
    }
    Driver &driver = get_driver();
    kortools::ui::BackEnd &back_end = driver.install();
    Recorder recorder;
    std::unique_ptr<kortools::ui::ViewFrame> frame;
};

inline void Windows::play(std::string const &session)
{
    static std::map<std::string, Kind> const kinds { { "move", Kind::Move },
        { "press", Kind::LeftDown }, { "up", Kind::LeftUp }, { "right", Kind::RightDown } };
    std::istringstream words(session);
    for (std::string word; words >> word;) {
        if (word == "key") {
            unsigned int number = 0;
            words >> number;
            key(Kind::KeyDown, number);
            key(Kind::KeyUp, number);
        } else if (word == "lost") {
            driver.lose_capture(*frame);
        } else if (word == "quit") {
            driver.post([this] { back_end.Quit(5); });
        } else {
            CXPoint at;
            words >> at.x >> at.y;
            input(kinds.at(word), at);
            if (word == "right")
                input(Kind::RightUp, at);
        }
    }
}

} // namespace kor_test
