// SPDX-License-Identifier: MIT
// Windows that the host made himself, and what the screen shows of ours.
#include "kortools/ui/win32/back_end.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <windows.h>

#include <commctrl.h>

using namespace kortools::ui;

namespace {

std::vector<std::string> s_host_log;

LRESULT CALLBACK host_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message == WM_TIMER)
        s_host_log.push_back("timer " + std::to_string(wparam));
    if (message == WM_LBUTTONUP || message == WM_RBUTTONUP)
        s_host_log.push_back("up");
    if (message != WM_PAINT)
        return DefWindowProcW(window, message, wparam, lparam);
    PAINTSTRUCT paint {};
    HDC const dc = BeginPaint(window, &paint);
    FillRect(dc, &paint.rcPaint, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    EndPaint(window, &paint);
    return 0;
}

class TimerRecorder : public WindowHandler {
public:
    void OnTimer(unsigned int id) override { timers.push_back(id); }
    std::vector<unsigned int> timers;
};

std::vector<COLORREF> read_pixels(HWND window, CXSize const &size)
{
    std::vector<COLORREF> pixels;
    HDC const dc = GetDC(window);
    for (int y = 0; y < size.cy; ++y) {
        for (int x = 0; x < size.cx; ++x)
            pixels.push_back(GetPixel(dc, x, y));
    }
    ReleaseDC(window, dc);
    return pixels;
}

class HostWindows : public testing::Test {
protected:
    HostWindows()
    {
        s_host_log.clear();
        WNDCLASSW host {};
        host.lpszClassName = L"KorTest.Host";
        host.hInstance = GetModuleHandleW(nullptr);
        host.lpfnWndProc = host_procedure;
        RegisterClassW(&host);
        window = CreateWindowExW(0, host.lpszClassName, L"", WS_POPUP | WS_VISIBLE, 10, 10, 120, 90,
            nullptr, nullptr, host.hInstance, nullptr);
        back_end.PumpMessages();
    }
    ~HostWindows() override { DestroyWindow(window); }

    template <class Condition> bool serve_until(Condition const &condition)
    {
        for (int i = 0; i < 2000 && !condition(); ++i) {
            back_end.PumpMessages();
            Sleep(10);
        }
        return condition();
    }

    BackEnd &back_end = win32::install_back_end();
    HWND window = nullptr;
};

} // namespace

TEST_F(HostWindows, KeepTheirOwnTimersAndMessages)
{
    TimerRecorder handler;
    auto const attached = win32::attach_window(window, &handler);
    EXPECT_EQ(win32::get_native_window(*attached), window);
    EXPECT_EQ(attached->GetClientSize(), CXSize(120, 90));
    SetTimer(window, 4, 10, nullptr);
    attached->SetTimer(3, 10); // by the same number, to the system
    EXPECT_TRUE(serve_until([&] { return !handler.timers.empty() && !s_host_log.empty(); }));
    attached->KillTimer(3);
    KillTimer(window, 4);
    EXPECT_EQ(handler.timers[0], 3U);
    EXPECT_EQ(s_host_log[0], "timer 4");

    s_host_log.clear();
    attached->SetCapture();
    PostMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(-5, 7));
    PostMessageW(window, WM_RBUTTONUP, 0, 0);
    PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(8, 9));
    InputEvent event {};
    do {
        EXPECT_TRUE(attached->WaitForInput(event)) << "the pointer itself may have moved";
    } while (event.kind == InputEvent::Kind::MouseMove);
    EXPECT_EQ(event.kind, InputEvent::Kind::LeftButtonUp);
    EXPECT_EQ(event.position, CXPoint(8, 9));
    attached->ReleaseCapture();
    EXPECT_EQ(s_host_log, std::vector<std::string> { "up" }); // the one that nobody waited for
    EXPECT_FALSE(attached->WaitForInput(event));
}

TEST_F(HostWindows, ShowARubberBandAboveWhatTheyPaint)
{
    auto const attached = win32::attach_window(window, nullptr);
    CXSize const size = attached->GetClientSize();
    auto const count_dark = [&] {
        auto const pixels = read_pixels(window, size);
        return std::count(pixels.begin(), pixels.end(), RGB(0, 0, 0));
    };
    attached->Invalidate(true);
    attached->UpdateWindow();
    EXPECT_EQ(count_dark(), 0);
    for (CXRect const &band : { CXRect(10, 10, 60, 40), CXRect(20, 30, 30, 80) }) {
        int const around = 2 * (band.Width() + band.Height()) - 4;
        attached->ShowRubberBand(band);
        EXPECT_EQ(count_dark(), around);
        for (CXRect const &part : { CXRect(0, 0, 120, 90), CXRect(15, 5, 25, 35) }) {
            attached->InvalidateRect(part, true);
            attached->UpdateWindow();
            EXPECT_EQ(count_dark(), around);
        }
    }
    attached->HideRubberBand();
    EXPECT_EQ(count_dark(), 0);
}

TEST_F(HostWindows, CountAnEndOfLineInFieldsAsOneCharacter)
{
    HWND const field = CreateWindowExW(
        0, WC_EDITW, L"", WS_CHILD | ES_MULTILINE, 0, 0, 90, 60, window, nullptr, nullptr, nullptr);
    auto const edit = win32::attach_edit(field);
    edit->SetText(L"a\nbc\nd");
    EXPECT_EQ(GetWindowTextLengthW(field), 8);
    edit->SetSel(2, 5); // "bc\n"
    EXPECT_EQ(SendMessageW(field, EM_GETSEL, 0, 0), MAKELONG(3, 7));
    edit->ReplaceSel(L"\nx");
    EXPECT_EQ(std::wstring(edit->GetText().GetConstBuffer()), L"a\n\nxd");
    int start = 0;
    int end = 0;
    edit->GetSel(start, end);
    EXPECT_EQ(start, 4);
    EXPECT_EQ(end, 4);
}

TEST_F(HostWindows, AreNotNeededForTheScreenToShowWhatIsCaptured)
{
    class Painter : public WindowHandler {
        void OnPaint(CDC &dc, CXRect const &invalid) override
        {
            dc.FillRect(invalid, CRGBColor(40, 120, 200));
            dc.DrawLine({ 0, 0 }, { 60, 50 }, { CRGBColor(255, 0, 0) });
            dc.DrawString({ 5, 30 }, L"Text", 4, CRGBColor(0, 0, 0));
        }
    } painter;
    auto const frame = back_end.CreateViewFrame(painter, ViewKind::Plain, L"A frame");
    frame->SetViewSize({ 150, 60 });
    frame->Show(true);
    int rounds = 0;
    serve_until([&] { return ++rounds > 3; });
    frame->GetView().ShowRubberBand({ 20, 10, 90, 50 });
    Picture const picture = frame->CaptureView();
    auto const seen
        = read_pixels(static_cast<HWND>(win32::get_native_window(frame->GetView())), picture.size);
    ASSERT_EQ(seen.size(), picture.pixels.size());
    for (std::size_t i = 0; i < seen.size(); ++i)
        ASSERT_EQ(seen[i], picture.pixels[i].GetRGB()) << i;
    Picture const whole = frame->CaptureFrame();
    EXPECT_GT(whole.size.cy, picture.size.cy);
}
