// SPDX-License-Identifier: MIT
// Conversion of whole texts to the other character width, as the strings and the converters need
// it. Internal; callers of the library use CXTString, XCA2W and XCW2A.
//
// `page` is a code page number (0: ANSI). Text may contain zeros. A text that cannot be converted
// at all (the page does not exist) gives an empty one and false.
#pragma once

#include "kortools/core/char_array.h"
#include "kortools/core/text_source.h"
#include "kortools/platform/code_pages.h"

#include <algorithm>
#include <string_view>

namespace kortools::core {

inline long long convert_text(
    unsigned int page, std::string_view source, wchar_t *target, long long capacity)
{
    return platform::narrow_to_wide(
        page, source.data(), static_cast<long long>(source.size()), target, capacity);
}

inline long long convert_text(
    unsigned int page, std::wstring_view source, char *target, long long capacity)
{
    return platform::wide_to_narrow(
        page, source.data(), static_cast<long long>(source.size()), target, capacity);
}

// The length of the result; for malformed text it may be less. -1 when there is none.
inline long long estimate_converted_length(unsigned int page, std::string_view source)
{
    return platform::estimate_wide_length(
        page, source.data(), static_cast<long long>(source.size()));
}

inline long long estimate_converted_length(unsigned int page, std::wstring_view source)
{
    return convert_text(page, source, nullptr, 0);
}

// A text of up to max_source characters, converted on the stack in one pass.
template <class T> class ShortText {
public:
    static constexpr std::size_t max_source = 2048; // 8 KiB of stack

    ShortText(unsigned int page, std::basic_string_view<other_char_t<T>> source)
        : m_length(
            source.size() > max_source ? -1 : convert_text(page, source, m_characters, max_length))
    {
    }

    // False when the source is longer, its page does not exist, or the page has state and needed
    // more room: the long form then gives the result.
    bool is_converted() const { return m_length >= 0; }

    T const *get_data() const { return m_characters; }
    int get_length() const { return static_cast<int>(m_length); }

private:
    // Up to four bytes for a character, at most one wide character for a byte.
    static constexpr long long max_length = max_source * (sizeof(T) == 1 ? 4 : 1);

    T m_characters[max_length];
    long long m_length;
};

// As convert_long_text(), for ASCII text that needs a larger block: in one pass instead of two.
// False, and nothing is changed, for any other text.
inline bool convert_ascii(
    unsigned int page, std::wstring_view source, CXTCharArray<char> &target, long long start)
{
    long long const length = start + static_cast<long long>(source.size());
    if (length < target.GetCapacity())
        return false;
    CXTCharArray<char> result(length);
    char *const rest = std::copy_n(target.GetData(), start, result.GetData());
    if (platform::narrow_leading_ascii(page, source.data(), source.size(), rest) != source.size())
        return false;
    target.Swap(result);
    return true;
}

// Replaces what follows `start` in `target` with the converted text.
template <class T>
bool convert_long_text(unsigned int page, std::basic_string_view<other_char_t<T>> source,
    CXTCharArray<T> &target, long long start)
{
    if constexpr (sizeof(T) == 1) {
        if (convert_ascii(page, source, target, start))
            return true;
    }
    long long const estimate = estimate_converted_length(page, source);
    target.SetLength(start + std::max(0LL, estimate));
    if (estimate < 0)
        return false;
    if (convert_text(page, source, target.GetData() + start, estimate) == estimate)
        return true;
    long long const length = convert_text(page, source, static_cast<T *>(nullptr), 0);
    target.SetLength(start + std::max(0LL, length));
    if (convert_text(page, source, target.GetData() + start, length) == length)
        return true;
    target.SetLength(start);
    return false;
}

} // namespace kortools::core
