// SPDX-License-Identifier: MIT
#include "kortools/core/conversion.h"

#include "kortools/core/utf16.h"
#include "kortools/platform/ascii_text.h"
#include "kortools/platform/automation_strings.h"
#include "kortools/platform/code_pages.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

namespace platform = kortools::platform;
using kortools::core::convert_text;

// Texts up to this length are converted in one pass, through the stack.
constexpr std::size_t short_length = 512;

// What they take in a page without state: up to four bytes for a character, at most one wide
// character for a byte.
template <class T> constexpr long long short_capacity = short_length *(sizeof(T) == 1 ? 4 : 1);

template <auto convert, class Source, class Target>
bool convert_into(std::basic_string_view<Source> text, unsigned int page, CXTString<Target> &result)
{
    auto const size = static_cast<long long>(text.size());
    CXTCharArray<Target> &target = result;
    if (text.size() <= short_length) {
        Target converted[short_capacity<Target>];
        long long const count = convert(page, text.data(), size, converted, short_capacity<Target>);
        if (count >= 0) {
            target.Assign(converted, count);
            return true;
        } // else the page does not exist, or has state
    }
    long long const count = convert(page, text.data(), size, nullptr, 0);
    target.SetLength(count); // empty after a failure
    return count >= 0 && convert(page, text.data(), size, target.GetData(), count) == count;
}

constexpr bool is_continuation(unsigned char byte)
{
    return (byte & 0xC0) == 0x80;
}

// The length of the sequence that begins at `at`, 0 for one that is not accepted. Stops at the
// closing zero, which is no continuation.
constexpr int get_sequence_length(unsigned char const *at)
{
    if ((at[0] & 0xE0) == 0xC0)
        return is_continuation(at[1]) ? 2 : 0;
    if ((at[0] & 0xF0) == 0xE0)
        return is_continuation(at[1]) && is_continuation(at[2]) ? 3 : 0;
    return 0;
}

constexpr unsigned short decode_sequence(unsigned char const *at, int length)
{
    if (length == 2)
        return static_cast<unsigned short>((at[0] & 0x1F) << 6 | (at[1] & 0x3F));
    return static_cast<unsigned short>(at[0] << 12 | (at[1] & 0x3F) << 6 | (at[2] & 0x3F));
}

// The number of bytes when every sequence is accepted, else 0.
int measure_utf8(unsigned char const *source, std::size_t size)
{
    unsigned char const *at = source;
    unsigned char const *const end = source + size;
    while (true) {
        at += platform::count_ascii(at, static_cast<std::size_t>(end - at));
        if (at == end)
            return static_cast<int>(size);
        int const length = get_sequence_length(at);
        if (length == 0)
            return 0;
        at += length;
    }
}

} // namespace

XCA2W::XCA2W(char const *text, xStringEncoding encoding)
    : m_isConverted(text && convert_text(std::string_view(text), encoding, m_text))
{
}

XCW2A::XCW2A(wchar_t const *text, xStringEncoding encoding)
    : m_isConverted(text && convert_text(std::wstring_view(text), encoding, m_text))
{
}

namespace kortools::core {

AutomationString::AutomationString(wchar_t const *text)
    : m_block(platform::allocate_automation_string(text))
{
    if (platform::wide_is_utf16 || !m_block)
        return;
    std::size_t const count = GetLength();
    std::size_t const length = count_wide_characters(m_block, count);
    m_wide.reset(new (std::nothrow) wchar_t[length + 1]());
    if (m_wide)
        copy_from_utf16(m_block, count, m_wide.get());
}

AutomationString::~AutomationString()
{
    platform::free_automation_string(m_block);
}

unsigned int AutomationString::GetLength() const
{
    return platform::get_automation_string_length(m_block);
}

AutomationString::operator wchar_t *() const
{
    return platform::wide_is_utf16 ? reinterpret_cast<wchar_t *>(m_block) : m_wide.get();
}

bool convert_text(std::string_view text, xStringEncoding encoding, CXTString<wchar_t> &result)
{
    return convert_into<platform::narrow_to_wide>(text, get_code_page(encoding), result);
}

bool convert_text(std::wstring_view text, xStringEncoding encoding, CXTString<char> &result)
{
    return convert_into<platform::wide_to_narrow>(text, get_code_page(encoding), result);
}

} // namespace kortools::core

XCA2BSTR::XCA2BSTR(char const *text)
    : AutomationString(XCA2W(text))
{
}

int xUTF8ToUTF16(unsigned char const *source, unsigned short *target)
{
    if (!source)
        return 0;
    std::size_t const size = std::strlen(reinterpret_cast<char const *>(source));
    if (!target)
        return measure_utf8(source, size);
    unsigned char const *at = source;
    unsigned char const *const end = source + size;
    unsigned short *out = target;
    while (true) {
        std::size_t const count = platform::copy_ascii(at, static_cast<std::size_t>(end - at), out);
        at += count;
        out += count;
        if (at == end)
            break;
        int const length = get_sequence_length(at);
        if (length == 0)
            return 0;
        *out++ = decode_sequence(at, length);
        at += length;
    }
    *out++ = 0;
    return static_cast<int>(out - target);
}

unsigned long long xUTF16ToUTF32(
    unsigned short const *source, unsigned long long count, unsigned int *target)
{
    unsigned int *out = target;
    for (unsigned long long i = 0; i < count; ++i) {
        unsigned int const unit = source[i];
        if (!platform::is_high_surrogate(unit)) {
            *out++ = unit;
            continue;
        }
        unsigned int const next = source[++i];
        if (platform::is_low_surrogate(next))
            *out++ = (unit & 0x3FF) << 10 | (next & 0x3FF);
    }
    return static_cast<unsigned long long>(out - target);
}

void ReverseBuffer(void *block, int size)
{
    auto *const bytes = static_cast<unsigned char *>(block);
    if (bytes && size > 0)
        std::reverse(bytes, bytes + size);
}
