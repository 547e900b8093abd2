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

// What is left of `capacity` behind `used` characters, as the services take it.
int room_behind(long long capacity, std::size_t used)
{
    return static_cast<int>(
        std::clamp<long long>(capacity - static_cast<long long>(used), 0, INT_MAX));
}

// The shape that both directions share: ASCII first, then the system for what is left.
template <class Source, class Target>
long long convert(unsigned int page, Source const *source, long long size, Target *target,
    long long capacity, long long (*convert_rest)(unsigned int, Source const *, int, Target *, int))
{
    auto const length = static_cast<std::size_t>(size);
    std::size_t done = 0;
    if (is_ascii_based(page)) {
        auto const room = static_cast<std::size_t>(std::clamp<long long>(capacity, 0, size));
        done = target ? copy_ascii(source, room, target) : count_ascii(source, length);
    }
    if (done == length)
        return size;
    long long const rest = convert_rest(page, source + done, static_cast<int>(length - done),
        target ? target + done : nullptr, room_behind(capacity, done));
    return rest < 0 ? -1 : static_cast<long long>(done) + rest;
}

} // namespace

bool is_ascii_based(unsigned int page)
{
    static constexpr unsigned int pages[] = { 437, 720, 737, 775, 850, 852, 855, 857, 858, 860, 861,
        862, 863, 864, 865, 866, 869, 874, 932, 936, 949, 950, 1250, 1251, 1252, 1253, 1254, 1255,
        1256, 1257, 1258, 10000, 10006, 10007, 10029, 10081, 20127, 20866, 21866, 28591, 28592,
        28593, 28594, 28595, 28596, 28597, 28598, 28599, 28603, 28605, 51932, 51936, 51949, 54936 };
    return std::binary_search(std::begin(pages), std::end(pages), page);
}

unsigned int get_ansi_code_page()
{
    unsigned int const page = s_ansi_override.load(std::memory_order_relaxed);
    return page != 0 ? page : get_system_ansi_code_page();
}

bool set_ansi_code_page(unsigned int page)
{
    if (page == oem_page || page == thread_ansi_page || !is_code_page(page))
        return false;
    s_ansi_override.store(page, std::memory_order_relaxed);
    return true;
}

bool is_code_page(unsigned int page)
{
    page = resolve(page);
    return page == utf8_code_page || has_system_code_page(page);
}

long long narrow_to_wide(
    unsigned int page, char const *source, long long size, wchar_t *target, long long capacity)
{
    page = resolve(page);
    if (size < 0 || size > INT_MAX || !is_code_page(page))
        return -1;
    if (size == 0)
        return 0;
    if (page != utf8_code_page)
        return convert(page, source, size, target, capacity, convert_from_code_page);
    return decode_utf8(source, static_cast<std::size_t>(size), target,
        static_cast<std::size_t>(std::max(capacity, 0LL)));
}

long long wide_to_narrow(
    unsigned int page, wchar_t const *source, long long length, char *target, long long capacity)
{
    page = resolve(page);
    if (length < 0 || length > INT_MAX || !is_code_page(page))
        return -1;
    if (length == 0)
        return 0;
    if (page != utf8_code_page)
        return convert(page, source, length, target, capacity, convert_to_code_page);
    return encode_utf8(source, static_cast<std::size_t>(length), target,
        static_cast<std::size_t>(std::max(capacity, 0LL)));
}

} // namespace kortools::platform
