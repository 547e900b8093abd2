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
// They must not throw. More functions make the tables faster:
//
// - `static unsigned int GetFullHash(K const &)`, the hash before the modulus: they then take the
//   remainder without a division and compare seven bits of the hash before the key.
// - Beside it `static unsigned int GetSearchHash(K const &)`, another hash, for keys whose full
// hash
//   is slow: they then keep an index by it and compute the full hash of added keys only. It costs
//   about 14 bytes per slot.
#pragma once

#include "kortools/core/hash_index.h"
#include "kortools/export.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

template <class T> class CXTString;

// The hash of a text before the modulus: 32-bit FNV-1a over its 16-bit units (bytes of narrow
// text), from the last one to the first, each mixed in whole. A wide character beyond 16 bits
// counts as its two surrogates, so that a text has the same hash on every system. Null is allowed
// when `length` is 0; the empty text gives 0x811C9DC5.
KORTOOLS_API unsigned int HashUTF16(wchar_t const *text, std::size_t length);
KORTOOLS_API unsigned int HashUTF16(char16_t const *text, std::size_t length);
KORTOOLS_API unsigned int HashUTF16(char const *text, std::size_t length);

// Of a whole text.
template <typename T> unsigned int HashUTF16(T const *text) // up to the first zero; null is empty
{
    return text ? HashUTF16(text, std::char_traits<T>::length(text)) : HashUTF16(text, 0);
}
template <typename T> unsigned int HashUTF16(CXTString<T> const &text)
{
    std::basic_string_view<T> const view = text;
    return HashUTF16(view.data(), view.size());
}

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

// Of texts, by their UTF-16 units.
template <typename T> struct CHashMethods<CXTString<T>> {
    static unsigned int GetFullHash(CXTString<T> const &key) { return HashUTF16(key); }
    static unsigned int GetSearchHash(CXTString<T> const &key)
    {
        std::basic_string_view<T> const view = key;
        return kortools::core::hash_bytes(view.data(), view.size() * sizeof(T));
    }
    static unsigned int GetHash(CXTString<T> const &key, unsigned int tableSize)
    {
        return GetFullHash(key) % tableSize;
    }
    static bool IsEqual(CXTString<T> const &a, CXTString<T> const &b)
    {
        using View = std::basic_string_view<T>;
        return static_cast<View>(a) == static_cast<View>(b);
    }
};
