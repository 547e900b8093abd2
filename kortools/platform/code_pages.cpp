// SPDX-License-Identifier: MIT
#include "kortools/platform/code_pages.h"

#include "kortools/platform/ascii_text.h"
#include "kortools/platform/code_page_service.h"
#include "kortools/platform/utf8.h"

#include <algorithm>
#include <atomic>
#include <climits>

namespace kortools::platform {
namespace {

constexpr unsigned int ansi_page = 0;
constexpr unsigned int oem_page = 1;
constexpr unsigned int thread_ansi_page = 3;

std::atomic<unsigned int> s_ansi_override { 0 };

unsigned int resolve(unsigned int page)
{
    if (page == ansi_page || page == thread_ansi_page)
        return get_ansi_code_page();
    return page == oem_page ? get_system_oem_code_page() : page;
}

// A caller's capacity as a number of characters that may be added to a pointer: no more than
// `most`, all that can be needed.
std::size_t usable_room(long long capacity, long long most)
{
    return static_cast<std::size_t>(std::clamp(capacity, 0LL, most));
}

// The shape that both directions share: ASCII first, then the system for what is left.
template <class Source, class Target>
long long convert(unsigned int number, Source const *source, long long size, Target *target,
    long long capacity,
    long long (*convert_rest)(SystemCodePage const &, Source const *, int, Target *, int))
{
    SystemCodePage page;
    if (!find_system_code_page(number, page))
        return -1;
    auto const length = static_cast<std::size_t>(size);
    std::size_t done = 0;
    if (page.is_ascii_based) {
        done = target ? copy_ascii(source, usable_room(capacity, size), target)
                      : count_ascii(source, length);
    }
    if (done == length)
        return size;
    auto const room = usable_room(capacity - static_cast<long long>(done), INT_MAX);
    long long const rest = convert_rest(page, source + done, static_cast<int>(length - done),
        target ? target + done : nullptr, static_cast<int>(room));
    return rest < 0 ? -1 : static_cast<long long>(done) + rest;
}

} // namespace

unsigned int get_ansi_code_page()
{
    unsigned int const page = s_ansi_override.load(std::memory_order_relaxed);
    return page != 0 ? page : get_system_ansi_code_page();
}

bool set_ansi_code_page(unsigned int page)
{
    SystemCodePage known;
    bool const is_usable = page == 0 || page == utf8_code_page
        || (find_system_code_page(page, known) && known.is_ascii_based);
    if (!is_usable)
        return false;
    s_ansi_override.store(page, std::memory_order_relaxed);
    return true;
}

bool is_code_page(unsigned int page)
{
    page = resolve(page);
    SystemCodePage known;
    return page == utf8_code_page || find_system_code_page(page, known);
}

long long narrow_to_wide(
    unsigned int page, char const *source, long long size, wchar_t *target, long long capacity)
{
    page = resolve(page);
    if (size < 0 || size > INT_MAX)
        return -1;
    if (page != utf8_code_page)
        return convert(page, source, size, target, capacity, convert_from_code_page);
    return decode_utf8(source, static_cast<std::size_t>(size), target, usable_room(capacity, size));
}

long long estimate_wide_length(unsigned int page, char const *source, long long size)
{
    page = resolve(page);
    if (page != utf8_code_page || size < 0 || size > INT_MAX)
        return narrow_to_wide(page, source, size, nullptr, 0);
    return static_cast<long long>(count_utf8_starts(source, static_cast<std::size_t>(size)));
}

long long wide_to_narrow(
    unsigned int page, wchar_t const *source, long long length, char *target, long long capacity)
{
    page = resolve(page);
    if (length < 0 || length > INT_MAX)
        return -1;
    if (page != utf8_code_page)
        return convert(page, source, length, target, capacity, convert_to_code_page);
    return encode_utf8(
        source, static_cast<std::size_t>(length), target, usable_room(capacity, 4 * length));
}

std::size_t narrow_leading_ascii(
    unsigned int page, wchar_t const *source, std::size_t length, char *target)
{
    page = resolve(page);
    SystemCodePage known;
    bool const has_ascii
        = page == utf8_code_page || (find_system_code_page(page, known) && known.is_ascii_based);
    return has_ascii ? copy_ascii(source, length, target) : 0;
}

} // namespace kortools::platform
