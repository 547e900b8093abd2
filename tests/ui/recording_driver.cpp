// SPDX-License-Identifier: MIT
#include "tests/ui/recording_back_end.h"

#include <algorithm>

namespace kor_test {
namespace {

// Nobody asks a field for more than its text.
class RecordingEdit : public CEdit {
public:
    CXTString<wchar_t> GetText() const override { return m_text.c_str(); }
    void SetText(wchar_t const *text) override
    {
        m_text = text;
        SetSel(0, 0);
    }
    void GetSel(int &start, int &end) const override
    {
        start = m_start;
        end = m_end;
    }
    void SetSel(int start, int end) override
    {
        int const length = int(m_text.size());
        m_start = std::clamp(start, 0, length);
        m_end = std::clamp(end, m_start, length);
    }
    void ReplaceSel(wchar_t const *text) override
    {
        std::wstring const inserted = text;
        m_text.replace(std::size_t(m_start), std::size_t(m_end - m_start), inserted);
        m_start = m_end = m_start + int(inserted.size());
    }

    CXSize GetClientSize() const override { return { 200, 20 }; }
    int GetTextWidth(wchar_t const *, int length) const override { return 8 * length; }
    bool HasScrollBar(ScrollBar) const override { return false; }
    CXSize GetScrollBarSize() const override { return {}; }
    void SetScrollInfo(ScrollBar, kortools::ui::ScrollRange const &) override { }
    void SetRedraw(bool) override { }
    void Invalidate(bool) override { }
    void InvalidateRect(CXRect const &, bool) override { }
    void UpdateWindow() override { }
    void ShowRubberBand(CXRect const &) override { }
    void HideRubberBand() override { }
    CXPoint GetCursorPos() const override { return {}; }
    void SetCursor(kortools::ui::CursorShape) override { }
    bool IsKeyDown(unsigned int) const override { return false; }
    void SetCapture() override { }
    void ReleaseCapture() override { }
    bool WaitForInput(kortools::ui::InputEvent &) override { return false; }
    void SetTimer(unsigned int, unsigned int) override { }
    void KillTimer(unsigned int) override { }
    int TrackPopupMenu(CXPoint const &, CXArray<CXTString<wchar_t>> const &) override { return -1; }

private:
    std::wstring m_text;
    int m_start = 0;
    int m_end = 0;
};

class RecordingDriver : public Driver {
public:
    kortools::ui::BackEnd &install() override
    {
        kortools::ui::set_back_end(&m_back_end);
        return m_back_end;
    }
    bool has_task_bar() const override { return true; }
    bool has_fonts() const override { return true; }

    void input(kortools::ui::ViewFrame &frame, UserInput const &input) override
    {
        post_to(frame, [input](RecordingFrame &to) { to.view.handle(input); });
    }
    void scroll(kortools::ui::ViewFrame &frame, ScrollBar bar, int position) override
    {
        post_to(frame, [=](RecordingFrame &to) { to.view.scroll(bar, position); });
    }
    void close(kortools::ui::ViewFrame &frame) override
    {
        post_to(frame, [](RecordingFrame &to) { to.view.close(); });
    }
    void resize(kortools::ui::ViewFrame &frame, CXSize const &by) override
    {
        post_to(frame, [by](RecordingFrame &to) { to.view.set_size(to.view.size + by); });
    }
    void lose_capture(kortools::ui::ViewFrame &frame) override
    {
        post_to(frame, [](RecordingFrame &to) { to.view.lose_capture(); });
    }
    FrameContents read(kortools::ui::ViewFrame &frame) override
    {
        auto const &from = static_cast<RecordingFrame &>(frame);
        return { from.title, from.status, from.view.is_enabled, from.view.cursor };
    }
    void post(std::function<void()> function) override { m_back_end.post(std::move(function)); }
    void answer_next(std::function<int(Modal const &)> answer) override
    {
        m_back_end.answer_next(std::move(answer));
    }
    std::unique_ptr<CEdit> make_edit(bool) override { return std::make_unique<RecordingEdit>(); }
    ProgressContents read(kortools::ui::ProgressWindow &window) override
    {
        return static_cast<RecordingProgress &>(window).contents;
    }
    void act(kortools::ui::ProgressWindow &window, ProgressAction action) override
    {
        auto &to = static_cast<RecordingProgress &>(window);
        m_back_end.post([&to, action, token = std::weak_ptr(to.alive)] {
            if (!token.expired())
                to.act(action);
        });
    }

private:
    template <class Function> void post_to(kortools::ui::ViewFrame &frame, Function function)
    {
        auto &to = static_cast<RecordingFrame &>(frame);
        m_back_end.post([&to, function, token = to.view.alive()] {
            if (!token.expired())
                function(to);
        });
    }

    RecordingBackEnd m_back_end;
};

} // namespace

std::unique_ptr<Driver> make_driver()
{
    return std::make_unique<RecordingDriver>();
}

} // namespace kor_test
