// SPDX-License-Identifier: MIT
#include "kortools/ui/back_end.h"

#include "kortools/app/application.h"
#include "kortools/files/compact_path.h"
#include "kortools/platform/message_box.h"

#include <atomic>

namespace kortools::ui {
namespace {

std::atomic<BackEnd *> s_back_end { nullptr };

int show_box(wchar_t const *text, unsigned int flags)
{
    BackEnd *const back_end = s_back_end.load();
    return back_end != nullptr
        ? back_end->ShowMessageBox(text, GetInternalProductName(false), flags)
        : 0;
}

int get_client_width(CWnd *window)
{
    return window->GetClientSize().cx;
}

int get_text_width(CWnd *window, wchar_t const *text, int length)
{
    return window->GetTextWidth(text, length);
}

constexpr files::WindowMeasure s_measure { get_client_width, get_text_width };

} // namespace

BackEnd *set_back_end(BackEnd *back_end)
{
    BackEnd *const before = s_back_end.exchange(back_end);
    platform::set_message_box_handler(back_end != nullptr ? show_box : nullptr);
    files::set_window_measure(back_end != nullptr ? &s_measure : nullptr);
    return before;
}

BackEnd *get_back_end()
{
    return s_back_end.load();
}

} // namespace kortools::ui
