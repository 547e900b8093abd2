// SPDX-License-Identifier: MIT
#include "apps/common/console.h"

#include "kortools/archive/exception.h"
#include "kortools/core/conversion.h"
#include "kortools/platform/terminal.h"

#include <cstdio>
#include <string_view>

namespace kor_apps {

std::string to_utf8(CXTString<wchar_t> const &text)
{
    XCW2A const bytes(text, xEncodingUTF8);
    char const *const result = bytes;
    return result != nullptr ? result : "";
}

CXTString<wchar_t> from_utf8(std::string const &text)
{
    XCA2W const wide(text.c_str(), xEncodingUTF8);
    return CXTString<wchar_t>(static_cast<wchar_t const *>(wide));
}

void print_line(CXTString<wchar_t> const &line)
{
    std::string const bytes = to_utf8(line) + '\n';
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

void print_error(char const *program, CXTString<wchar_t> const &message)
{
    std::fflush(stdout);
    std::fprintf(stderr, "%s: %s\n", program, to_utf8(message).c_str());
}

void fail(CXTString<wchar_t> const &message)
{
    auto *const exception = new CXException(message);
    XSetThreadException(exception);
    throw exception;
}

ProgressLine::ProgressLine(CXTString<wchar_t> const &label, bool enabled)
    : m_label(to_utf8(label))
    , m_enabled(enabled && kortools::platform::is_error_stream_terminal())
{
}

ProgressLine::~ProgressLine()
{
    if (m_shown)
        std::fputs("\r\x1B[K", stderr);
}

void ProgressLine::Update(unsigned long long done, unsigned long long total)
{
    using namespace std::chrono_literals;
    if (!m_enabled || total == 0)
        return;
    auto const now = std::chrono::steady_clock::now();
    if (now - m_last < 100ms)
        return;
    m_last = now;
    m_shown = true;
    constexpr int width = 30;
    double const part = static_cast<double>(done) / static_cast<double>(total);
    int const filled = static_cast<int>(part * width);
    std::string bar(static_cast<std::size_t>(width), '.');
    bar.replace(0, static_cast<std::size_t>(filled), static_cast<std::size_t>(filled), '#');
    std::fprintf(stderr, "\r\x1B[K%s [%s] %3.0f %%", m_label.c_str(), bar.c_str(), part * 100);
}

} // namespace kor_apps
