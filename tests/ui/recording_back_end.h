// SPDX-License-Identifier: MIT
// RecordingBackEnd: a small window system in memory, with pixels, for tests. What the user does is
// queued by the driver; what modal loops ask is answered by functions that wait in a row.
#pragma once

#include "kortools/ui/handler_calls.h"
#include "tests/ui/driver.h"
#include "tests/ui/pixel_dc.h"

#include <chrono>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

namespace kor_test {

using kortools::ui::ScrollBar;

class RecordingBackEnd;

class RecordingView : public CScrollView {
public:
    RecordingView(RecordingBackEnd &back_end, kortools::ui::WindowHandler &handler,
        kortools::ui::ViewKind kind);
    ~RecordingView() override;

    CScrollView *GetScrollView() override { return m_is_scrolling ? this : nullptr; }
    CXSize GetClientSize() const override { return m_picture.size; }
    int GetTextWidth(wchar_t const *, int length) const override { return 8 * length; }
    bool HasScrollBar(ScrollBar bar) const override { return m_bars.at(bar).is_shown; }
    CXSize GetScrollBarSize() const override { return { 15, 17 }; }
    void SetScrollInfo(ScrollBar bar, kortools::ui::ScrollRange const &range) override;
    void SetScrollSizes(CXSize const &total, CXSize const &step) override;
    void ScrollToPosition(CXPoint const &position) override;
    void SetRedraw(bool redraw) override { m_redraw = redraw; }
    void Invalidate(bool erase) override { InvalidateRect({ CXPoint(), m_picture.size }, erase); }
    void InvalidateRect(CXRect const &rect, bool erase) override;
    void UpdateWindow() override;
    void ShowRubberBand(CXRect const &rect) override { m_band = rect; }
    void HideRubberBand() override { m_band = {}; }
    CXPoint GetCursorPos() const override { return m_cursor_pos; }
    void SetCursor(kortools::ui::CursorShape shape) override { cursor = shape; }
    bool IsKeyDown(unsigned int key) const override;
    void SetCapture() override { m_is_captured = true; }
    void ReleaseCapture() override { m_is_captured = false; }
    bool WaitForInput(kortools::ui::InputEvent &event) override;
    void SetTimer(unsigned int id, unsigned int milliseconds) override;
    void KillTimer(unsigned int id) override;
    int TrackPopupMenu(
        CXPoint const &position, CXArray<CXTString<wchar_t>> const &entries) override;

    // For the frame and the driver
    void set_size(CXSize const &size); // with scroll bars
    void handle(UserInput const &input);
    void scroll(ScrollBar bar, int position);
    void lose_capture();
    void close();
    bool paint(); // what is invalid; false when there is nothing
    Picture capture() const;
    std::weak_ptr<bool> alive() const { return m_alive; }

    CXSize size { 300, 200 }; // with scroll bars
    kortools::ui::CursorShape cursor = kortools::ui::CursorShape::Arrow;
    bool is_visible = false;
    bool is_enabled = true;

private:
    struct Bar {
        kortools::ui::ScrollRange range {};
        bool is_shown = false;
    };
    void lay_out();
    bool take(UserInput const &input);

    RecordingBackEnd &m_back_end;
    kortools::ui::WindowHandler &m_handler;
    bool m_is_scrolling;
    std::map<ScrollBar, Bar> m_bars { { ScrollBar::Horizontal, {} }, { ScrollBar::Vertical, {} } };
    CXSize m_total; // what a scrolling view scrolls
    Picture m_picture;
    CXRect m_invalid;
    CXRect m_band;
    bool m_redraw = true;
    CXPoint m_cursor_pos;
    bool m_is_captured = false;
    bool m_is_waiting = false;
    std::deque<kortools::ui::InputEvent> m_input; // for who waits
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

class RecordingFrame : public kortools::ui::ViewFrame {
public:
    RecordingFrame(RecordingBackEnd &back_end, kortools::ui::WindowHandler &handler,
        kortools::ui::ViewKind kind, wchar_t const *frame_title)
        : title(frame_title)
        , view(back_end, handler, kind)
    {
    }
    CWnd &GetView() override { return view; }
    void Show(bool show) override;
    bool IsVisible() const override { return view.is_visible; }
    void SetTitle(wchar_t const *text) override { title = text; }
    void SetStatus(wchar_t const *text) override { status = text; }
    void SetViewSize(CXSize const &size) override { view.set_size(size); }
    Picture CaptureView() override { return view.capture(); }

    std::wstring title;
    std::wstring status;
    RecordingView view;
};

class RecordingProgress : public kortools::ui::ProgressWindow {
public:
    RecordingProgress(
        RecordingBackEnd &back_end, kortools::ui::ProgressWindowHandler &window_handler)
        : handler(window_handler)
        , m_back_end(back_end)
    {
    }
    ~RecordingProgress() override;
    void Show(bool show) override { contents.is_shown = show; }
    bool IsVisible() const override { return contents.is_shown; }
    void SetTitle(wchar_t const *text) override { contents.title = contents.line = text; }
    void SetStatus(wchar_t const *text) override { contents.status = text; }
    void ShowBar(int bar, bool show) override;
    void SetBarPos(int bar, int percent) override;
    int GetBarPos(int bar) const override { return contents.bars.at(std::size_t(bar)).position; }
    void SetBarStep(int bar, int percent) override { m_steps.at(std::size_t(bar)) = percent; }
    void StepBar(int bar) override;
    void SetBarText(int bar, wchar_t const *text) override { at(bar).label = text; }
    void SetMarquee(int bar, bool on) override { at(bar).is_marquee = on; }
    void SetCancelText(wchar_t const *text) override { contents.cancel_text = text; }
    void EnableCancel(bool enable) override { contents.is_cancel_enabled = enable; }
    void ShowCancel(bool show) override { contents.is_cancel_shown = show; }
    void ShowOkButton(wchar_t const *text, int width) override;
    void SetTaskbarPos(int percent) override { contents.task_bar = percent; }
    void UpdateWindow() override { }
    void SetTimer(unsigned int id, unsigned int milliseconds) override;
    void KillTimer(unsigned int id) override;

    void act(ProgressAction action); // of the user

    std::shared_ptr<bool> alive = std::make_shared<bool>(true);
    kortools::ui::ProgressWindowHandler &handler;
    ProgressContents contents { false, {}, {}, {},
        { { { true, false, 0, {}, true }, { false, false, 0, {}, false } } }, true, true, {}, false,
        {}, 0, 0, -1 };

private:
    ProgressContents::Bar &at(int bar) { return contents.bars.at(std::size_t(bar)); }

    RecordingBackEnd &m_back_end;
    std::array<int, 2> m_steps { 10, 10 };
};

class RecordingBackEnd : public kortools::ui::BackEnd {
public:
    char const *GetName() const override { return "recording"; }
    int ShowMessageBox(wchar_t const *text, wchar_t const *title, unsigned int flags) override;
    void ShowText(CWnd *parent, wchar_t const *title, wchar_t const *text) override;
    std::unique_ptr<kortools::ui::ProgressWindow> CreateProgressWindow(
        CWnd *parent, kortools::ui::ProgressWindowHandler &handler) override;
    std::unique_ptr<kortools::ui::ViewFrame> CreateViewFrame(kortools::ui::WindowHandler &handler,
        kortools::ui::ViewKind kind, wchar_t const *title) override;
    bool PumpMessages() override;
    int Run() override;
    void Quit(int result) override;

    // For windows and the driver
    void post(std::function<void()> event); // from any thread
    void answer_next(std::function<int(Modal const &)> answer) { m_answers.push_back(answer); }
    int answer(Modal const &modal, int otherwise);
    void set_timer(void const *owner, unsigned int id, unsigned int milliseconds,
        std::function<void()> function);
    void kill_timers(void const *owner, unsigned int const *id); // null: all
    bool serve_one();                                            // false when nothing waits
    void wait();                                                 // until something may
    bool is_ending() const { return m_is_ending; }

    kortools::ui::HandlerCalls calls;
    std::vector<RecordingView *> views;
    std::map<unsigned int, bool> keys;

private:
    struct Timer {
        std::chrono::milliseconds period;
        std::chrono::steady_clock::time_point due;
        std::function<void()> function;
    };
    bool serve_timer();

    std::thread::id m_main_thread = std::this_thread::get_id();
    std::mutex m_mutex; // guards m_events
    std::deque<std::function<void()>> m_events;
    std::map<std::pair<void const *, unsigned int>, Timer> m_timers;
    std::deque<std::function<int(Modal const &)>> m_answers;
    bool m_is_ending = false;
    int m_result = 0;
};

} // namespace kor_test
