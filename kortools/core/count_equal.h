// SPDX-License-Identifier: MIT
// Where do two texts begin to differ? memcmp() only tells that they do.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kortools::core {

// Number of leading characters that two texts of at least `length` characters have in common.
template <class T> inline std::size_t count_equal(T const *a, T const *b, std::size_t length)
{
    std::size_t i = 0;
    constexpr std::size_t large = 1024 / sizeof(T); // worth the calls that find it different
    if (length >= large) {
        for (std::size_t const size : { 1024U, 256U }) {
            std::size_t const count = size / sizeof(T);
            while (length - i >= count && std::memcmp(a + i, b + i, size) == 0)
                i += count;
        }
    }
#ifdef __SSE2__
    constexpr std::size_t block = 16 / sizeof(T);
    auto const equal_bytes = [&](std::size_t at) {
        __m128i const x = _mm_loadu_si128(reinterpret_cast<__m128i const *>(a + at));
        __m128i const y = _mm_loadu_si128(reinterpret_cast<__m128i const *>(b + at));
        return _mm_cmpeq_epi8(x, y);
    };
    auto const mask_of = [](__m128i bytes) {
        return static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(bytes)));
    };
    auto const characters_in = [](std::uint64_t equal) {
        return static_cast<std::size_t>(std::countr_one(equal)) / sizeof(T);
    };
    for (; length - i >= 4 * block; i += 4 * block) {
        __m128i const x0 = equal_bytes(i);
        __m128i const x1 = equal_bytes(i + block);
        __m128i const x2 = equal_bytes(i + 2 * block);
        __m128i const x3 = equal_bytes(i + 3 * block);
        if (mask_of(_mm_and_si128(_mm_and_si128(x0, x1), _mm_and_si128(x2, x3))) != 0xFFFF)
            return i
                + characters_in(
                    mask_of(x0) | mask_of(x1) << 16 | mask_of(x2) << 32 | mask_of(x3) << 48);
    }
    for (; length - i >= block; i += block) {
        if (std::uint64_t const equal = mask_of(equal_bytes(i)); equal != 0xFFFF)
            return i + characters_in(equal);
    }
#endif
    while (i < length && a[i] == b[i])
        ++i;
    return i;
}

} // namespace kortools::core
