// SPDX-License-Identifier: MIT
#include "kortools/core/hash_methods.h"

#include "kortools/platform/wide_text.h"

namespace {

constexpr unsigned fnv_basis = 0x811C9DC5U;
constexpr unsigned fnv_prime = 16777619;

// Each step needs the result of the one before, four cycles on current processors, which leaves
// room to look for long characters on the way instead of beforehand.
template <typename UNIT, typename T>
unsigned hash_backwards(T const *text, std::size_t length, unsigned &all_bits)
{
    unsigned hash = fnv_basis;
    unsigned bits = 0;
#pragma GCC unroll 8
    for (T const *at = text + length; at != text;) {
        unsigned const unit = static_cast<UNIT>(*--at);
        bits |= unit;
        hash = (hash ^ unit) * fnv_prime;
    }
    all_bits = bits;
    return hash;
}

unsigned hash_with_pairs(wchar_t const *text, std::size_t length)
{
    using namespace kortools::platform;
    unsigned hash = fnv_basis;
    auto const mix = [&](char16_t unit) { hash = (hash ^ unit) * fnv_prime; };
    for (std::size_t i = length; i-- > 0;) {
        auto const ch = static_cast<char32_t>(text[i]);
        if (ch <= 0xFFFF) {
            mix(static_cast<char16_t>(ch));
        } else if (ch <= last_character) {
            mix(low_surrogate_of(ch));
            mix(high_surrogate_of(ch));
        } else {
            mix(static_cast<char16_t>(replacement_character));
        }
    }
    return hash;
}

} // namespace

unsigned int HashUTF16(wchar_t const *text, std::size_t length)
{
    unsigned all_bits;
    unsigned const hash = hash_backwards<char32_t>(text, length, all_bits);
    return all_bits <= 0xFFFF ? hash : hash_with_pairs(text, length);
}

unsigned int HashUTF16(char16_t const *text, std::size_t length)
{
    unsigned all_bits;
    return hash_backwards<char16_t>(text, length, all_bits);
}

unsigned int HashUTF16(char const *text, std::size_t length)
{
    unsigned all_bits;
    return hash_backwards<unsigned char>(text, length, all_bits);
}
