// SPDX-License-Identifier: MIT
// Case and ordinal comparison are the C library's own mapping of one character at a time: in the C
// locale both systems case only the ASCII letters.
#include "kortools/platform/text_compare.h"

#include <cctype>
#include <cstdint>
#include <cwctype>
#include <utility>

namespace kortools::platform {
namespace {

wchar_t keep(wchar_t ch)
{
    return ch;
}

// The UTF-16 units of a wide text, each character mapped by `map` before.
template <wchar_t (*map)(wchar_t)> class UnitReader {
public:
    explicit UnitReader(wchar_t const *text)
        : m_text(text)
    {
    }

    // 0 at the end, which may be asked for once.
    int next()
    {
        if (m_second_half)
            return std::exchange(m_second_half, 0);
        auto const ch = static_cast<std::uint_least32_t>(map(*m_text++));
        if (ch <= 0xFFFF)
            return static_cast<int>(ch);
        m_second_half = static_cast<int>(0xDC00 + (ch & 0x3FF));
        return static_cast<int>(0xD800 + ((ch - 0x10000) >> 10));
    }

private:
    wchar_t const *m_text;
    int m_second_half = 0;
};

template <wchar_t (*map)(wchar_t)> int compare_units(wchar_t const *a, wchar_t const *b)
{
    UnitReader<map> units_a(a);
    UnitReader<map> units_b(b);
    for (;;) {
        int const a_unit = units_a.next();
        int const b_unit = units_b.next();
        if (a_unit != b_unit || a_unit == 0)
            return a_unit - b_unit;
    }
}

} // namespace

char to_lower(char ch)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
}

wchar_t to_lower_by_locale(wchar_t ch)
{
    return static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(ch)));
}

char to_upper(char ch)
{
    return static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
}

wchar_t to_upper_by_locale(wchar_t ch)
{
    return static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(ch)));
}

int compare_no_case(char const *a, char const *b)
{
    for (;; ++a, ++b) {
        if (*a != *b) {
            int const difference = std::tolower(static_cast<unsigned char>(*a))
                - std::tolower(static_cast<unsigned char>(*b));
            if (difference != 0)
                return difference;
        }
        if (!*a)
            return 0;
    }
}

int compare_no_case(wchar_t const *a, wchar_t const *b)
{
    // Units matter only from the first difference on; up to there the characters are the same.
    for (; *a == *b || to_lower(*a) == to_lower(*b); ++a, ++b) {
        if (!*a)
            return 0;
    }
    return compare_units<to_lower>(a, b);
}

int compare_ordinal(wchar_t const *a, wchar_t const *b)
{
    for (; *a == *b; ++a, ++b) {
        if (!*a)
            return 0;
    }
    return compare_units<keep>(a, b);
}

} // namespace kortools::platform
