// SPDX-License-Identifier: MIT
// Windows of the host's own. Their messages are looked at before the host sees them, and again
// afterwards where the rubber band has to stay above what he paints.
#include "kortools/ui/win32/back_end.h"
#include "kortools/ui/win32/surface.h"
#include "kortools/ui/win32/window_services.h"

#include <algorithm>
#include <string>

namespace kortools::ui::win32 {
namespace {

// Gets the timers, whose numbers may be the host's as well in his own window.
class TimerWindow {
public:
    explicit TimerWindow(WindowHandler *handler)
        : m_timers(
            create_window(*this, L"KorTools.Timers", { .style = WS_POPUP, .parent = HWND_MESSAGE }))
        , m_handler(handler)
    {
    }
    TimerWindow(TimerWindow const &) = delete;
    TimerWindow &operator=(TimerWindow const &) = delete;
    ~TimerWindow() { DestroyWindow(m_handle); }

    Timers &get() { return m_timers; }

    LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam)
    {
        if (message != WM_TIMER)
            return DefWindowProcW(m_handle, message, wparam, lparam);
        auto const id = m_timers.Find(wparam);
        if (id && m_handler)
            get_event_loop().calls.call([&] { m_handler->OnTimer(*id); });
        return 0;
    }
    HWND m_handle = nullptr;

private:
    Timers m_timers;
    WindowHandler *m_handler;
};

// Drawn by inverting, so that drawing it again removes it.
class RubberBand {
public:
    explicit RubberBand(HWND window)
        : m_window(window)
    {
        check(SetWindowSubclass(window, OnMessage, reinterpret_cast<UINT_PTR>(this),
            reinterpret_cast<DWORD_PTR>(this)));
    }
    RubberBand(RubberBand const &) = delete;
    RubberBand &operator=(RubberBand const &) = delete;
    ~RubberBand()
    {
        Show({});
        RemoveWindowSubclass(m_window, OnMessage, reinterpret_cast<UINT_PTR>(this));
    }

    void Show(CXRect const &rect)
    {
        Invert();
        m_rect = rect;
        Invert();
    }

private:
    void Invert() const
    {
        WindowDC const dc(m_window);
        for (CXRect const &side : get_sides(m_rect))
            PatBlt(dc.get(), side.left, side.top, side.Width(), side.Height(), DSTINVERT);
    }

    static LRESULT CALLBACK OnMessage(
        HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR, DWORD_PTR object)
    {
        auto &band = *reinterpret_cast<RubberBand *>(object);
        if (message != WM_PAINT || band.m_rect.IsRectEmpty())
            return DefSubclassProc(window, message, wparam, lparam);
        CXRect const rect = band.m_rect;
        band.Show({});
        RECT const native = rect; // whole, and without traces of what was not valid
        ::InvalidateRect(window, &native, FALSE);
        LRESULT const result = DefSubclassProc(window, message, wparam, lparam);
        band.Show(rect);
        return result;
    }

    HWND m_window;
    CXRect m_rect;
};

template <class Interface> class HostWindow : public NativeWindow<Interface> {
public:
    HostWindow(HWND window, WindowHandler *handler)
        : NativeWindow<Interface>(window)
        , m_timers(handler)
        , m_band(window)
    {
    }
    void SetRedraw(bool redraw) override
    {
        SendMessageW(this->GetHandle(), WM_SETREDRAW, redraw, 0);
    }
    void ShowRubberBand(CXRect const &rect) override { m_band.Show(rect); }
    void HideRubberBand() override { m_band.Show({}); }
    void SetTimer(unsigned int id, unsigned int milliseconds) override
    {
        m_timers.get().Set(id, milliseconds);
    }
    void KillTimer(unsigned int id) override { m_timers.get().Kill(id); }

private:
    TimerWindow m_timers;
    RubberBand m_band;
};

// Positions count the library's characters, of which a line's end is one.
class HostEdit final : public HostWindow<CEdit> {
public:
    explicit HostEdit(HWND window)
        : HostWindow(window, nullptr)
    {
    }
    CXTString<wchar_t> GetText() const override
    {
        std::wstring text = get_window_text(GetHandle());
        std::erase(text, L'\r');
        return { text.c_str(), int(text.size()) };
    }
    void SetText(wchar_t const *text) override
    {
        SetWindowTextW(GetHandle(), to_native_lines(text).c_str());
    }
    void GetSel(int &start, int &end) const override
    {
        DWORD native_start = 0;
        DWORD native_end = 0;
        SendMessageW(GetHandle(), EM_GETSEL, reinterpret_cast<WPARAM>(&native_start),
            reinterpret_cast<LPARAM>(&native_end));
        std::wstring const text = get_window_text(GetHandle());
        start = count_characters(text, native_start);
        end = count_characters(text, native_end);
    }
    void SetSel(int start, int end) override
    {
        std::wstring const text = get_window_text(GetHandle());
        SendMessageW(
            GetHandle(), EM_SETSEL, WPARAM(find_native(text, start)), find_native(text, end));
    }
    void ReplaceSel(wchar_t const *text) override
    {
        std::wstring const native = to_native_lines(text);
        SendMessageW(GetHandle(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(native.c_str()));
    }

private:
    static int count_characters(std::wstring const &text, std::size_t native)
    {
        auto const end = text.begin() + std::ptrdiff_t(std::min(native, text.size()));
        return int(end - text.begin() - std::count(text.begin(), end, L'\r'));
    }
    static int find_native(std::wstring const &text, int characters)
    {
        std::size_t native = 0;
        for (int left = characters; left > 0 && native < text.size(); ++native)
            left -= text[native] != L'\r';
        return int(native);
    }
};

} // namespace

std::unique_ptr<CWnd> attach_window(void *native_window, WindowHandler *handler)
{
    return std::make_unique<HostWindow<CWnd>>(static_cast<HWND>(native_window), handler);
}

std::unique_ptr<CEdit> attach_edit(void *native_window)
{
    return std::make_unique<HostEdit>(static_cast<HWND>(native_window));
}

} // namespace kortools::ui::win32
