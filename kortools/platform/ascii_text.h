// SPDX-License-Identifier: MIT
// Runs of ASCII characters: found, widened and narrowed many at a time, in loops of a fixed length
// that compilers turn into vector instructions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace kortools::platform {

// True when all `Count` characters are below 0x80. The caller owns at least that many.
template <std::size_t Count, class T> inline bool is_ascii_block(T const *text)
{
    if constexpr (sizeof(T) == 1) {
        static_assert(Count % 8 == 0);
        std::uint64_t all = 0;
        for (std::size_t i = 0; i < Count; i += 8) {
            std::uint64_t word;
            std::memcpy(&word, text + i, 8);
            all |= word;
        }
        return (all & 0x8080808080808080U) == 0;
    } else {
        std::make_unsigned_t<T> all = 0;
        for (std::size_t i = 0; i < Count; ++i)
            all |= static_cast<std::make_unsigned_t<T>>(text[i]);
        return (all & ~static_cast<std::make_unsigned_t<T>>(0x7F)) == 0;
    }
}

// Number of leading ASCII characters of `text`.
template <class T> inline std::size_t count_ascii(T const *text, std::size_t length)
{
    using Unsigned = std::make_unsigned_t<T>;
    std::size_t i = 0;
    while (length - i >= 16 && is_ascii_block<16>(text + i))
        i += 16;
    while (i < length && static_cast<Unsigned>(text[i]) < 0x80)
        ++i;
    return i;
}

// Copies the leading ASCII characters of `source` to `target`, which has room for `length`, and
// returns how many there were.
template <class T, class U>
inline std::size_t copy_ascii(U const *source, std::size_t length, T *target)
{
    using Unsigned = std::make_unsigned_t<U>;
    std::size_t i = 0;
    while (length - i >= 16 && is_ascii_block<16>(source + i)) {
        T block[16]; // compilers cannot rule out that the target overlaps the source
        for (std::size_t k = 0; k < 16; ++k)
            block[k] = static_cast<T>(source[i + k]);
        std::memcpy(target + i, block, sizeof block);
        i += 16;
    }
    while (i < length && static_cast<Unsigned>(source[i]) < 0x80) {
        target[i] = static_cast<T>(source[i]);
        ++i;
    }
    return i;
}

} // namespace kortools::platform
