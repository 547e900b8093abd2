// SPDX-License-Identifier: MIT
// Runs of ASCII characters: found, widened and narrowed many at a time, in loops of a fixed length
// over local blocks, which compilers turn into vector instructions.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

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

// Copies the leading ASCII characters of `source` to `target`, which has room for `length`, and
// returns how many there were. With a null `target` only counts.
template <class T, class U>
inline std::size_t copy_ascii(T const *source, std::size_t length, U *target)
{
    constexpr std::size_t block = 16;
    std::size_t i = 0;
    for (; length - i >= block && is_ascii_block<block>(source + i); i += block) {
        if (target)
            copy_block<block>(source + i, target + i);
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
