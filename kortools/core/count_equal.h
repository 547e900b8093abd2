// SPDX-License-Identifier: MIT
// Where do two texts begin to differ? memcmp() only tells that they do.
#pragma once

#include <bit>
#include <cstddef>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kortools::core {

// Number of leading characters that two texts of at least `length` characters have in common.
template <class T> inline std::size_t count_equal(T const *a, T const *b, std::size_t length)
{
    std::size_t i = 0;
    constexpr std::size_t large_block = 1024 / sizeof(T);
    while (length - i >= large_block && std::memcmp(a + i, b + i, 1024) == 0)
        i += large_block;
#ifdef __SSE2__
    constexpr std::size_t block = 16 / sizeof(T);
    auto const equal_bytes = [&](std::size_t at) {
        __m128i const x = _mm_loadu_si128(reinterpret_cast<__m128i const *>(a + at));
        __m128i const y = _mm_loadu_si128(reinterpret_cast<__m128i const *>(b + at));
        return _mm_cmpeq_epi8(x, y);
    };
    auto const mask_of
        = [](__m128i bytes) { return static_cast<unsigned>(_mm_movemask_epi8(bytes)); };
    for (; length - i >= 4 * block; i += 4 * block) {
        __m128i const first = _mm_and_si128(equal_bytes(i), equal_bytes(i + block));
        __m128i const second
            = _mm_and_si128(equal_bytes(i + 2 * block), equal_bytes(i + 3 * block));
        if (mask_of(_mm_and_si128(first, second)) != 0xFFFF)
            break;
    }
    for (; length - i >= block; i += block) {
        if (unsigned const equal = mask_of(equal_bytes(i)); equal != 0xFFFF)
            return i + static_cast<std::size_t>(std::countr_one(equal)) / sizeof(T);
    }
#endif
    while (i < length && a[i] == b[i])
        ++i;
    return i;
}

} // namespace kortools::core
