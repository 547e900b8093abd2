// SPDX-License-Identifier: MIT
// Runs of ASCII characters: found, widened and narrowed many at a time, in loops of a fixed length
// over local blocks, which compilers turn into vector instructions.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kortools::platform {

// Converts `count` characters to another width; narrowing cuts.
template <std::size_t count, class T, class U> inline void copy_block(T const *source, U *target)
{
    T from[count]; // a copy, since for all the compiler knows the two texts overlap
    std::memcpy(from, source, sizeof from);
    for (std::size_t i = 0; i < count; ++i)
        target[i] = static_cast<U>(from[i]);
}

// True when all `count` characters are below 0x80. The caller owns at least that many.
template <std::size_t count, class T> inline bool is_ascii_block(T const *text)
{
    static_assert(count * sizeof(T) % 8 == 0);
    constexpr std::uint64_t not_ascii = sizeof(T) == 1 ? 0x8080808080808080U
        : sizeof(T) == 2                               ? 0xFF80FF80FF80FF80U
                                                       : 0xFFFFFF80FFFFFF80U;
    auto const *const bytes = reinterpret_cast<unsigned char const *>(text);
    std::uint64_t all = 0;
    for (std::size_t i = 0; i < count * sizeof(T); i += 8) {
        std::uint64_t word;
        std::memcpy(&word, bytes + i, 8);
        all |= word;
    }
    return (all & not_ascii) == 0;
}

// Copies 16 characters if all are below 0x80, else nothing.
template <class T, class U> inline bool copy_ascii_block(T const *source, U *target)
{
#ifdef __SSE2__
    if constexpr (sizeof(T) == 4 && sizeof(U) == 1) {
        auto const load = [&](int at) {
            return _mm_loadu_si128(reinterpret_cast<__m128i const *>(source + at));
        };
        __m128i const x0 = load(0);
        __m128i const x1 = load(4);
        __m128i const x2 = load(8);
        __m128i const x3 = load(12);
        __m128i const high = _mm_and_si128(_mm_or_si128(_mm_or_si128(x0, x1), _mm_or_si128(x2, x3)),
            _mm_set1_epi32(static_cast<int>(0xFFFFFF80)));
        if (_mm_movemask_epi8(_mm_cmpeq_epi32(high, _mm_setzero_si128())) != 0xFFFF)
            return false;
        _mm_storeu_si128(reinterpret_cast<__m128i *>(target),
            _mm_packus_epi16(_mm_packs_epi32(x0, x1), _mm_packs_epi32(x2, x3)));
        return true;
    }
    if constexpr (sizeof(T) == 1) {
        __m128i const x = _mm_loadu_si128(reinterpret_cast<__m128i const *>(source));
        if (_mm_movemask_epi8(x) != 0)
            return false;
        copy_block<16>(source, target);
        return true;
    }
#endif
    if (!is_ascii_block<16>(source))
        return false;
    copy_block<16>(source, target);
    return true;
}

// Copies the leading ASCII characters of `source` to `target`, which has room for `length`, and
// returns how many there were. With a null `target` only counts.
template <class T, class U>
inline std::size_t copy_ascii(T const *source, std::size_t length, U *target)
{
    constexpr std::size_t block = 16;
    std::size_t i = 0;
    for (; length - i >= block; i += block) {
        bool const is_ascii
            = target ? copy_ascii_block(source + i, target + i) : is_ascii_block<block>(source + i);
        if (!is_ascii)
            break;
    }
    std::size_t const stop = std::min(length, i + block);
    for (; i < stop && static_cast<std::make_unsigned_t<T>>(source[i]) < 0x80; ++i) {
        if (target)
            target[i] = static_cast<U>(source[i]);
    }
    return i;
}

template <class T> inline std::size_t count_ascii(T const *text, std::size_t length)
{
    constexpr std::size_t block = 64;
    std::size_t i = 0;
    while (length - i >= block && is_ascii_block<block>(text + i))
        i += block;
    return i + copy_ascii(text + i, length - i, static_cast<char *>(nullptr));
}

} // namespace kortools::platform
