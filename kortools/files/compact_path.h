// SPDX-License-Identifier: MIT
// Paths made short enough to be shown.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

class CWnd;

// A name of more than `maxLength` characters becomes its root, "..." and its last `maxLength` - 3
// characters, of at least 7. The root is not counted, so the result is longer than the limit by
// that; without one it is a single '\'.
//
//   C:\very\long\path\file.txt, 12  =>  C:\...\file.txt
KORTOOLS_API CXTString<wchar_t> fileCompactPath(CXTString<wchar_t> const &name, int maxLength);

// A name that is wider than `width` pixels in the window's font, of which at most 259 characters
// count, loses the end of its directories, then the end of its last component, and shows "..."
// there. A width of 0 is that of the window's client area but 10 pixels. What is left when nothing
// fits is wider. Without a window, or a back end that measures, it is fileCompactPath(name, 15).
//
//   C:\very\long\path\file.txt  =>  C:\very\lo...\file.txt  =>  ...\file.txt  =>  ...\fil...
KORTOOLS_API CXTString<wchar_t> fileCompactPath(
    CXTString<wchar_t> const &name, CWnd *window, int width = 0);

namespace kortools::files {

// What a window back end knows: widths in pixels, of text in the window's font.
struct WindowMeasure {
    int (*get_client_width)(CWnd *window);
    int (*get_text_width)(CWnd *window, wchar_t const *text, int length);
};

// Installs a back end's functions, which must stay; null removes them. Returns those before. Thread
// safe.
KORTOOLS_API WindowMeasure const *set_window_measure(WindowMeasure const *measure);

} // namespace kortools::files
