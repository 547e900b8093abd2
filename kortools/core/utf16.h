// SPDX-License-Identifier: MIT
// Wide text as UTF-16 units, the form in which it is persisted, hashed and ordered on both systems.
//
//   std::size_t const count = count_utf16_units(text, length);
//   copy_to_utf16(text, length, buffer); // 2 * count bytes
//   for_each_utf16_unit(text, length, [&](char16_t unit) { hash = hash * 33 + unit; });
#pragma once

#include "kortools/core/count_equal.h"
#include "kortools/platform/wide_text.h"

#include <cstddef>

namespace kortools::core {

using platform::copy_from_utf16;
using platform::copy_to_utf16;
using platform::count_utf16_units;
using platform::count_wide_characters;
using platform::for_each_utf16_unit;

// Walks the units of a text; text[length] is not read.
class Utf16Cursor {
public:
    constexpr Utf16Cursor(wchar_t const *text, std::size_t length)
        : m_at(text)
        , m_end(text + length)
    {
    }

    constexpr bool is_at_end() const { return m_low == 0 && m_at == m_end; }

    // The next unit; not to be called at the end.
    constexpr char16_t next()
    {
        if (char16_t const low = m_low) {
            m_low = 0;
            return low;
        }
        auto const ch = static_cast<char32_t>(*m_at++);
        if (platform::wide_is_utf16 || ch <= 0xFFFF)
            return static_cast<char16_t>(ch);
        if (ch > platform::last_character)
            return static_cast<char16_t>(platform::replacement_character);
        m_low = platform::low_surrogate_of(ch);
        return platform::high_surrogate_of(ch);
    }

private:
    wchar_t const *m_at;
    wchar_t const *m_end;
    char16_t m_low = 0; // the second half of the character before m_at, when it is still to come
};

// The order of two texts by their units, a text before its own continuations: negative, 0 or
// positive. On Linux this is not the order of wide characters: FFFF comes after 10000.
inline int compare_utf16(
    wchar_t const *a, std::size_t a_length, wchar_t const *b, std::size_t b_length)
{
    std::size_t const same = count_equal(a, b, a_length < b_length ? a_length : b_length);
    Utf16Cursor a_rest(a + same, a_length - same);
    Utf16Cursor b_rest(b + same, b_length - same);
    while (!a_rest.is_at_end() && !b_rest.is_at_end()) {
        int const a_unit = a_rest.next();
        int const b_unit = b_rest.next();
        if (a_unit != b_unit)
            return a_unit - b_unit;
    }
    return a_rest.is_at_end() ? b_rest.is_at_end() - 1 : 1;
}

} // namespace kortools::core
