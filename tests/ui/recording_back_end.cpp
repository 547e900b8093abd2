// SPDX-License-Identifier: MIT
#include "tests/ui/recording_back_end.h"

#include "kortools/archive/archive.h"

#include <algorithm>
#include <future>
#include <utility>

namespace kor_test {

using kortools::ui::InputEvent;
using kortools::ui::Pen;

// --- RecordingView

RecordingView::RecordingView(
    RecordingBackEnd &back_end, kortools::ui::WindowHandler &handler, kortools::ui::ViewKind kind)
    : m_back_end(back_end)
    , m_handler(handler)
    , m_is_scrolling(kind == kortools::ui::ViewKind::Scrolling)
{
    m_back_end.views.push_back(this);
    set_size(size);
}

RecordingView::~RecordingView()
{
    std::erase(m_back_end.views, this);
    m_back_end.kill_timers(this, nullptr);
}

void RecordingView::set_size(CXSize const &new_size)
{
    size = new_size;
    lay_out();
}

void RecordingView::SetScrollInfo(ScrollBar bar, kortools::ui::ScrollRange const &range)
{
    m_bars[bar] = { range, range.page < range.size };
    lay_out();
}

void RecordingView::SetScrollSizes(CXSize const &total, CXSize const &)
{
    m_total = total;
    lay_out();
}

// Shows the bars, and gives the client area what they leave.
void RecordingView::lay_out()
{
    if (m_is_scrolling) {
        CXSize const bars = GetScrollBarSize();
        bool const is_tall = m_total.cy > size.cy;
        bool const is_wide = m_total.cx > size.cx - (is_tall ? bars.cx : 0);
        m_bars[ScrollBar::Horizontal].is_shown = is_wide;
        m_bars[ScrollBar::Vertical].is_shown = m_total.cy > size.cy - (is_wide ? bars.cy : 0);
    }
    CXSize client = size;
    client.cx -= HasScrollBar(ScrollBar::Vertical) ? GetScrollBarSize().cx : 0;
    client.cy -= HasScrollBar(ScrollBar::Horizontal) ? GetScrollBarSize().cy : 0;
    client = { std::max(client.cx, 0), std::max(client.cy, 0) };
    if (m_is_scrolling) {
        m_bars[ScrollBar::Horizontal].range.size = m_total.cx;
        m_bars[ScrollBar::Horizontal].range.page = client.cx;
        m_bars[ScrollBar::Vertical].range.size = m_total.cy;
        m_bars[ScrollBar::Vertical].range.page = client.cy;
    }
    for (auto &[bar, state] : m_bars)
        state.range.position
            = std::clamp(state.range.position, 0, std::max(state.range.size - state.range.page, 0));
    if (client == m_picture.size)
        return;
    m_picture = { std::vector<CRGBColor>(std::size_t(client.cx) * std::size_t(client.cy)), client };
    Invalidate(true);
    m_back_end.calls.call([&] { m_handler.OnSize(client); });
}

void RecordingView::ScrollToPosition(CXPoint const &position)
{
    m_bars[ScrollBar::Horizontal].range.position = position.x;
    m_bars[ScrollBar::Vertical].range.position = position.y;
    lay_out();
    Invalidate(true);
}

// As the user does it.
void RecordingView::scroll(ScrollBar bar, int position)
{
    kortools::ui::ScrollRange &range = m_bars[bar].range;
    int const before = range.position;
    range.position = position;
    lay_out();
    if (range.position == before || !is_enabled)
        return;
    if (m_is_scrolling)
        Invalidate(true);
    m_back_end.calls.call([&] { m_handler.OnScroll(bar, range.position); });
}

void RecordingView::InvalidateRect(CXRect const &rect, bool)
{
    CXRect const visible = rect & CXRect(CXPoint(), m_picture.size);
    m_invalid = m_invalid.IsRectEmpty() ? visible : m_invalid | visible;
}

bool RecordingView::paint()
{
    if (!is_visible || !m_redraw || m_invalid.IsRectEmpty() || m_back_end.calls.has_exception())
        return false;
    CXRect const invalid = std::exchange(m_invalid, {});
    Picture picture = m_picture; // the handler may resize or delete this
    PixelDC dc(picture, invalid);
    std::weak_ptr<bool> const token = m_alive;
    m_back_end.calls.call([&] { m_handler.OnPaint(dc, invalid); });
    if (!token.expired() && m_picture.size == picture.size)
        m_picture = std::move(picture);
    return true;
}

void RecordingView::UpdateWindow()
{
    RecordingBackEnd &back_end = m_back_end;
    paint();
    back_end.calls.rethrow();
}

Picture RecordingView::capture() const
{
    Picture picture = m_picture;
    CRGBColor const red(255, 0, 0);
    PixelDC(picture, { CXPoint(), picture.size }).DrawFrame(m_band, { red, Pen::Line::Dotted });
    return picture;
}

bool RecordingView::IsKeyDown(unsigned int key) const
{
    return m_back_end.keys[key];
}

bool RecordingView::WaitForInput(InputEvent &event)
{
    RecordingBackEnd &back_end = m_back_end;
    std::weak_ptr<bool> const token = m_alive;
    m_is_waiting = true;
    while (!token.expired() && is_visible && m_input.empty() && !back_end.is_ending()
        && !back_end.calls.has_exception()) {
        if (!back_end.serve_one())
            back_end.wait();
    }
    bool const is_alive = !token.expired();
    if (is_alive)
        m_is_waiting = false;
    back_end.calls.rethrow();
    if (!is_alive || m_input.empty())
        return false;
    event = m_input.front();
    m_input.pop_front();
    return true;
}

void RecordingView::lose_capture()
{
    if (std::exchange(m_is_captured, false) && m_is_waiting)
        m_input.push_back({ InputEvent::Kind::CaptureLost, m_cursor_pos });
}

void RecordingView::close()
{
    std::weak_ptr<bool> const token = m_alive;
    bool const is_closed
        = is_enabled && m_back_end.calls.ask([&] { return m_handler.OnClose(); }, false);
    if (is_closed && !token.expired())
        is_visible = false;
}

// True when the input is for who waits.
bool RecordingView::take(UserInput const &input)
{
    if (!m_is_captured || !m_is_waiting)
        return false;
    static std::map<UserInput::Kind, InputEvent::Kind> const kinds {
        { UserInput::Kind::Move, InputEvent::Kind::MouseMove },
        { UserInput::Kind::LeftUp, InputEvent::Kind::LeftButtonUp },
        { UserInput::Kind::RightDown, InputEvent::Kind::RightButtonDown },
        { UserInput::Kind::KeyDown, InputEvent::Kind::KeyDown },
    };
    auto const kind = kinds.find(input.kind);
    if (kind != kinds.end())
        m_input.push_back({ kind->second, input.position, input.key });
    return true;
}

void RecordingView::handle(UserInput const &input)
{
    using Kind = UserInput::Kind;
    bool const is_key = input.kind == Kind::KeyDown || input.kind == Kind::KeyUp;
    if (is_key)
        m_back_end.keys[input.key] = input.kind == Kind::KeyDown;
    else
        m_cursor_pos = input.position;
    bool const is_inside = CXRect(CXPoint(), m_picture.size).PtInRect(input.position);
    if (!is_enabled || take(input) || !(is_key || is_inside || m_is_captured))
        return;
    std::weak_ptr<bool> const token = m_alive;
    kortools::ui::HandlerCalls &calls = m_back_end.calls;
    kortools::ui::WindowHandler &handler = m_handler;
    CXPoint const at = input.position;
    if (input.kind == Kind::Move) {
        bool const is_set
            = m_is_captured || calls.ask([&] { return handler.OnSetCursor(at); }, false);
        if (token.expired())
            return;
        cursor = is_set ? cursor : kortools::ui::CursorShape::Arrow;
        calls.call([&] { handler.OnMouseMove(at); });
    } else if (input.kind == Kind::LeftDown) {
        calls.call([&] { handler.OnLeftButtonDown(at); });
    } else if (input.kind == Kind::LeftUp) {
        calls.call([&] { handler.OnLeftButtonUp(at); });
    } else if (input.kind == Kind::RightDown) {
        calls.call([&] { handler.OnRightButtonDown(at); });
    } else if (input.kind == Kind::Wheel) {
        calls.call([&] { handler.OnMouseWheel(at, input.steps); });
    } else if (input.kind == Kind::KeyDown) {
        calls.ask([&] { return handler.OnKeyDown(input.key); }, false);
    }
}

void RecordingView::SetTimer(unsigned int id, unsigned int milliseconds)
{
    m_back_end.set_timer(this, id, milliseconds, [this, id] { m_handler.OnTimer(id); });
}

void RecordingView::KillTimer(unsigned int id)
{
    m_back_end.kill_timers(this, &id);
}

int RecordingView::TrackPopupMenu(CXPoint const &, CXArray<CXTString<wchar_t>> const &entries)
{
    RecordingBackEnd &back_end = m_back_end;
    Modal modal { Modal::Kind::Menu, {}, {}, {}, 0, {} };
    for (int i = 0; i < entries.GetSize(); ++i)
        modal.entries.emplace_back(entries[i].GetConstBuffer());
    int const choice = back_end.answer(modal, -1);
    back_end.calls.rethrow();
    return choice;
}

void RecordingFrame::Show(bool show)
{
    view.is_visible = show;
    view.Invalidate(true);
}

// --- RecordingProgress

RecordingProgress::~RecordingProgress()
{
    m_back_end.kill_timers(this, nullptr);
}

void RecordingProgress::ShowBar(int bar, bool show)
{
    at(bar).is_shown = at(bar).is_label_shown = show;
}

void RecordingProgress::SetBarPos(int bar, int percent)
{
    at(bar).position = std::clamp(percent, 0, 100);
}

void RecordingProgress::StepBar(int bar)
{
    int const position = at(bar).position + m_steps.at(std::size_t(bar));
    at(bar).position = position > 100 ? 0 : std::max(position, 0);
}

void RecordingProgress::ShowOkButton(wchar_t const *text, int width)
{
    contents.is_cancel_shown = false;
    contents.is_ok_shown = true;
    contents.ok_text = text;
    contents.ok_width = width;
}

void RecordingProgress::act(ProgressAction action)
{
    if (contents.is_ok_shown && action != ProgressAction::Cancel)
        m_back_end.calls.call([&] { handler.OnOk(); });
    else if (contents.is_cancel_shown && contents.is_cancel_enabled && action != ProgressAction::Ok)
        m_back_end.calls.call([&] { handler.OnCancel(); });
}

void RecordingProgress::SetTimer(unsigned int id, unsigned int milliseconds)
{
    m_back_end.set_timer(this, id, milliseconds, [this, id] { handler.OnTimer(id); });
}

void RecordingProgress::KillTimer(unsigned int id)
{
    m_back_end.kill_timers(this, &id);
}

// --- RecordingBackEnd

void RecordingBackEnd::post(std::function<void()> event)
{
    std::lock_guard const lock(m_mutex);
    m_events.push_back(std::move(event));
}

void RecordingBackEnd::wait()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void RecordingBackEnd::set_timer(
    void const *owner, unsigned int id, unsigned int milliseconds, std::function<void()> function)
{
    std::chrono::milliseconds const period(milliseconds);
    m_timers[{ owner, id }]
        = { period, std::chrono::steady_clock::now() + period, std::move(function) };
}

void RecordingBackEnd::kill_timers(void const *owner, unsigned int const *id)
{
    std::erase_if(m_timers, [&](auto const &timer) {
        return timer.first.first == owner && (id == nullptr || timer.first.second == *id);
    });
}

bool RecordingBackEnd::serve_timer()
{
    auto const now = std::chrono::steady_clock::now();
    for (auto &[key, timer] : m_timers) {
        if (timer.due > now)
            continue;
        timer.due = now + timer.period;
        calls.call(std::function<void()>(timer.function)); // the timer may be killed
        return true;
    }
    return false;
}

bool RecordingBackEnd::serve_one()
{
    std::function<void()> event;
    {
        std::lock_guard const lock(m_mutex);
        if (!m_events.empty()) {
            event = std::move(m_events.front());
            m_events.pop_front();
        }
    }
    if (event) {
        event();
        return true;
    }
    return serve_timer() || std::ranges::any_of(std::vector(views), [](RecordingView *view) {
        return view->paint();
    });
}

bool RecordingBackEnd::PumpMessages()
{
    while (!m_is_ending && !calls.has_exception() && serve_one()) { }
    calls.rethrow();
    return !m_is_ending;
}

int RecordingBackEnd::Run()
{
    while (PumpMessages())
        wait();
    m_is_ending = false;
    return m_result;
}

void RecordingBackEnd::Quit(int result)
{
    m_is_ending = true;
    m_result = result;
}

// The modal loop.
int RecordingBackEnd::answer(Modal const &modal, int otherwise)
{
    while (!m_is_ending && !calls.has_exception() && serve_one()) { }
    if (m_answers.empty())
        return otherwise;
    auto const function = m_answers.front();
    m_answers.pop_front();
    return function(modal);
}

int RecordingBackEnd::ShowMessageBox(wchar_t const *text, wchar_t const *title, unsigned int flags)
{
    if (std::this_thread::get_id() != m_main_thread) {
        std::promise<int> answer;
        post([&] { calls.call([&] { answer.set_value(ShowMessageBox(text, title, flags)); }); });
        return answer.get_future().get();
    }
    static std::vector<int> const buttons[] // by the low bits of the flags
        = { { 1 }, { 1, 2 }, { 3, 4, 5 }, { 6, 7, 2 }, { 6, 7 }, { 4, 2 } };
    Modal modal { Modal::Kind::MessageBox, title, text, buttons[flags & 15], 0, {} };
    modal.default_button
        = modal.buttons.at(std::min<std::size_t>(flags >> 8 & 15, modal.buttons.size() - 1));
    int const choice = answer(modal, modal.default_button);
    calls.rethrow();
    return choice != 0 ? choice : modal.buttons.back();
}

void RecordingBackEnd::ShowText(CWnd *parent, wchar_t const *title, wchar_t const *text)
{
    auto const view = std::ranges::find(views, parent);
    if (view != views.end())
        (*view)->is_enabled = false;
    answer({ Modal::Kind::Text, title, text, {}, 0, {} }, 0);
    auto const left = std::ranges::find(views, parent);
    if (left != views.end())
        (*left)->is_enabled = true;
    calls.rethrow();
}

std::unique_ptr<kortools::ui::ProgressWindow> RecordingBackEnd::CreateProgressWindow(
    CWnd *, kortools::ui::ProgressWindowHandler &handler)
{
    return std::make_unique<RecordingProgress>(*this, handler);
}

std::unique_ptr<kortools::ui::ViewFrame> RecordingBackEnd::CreateViewFrame(
    kortools::ui::WindowHandler &handler, kortools::ui::ViewKind kind, wchar_t const *title)
{
    return std::make_unique<RecordingFrame>(*this, handler, kind, title);
}

} // namespace kor_test
