// SPDX-License-Identifier: MIT
// CHashMethods<K>: how hash tables hash and compare keys of type K.
//
// There are methods for integers, enumerations, pointers and strings. Slot positions follow from
// the hash, so they are part of the interface: the same on every system and in every build, except
// for pointers.
//
//   integers up to 32 bits => key << 4, in 32 bits
//   longer integers        => the same while the value fits 32 bits (so that a `long` hashes alike
//                             where it has 32 bits and where it has 64), else its upper 36 bits are
//                             multiplied in
//   pointers               => the address times an odd constant, upper half: alignment is no matter
//   strings                => HashUTF16()
//
// For another type write a specialization with these two functions; equal keys need equal home
// slots:
//
//   template <> struct CHashMethods<Edge> {
//       static unsigned int GetHash(Edge const &key, unsigned int tableSize)
//       {
//           return (key.from * 31 + key.to) % tableSize;
//       }
//       static bool IsEqual(Edge const &a, Edge const &b) { return a == b; }
//   };
//
// One that also has `static unsigned int GetFullHash(K const &)`, the hash before the modulus, is
// faster: the tables then take the remainder without a division and compare seven bits of the hash
// before the key.
#pragma once

#include "kortools/export.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace kortools::core {

// An odd constant without a pattern (2^64 over the golden ratio): the upper bits of a product with
// it depend on every bit of the other factor.
constexpr std::uint64_t hash_multiplier = 0x9E3779B97F4A7C15U;

inline unsigned upper_half(std::uint64_t value)
{
    return static_cast<unsigned>(value >> 32);
}

template <typename T> unsigned hash_of_integer(T key)
{
    if constexpr (sizeof(T) <= 4) {
        return static_cast<unsigned>(key) << 4;
    } else {
        using Half = std::conditional_t<std::is_signed_v<T>, std::int32_t, std::uint32_t>;
        unsigned const lower = static_cast<unsigned>(key) << 4;
        std::uint64_t const rest = static_cast<std::uint64_t>(key) >> 28;
        return static_cast<T>(static_cast<Half>(key)) == key
            ? lower
            : lower ^ upper_half(rest * hash_multiplier);
    }
}

template <typename K>
concept PlainKey = std::is_integral_v<K> || std::is_enum_v<K> || std::is_pointer_v<K>;

} // namespace kortools::core

template <typename K> struct CHashMethods {
    static_assert(kortools::core::PlainKey<K>, "this key type needs a CHashMethods of its own");

    static unsigned int GetFullHash(K const &key)
    {
        if constexpr (std::is_enum_v<K>)
            return kortools::core::hash_of_integer(static_cast<std::underlying_type_t<K>>(key));
        else if constexpr (std::is_pointer_v<K>)
            return kortools::core::upper_half(
                reinterpret_cast<std::uintptr_t>(key) * kortools::core::hash_multiplier);
        else
            return kortools::core::hash_of_integer(key);
    }
    static unsigned int GetHash(K const &key, unsigned int tableSize)
    {
        return GetFullHash(key) % tableSize;
    }
    static bool IsEqual(K const &a, K const &b) { return a == b; }
};
