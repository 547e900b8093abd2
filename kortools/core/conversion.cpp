// SPDX-License-Identifier: MIT
#include "kortools/core/conversion.h"

#include "kortools/core/text_conversion.h"
#include "kortools/core/utf16.h"
#include "kortools/platform/automation_strings.h"
#include "kortools/platform/utf8_runs.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>

namespace {

namespace platform = kortools::platform;
using kortools::core::other_char_t;

template <class T>
CXTString<T> make_converted(
    other_char_t<T> const *text, xStringEncoding encoding, bool &is_converted)
{
    is_converted = false;
    if (!text)
        return {};
    std::basic_string_view<other_char_t<T>> const source(text);
    unsigned int const page = kortools::core::get_code_page(encoding);
    if (kortools::core::ShortText<T> const converted(page, source); converted.is_converted()) {
        is_converted = true;
        return CXTString<T>(converted.get_data(), converted.get_length());
    }
    CXTString<T> result;
    is_converted = kortools::core::convert_long_text<T>(page, source, result, 0);
    return result;
}

template <class T>
bool convert_into(std::basic_string_view<other_char_t<T>> source, xStringEncoding encoding,
    CXTCharArray<T> &result)
{
    unsigned int const page = kortools::core::get_code_page(encoding);
    kortools::core::ShortText<T> const converted(page, source);
    if (!converted.is_converted())
        return kortools::core::convert_long_text<T>(page, source, result, 0);
    result.Assign(converted.get_data(), converted.get_length());
    return true;
}

// The sequence in the low bytes of `word`, of two or three bytes; size 0 for anything else.
constexpr platform::Utf8Sequence decode_word(std::uint32_t word)
{
    if ((word & 0xC0E0) == 0x80C0)
        return { (word & 0x1F) << 6 | (word >> 8 & 0x3F), 2 };
    if ((word & 0xC0C0F0) == 0x8080E0)
        return { (word & 0xF) << 12 | (word >> 2 & 0xFC0) | (word >> 16 & 0x3F), 3 };
    return { 0, 0 };
}

// Stores in a buffer of the caller's whose size is not known, so nothing but the result may be
// written to it.
class CallersBuffer {
public:
    using Element = unsigned short;

    explicit CallersBuffer(unsigned short *target)
        : m_begin(target)
        , m_at(target)
    {
    }
    std::size_t get_room() const { return SIZE_MAX; }
    bool has_room(std::size_t) const { return true; }
    void put(unsigned short unit) { *m_at++ = unit; }
    template <std::size_t count> void put_block(unsigned char const *source, std::size_t used)
    {
        if (used == count)
            platform::copy_block<count>(source, m_at);
        else
            std::copy_n(source, used, m_at);
        m_at += used;
    }
    std::size_t put_ascii_blocks(unsigned char const *source, std::size_t count)
    {
        std::size_t done = 0;
        while (count - done >= 16 && platform::copy_ascii_block(source + done, m_at + done))
            done += 16;
        m_at += done;
        return done;
    }
    std::size_t get_count() const { return static_cast<std::size_t>(m_at - m_begin); }

private:
    unsigned short *m_begin;
    unsigned short *m_at;
};

// Decodes up to the closing zero; false at a bad sequence.
template <class Sink> bool decode_utf8(unsigned char const *at, Sink &sink)
{
    unsigned char const *const end = at + std::strlen(reinterpret_cast<char const *>(at));
    while (true) {
        at = platform::decode_utf8_runs(at, end, sink, decode_word);
        if (at == end)
            return true;
        // Bytes behind the closing zero are not read: a sequence that is cut ends with the zero.
        std::uint32_t word = at[0];
        word |= static_cast<std::uint32_t>(at[1]) << 8;
        if (at[1] != 0)
            word |= static_cast<std::uint32_t>(at[2]) << 16;
        platform::Utf8Sequence const next
            = *at < 0x80 ? platform::Utf8Sequence { *at, 1 } : decode_word(word);
        if (next.size == 0)
            return false;
        sink.put(static_cast<unsigned short>(next.ch));
        at += next.size;
    }
}

} // namespace

XCA2W::XCA2W(char const *text, xStringEncoding encoding)
    : m_text(make_converted<wchar_t>(text, encoding, m_isConverted))
{
}

XCW2A::XCW2A(wchar_t const *text, xStringEncoding encoding)
    : m_text(make_converted<char>(text, encoding, m_isConverted))
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
    return convert_into<wchar_t>(text, encoding, result);
}

bool convert_text(std::wstring_view text, xStringEncoding encoding, CXTString<char> &result)
{
    return convert_into<char>(text, encoding, result);
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
    if (!target) {
        platform::CountingSink<unsigned short> sink;
        bool const is_valid = decode_utf8(source, sink);
        return is_valid ? static_cast<int>(std::strlen(reinterpret_cast<char const *>(source))) : 0;
    }
    CallersBuffer sink(target);
    if (!decode_utf8(source, sink))
        return 0;
    sink.put(0);
    return static_cast<int>(sink.get_count());
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
