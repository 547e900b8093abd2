// SPDX-License-Identifier: MIT
// The platform's wide text against UTF-16: on Windows they are the same; on Linux a wide character
// is a code point, or a surrogate that stands alone.
//
// Units are stored in memory order, which is little-endian on every system served. Blocks of units
// need not be aligned.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kortools::platform {

static_assert(std::endian::native == std::endian::little, "persisted units are little-endian");

inline constexpr bool wide_is_utf16 = sizeof(wchar_t) == 2;
inline constexpr char32_t replacement_character = 0xFFFD;
inline constexpr char32_t last_character = 0x10FFFF;

constexpr bool is_surrogate(char32_t ch)
{
    return (ch & 0xFFFFF800U) == 0xD800;
}
constexpr bool is_high_surrogate(char32_t ch)
{
    return (ch & 0xFFFFFC00U) == 0xD800;
}
constexpr bool is_low_surrogate(char32_t ch)
{
    return (ch & 0xFFFFFC00U) == 0xDC00;
}
constexpr char32_t join_surrogates(char32_t high, char32_t low)
{
    return 0x10000 + ((high & 0x3FF) << 10) + (low & 0x3FF);
}
constexpr char16_t high_surrogate_of(char32_t ch) // ch is above FFFF
{
    return static_cast<char16_t>(0xD7C0 + (ch >> 10));
}
constexpr char16_t low_surrogate_of(char32_t ch)
{
    return static_cast<char16_t>(0xDC00 + (ch & 0x3FF));
}

// Calls visit(char16_t) for each unit of the text. A value above 10FFFF counts as U+FFFD.
template <class Visit>
constexpr void for_each_utf16_unit(wchar_t const *text, std::size_t length, Visit visit)
{
    for (std::size_t i = 0; i < length; ++i) {
        auto const ch = static_cast<char32_t>(text[i]);
        if (wide_is_utf16 || ch <= 0xFFFF) {
            visit(static_cast<char16_t>(ch));
        } else if (ch <= last_character) {
            visit(high_surrogate_of(ch));
            visit(low_surrogate_of(ch));
        } else {
            visit(static_cast<char16_t>(replacement_character));
        }
    }
}

// Number of UTF-16 units of the text.
inline std::size_t count_utf16_units(wchar_t const *text, std::size_t length)
{
    if constexpr (wide_is_utf16)
        return length;
    std::size_t pairs = 0;
    for (std::size_t i = 0; i < length; ++i)
        pairs += static_cast<char32_t>(text[i]) - 0x10000U <= last_character - 0x10000U;
    return length + pairs;
}

// Copies the leading characters of 32 bits that make one unit each, and returns how many. The last
// vector may overlap the one before it.
inline std::size_t copy_single_units(wchar_t const *text, std::size_t length, unsigned char *target)
{
    std::size_t i = 0;
#ifdef __SSE2__
    auto const load = [&](std::size_t at) {
        return _mm_loadu_si128(reinterpret_cast<__m128i const *>(text + at));
    };
    auto const store = [&](std::size_t at, __m128i a, __m128i b) {
        __m128i const upper = _mm_srli_epi32(_mm_or_si128(a, b), 16);
        if (_mm_movemask_epi8(_mm_cmpeq_epi32(upper, _mm_setzero_si128())) != 0xFFFF)
            return false;
        auto const extend = [](__m128i x) { return _mm_srai_epi32(_mm_slli_epi32(x, 16), 16); };
        _mm_storeu_si128(
            reinterpret_cast<__m128i *>(target + 2 * at), _mm_packs_epi32(extend(a), extend(b)));
        return true;
    };
    for (; length - i >= 8; i += 8) {
        if (!store(i, load(i), load(i + 4)))
            return i;
    }
    if (i != 0 && i != length)
        return store(length - 8, load(length - 8), load(length - 4)) ? length : i;
#endif
    for (; i != length && static_cast<char32_t>(text[i]) >> 16 == 0; ++i) {
        auto const unit = static_cast<char16_t>(text[i]);
        std::memcpy(target + 2 * i, &unit, 2);
    }
    return i;
}

// Writes the units of the text to `target`, which has room for count_utf16_units() of them (two
// bytes each), and returns how many.
inline std::size_t copy_to_utf16(wchar_t const *text, std::size_t length, void *target)
{
    auto *at = static_cast<unsigned char *>(target);
    if constexpr (wide_is_utf16) {
        if (length != 0)
            std::memcpy(at, text, length * 2);
        return length;
    }
    auto const put = [&](char16_t unit) {
        std::memcpy(at, &unit, 2);
        at += 2;
    };
    for (std::size_t done = 0; done < length;) {
        std::size_t const single = copy_single_units(text + done, length - done, at);
        at += 2 * single;
        done += single;
        std::size_t const others = length - done < 8 ? length - done : 8;
        for_each_utf16_unit(text + done, others, put);
        done += others;
    }
    return static_cast<std::size_t>(at - static_cast<unsigned char *>(target)) / 2;
}

inline char16_t load_utf16_unit(void const *units, std::size_t index)
{
    char16_t unit;
    std::memcpy(&unit, static_cast<unsigned char const *>(units) + index * 2, 2);
    return unit;
}

// Number of wide characters that the units make.
inline std::size_t count_wide_characters(void const *units, std::size_t count)
{
    if constexpr (wide_is_utf16)
        return count;
    std::size_t pairs = 0;
    for (std::size_t i = 1; i < count; ++i) {
        // A low surrogate that has a partner cannot be the partner of what follows it.
        pairs += is_low_surrogate(load_utf16_unit(units, i))
            && is_high_surrogate(load_utf16_unit(units, i - 1));
    }
    return count - pairs;
}

// The same for units: copies those before the first surrogate.
inline std::size_t copy_single_characters(
    unsigned char const *units, std::size_t count, wchar_t *target)
{
    std::size_t i = 0;
#ifdef __SSE2__
    auto const copy = [&](std::size_t at) {
        __m128i const x = _mm_loadu_si128(reinterpret_cast<__m128i const *>(units + 2 * at));
        __m128i const kind = _mm_and_si128(x, _mm_set1_epi16(static_cast<short>(0xF800)));
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(kind, _mm_set1_epi16(static_cast<short>(0xD800))))
            != 0)
            return false;
        auto *const out = reinterpret_cast<__m128i *>(target + at);
        _mm_storeu_si128(out, _mm_unpacklo_epi16(x, _mm_setzero_si128()));
        _mm_storeu_si128(out + 1, _mm_unpackhi_epi16(x, _mm_setzero_si128()));
        return true;
    };
    for (; count - i >= 8; i += 8) {
        if (!copy(i))
            return i;
    }
    if (i != 0 && i != count)
        return copy(count - 8) ? count : i;
#endif
    for (; i != count; ++i) {
        char16_t const unit = load_utf16_unit(units, i);
        if (is_surrogate(unit))
            break;
        target[i] = static_cast<wchar_t>(unit);
    }
    return i;
}

// Writes the wide characters of the units to `target`, which has room for count_wide_characters(),
// and returns how many. Surrogates without a partner are kept.
inline std::size_t copy_from_utf16(void const *units, std::size_t count, wchar_t *target)
{
    if constexpr (wide_is_utf16) {
        if (count != 0)
            std::memcpy(target, units, count * 2);
        return count;
    }
    auto const *const bytes = static_cast<unsigned char const *>(units);
    wchar_t *at = target;
    for (std::size_t i = 0; i < count;) {
        std::size_t const single = copy_single_characters(bytes + 2 * i, count - i, at);
        at += single;
        i += single;
        for (std::size_t const stop = count - i < 8 ? count : i + 8; i < stop;) {
            char32_t ch = load_utf16_unit(units, i++);
            if (is_high_surrogate(ch) && i < count && is_low_surrogate(load_utf16_unit(units, i)))
                ch = join_surrogates(ch, load_utf16_unit(units, i++));
            *at++ = static_cast<wchar_t>(ch);
        }
    }
    return static_cast<std::size_t>(at - target);
}

} // namespace kortools::platform
