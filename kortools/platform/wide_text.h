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
    constexpr std::size_t block = 16;
    std::size_t done = 0;
    auto const put = [&](char16_t unit) {
        std::memcpy(at, &unit, 2);
        at += 2;
    };
    while (done < length) {
        std::size_t const count = length - done < block ? length - done : block;
        std::uint32_t all = 0;
        for (std::size_t i = 0; i < count; ++i)
            all |= static_cast<std::uint32_t>(text[done + i]);
        if (count == block && all <= 0xFFFF) {
            char16_t units[block];
            for (std::size_t i = 0; i < block; ++i)
                units[i] = static_cast<char16_t>(text[done + i]);
            std::memcpy(at, units, sizeof units);
            at += sizeof units;
        } else {
            for_each_utf16_unit(text + done, count, put);
        }
        done += count;
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

// Writes the wide characters of the units to `target`, which has room for count_wide_characters(),
// and returns how many. Surrogates without a partner are kept.
inline std::size_t copy_from_utf16(void const *units, std::size_t count, wchar_t *target)
{
    if constexpr (wide_is_utf16) {
        if (count != 0)
            std::memcpy(target, units, count * 2);
        return count;
    }
    constexpr std::size_t block = 16;
    wchar_t *at = target;
    for (std::size_t i = 0; i < count;) {
        if (count - i >= block) {
            char16_t text[block];
            std::memcpy(text, static_cast<unsigned char const *>(units) + i * 2, sizeof text);
            unsigned surrogates = 0;
            for (char16_t const unit : text)
                surrogates |= (unit & 0xF800) == 0xD800;
            if (surrogates == 0) {
                for (char16_t const unit : text)
                    *at++ = static_cast<wchar_t>(unit);
                i += block;
                continue;
            }
        }
        std::size_t const stop = count - i < block ? count : i + block;
        while (i < stop) {
            char32_t ch = load_utf16_unit(units, i++);
            if (is_high_surrogate(ch) && i < count && is_low_surrogate(load_utf16_unit(units, i)))
                ch = join_surrogates(ch, load_utf16_unit(units, i++));
            *at++ = static_cast<wchar_t>(ch);
        }
    }
    return static_cast<std::size_t>(at - target);
}

} // namespace kortools::platform
