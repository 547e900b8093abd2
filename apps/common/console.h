// SPDX-License-Identifier: MIT
// Output of the command-line programs: UTF-8 lines and a progress line.
#pragma once

#include "kortools/core/xstring.h"

#include <chrono>
#include <string>

namespace kor_apps {

std::string to_utf8(CXTString<wchar_t> const &text);
CXTString<wchar_t> from_utf8(std::string const &text);

void print_line(CXTString<wchar_t> const &line);                          // standard output
void print_error(char const *program, CXTString<wchar_t> const &message); // standard error

// Raises a CXException with a message; the thread's pending one, as every thrown exception.
[[noreturn]] void fail(CXTString<wchar_t> const &message);

// Shows how far a long work is, on standard error and only where that is a terminal; at most ten
// times a second.
class ProgressLine {
public:
    explicit ProgressLine(CXTString<wchar_t> const &label, bool enabled = true);
    ~ProgressLine(); // clears the line
    ProgressLine(ProgressLine const &) = delete;
    ProgressLine &operator=(ProgressLine const &) = delete;

    void Update(unsigned long long done, unsigned long long total);

private:
    std::string m_label;
    std::chrono::steady_clock::time_point m_last {};
    bool const m_enabled;
    bool m_shown = false;
};

} // namespace kor_apps
