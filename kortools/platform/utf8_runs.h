// SPDX-License-Identifier: MIT
// The fast loop of UTF-8 decoders. It runs while there are enough bytes left, and enough room, to
// work without checking each character: ASCII goes eight or sixteen characters at a time, longer
// sequences are taken out of a word of four bytes. What it does not like it leaves to its caller.
#pragma once

#include "kortools/platform/text_sink.h"
#include "kortools/platform/wide_text.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kortools::platform {

struct Utf8Sequence {
    char32_t ch;
    std::size_t size; // bytes; 0: not a sequence
};

// Puts a character as the sink's elements have it: above FFFF, two for elements of 16 bits.
template <class Sink> void put_character(Sink &sink, char32_t ch)
{
    using T = typename Sink::Element;
    if (sizeof(T) == 2 && ch > 0xFFFF) {
        sink.put(static_cast<T>(high_surrogate_of(ch)));
        ch = low_surrogate_of(ch);
    }
    sink.put(static_cast<T>(ch));
}

template <class Word> Word load_word(unsigned char const *at)
{
    Word word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

// `decode_word` gives the sequence in the low bytes of a 32-bit word that does not begin with
// ASCII. Returns where the loop stopped: near the end of either text, or in front of a sequence
// that decode_word did not accept.
template <class Sink, class DecodeWord>
unsigned char const *decode_utf8_runs(
    unsigned char const *at, unsigned char const *end, Sink &sink, DecodeWord decode_word)
{
    constexpr std::uint64_t high_bits = 0x8080808080808080U;
    while (end - at >= 8 && sink.has_room(8)) {
        auto const marks = load_word<std::uint64_t>(at) & high_bits;
        auto const ascii = static_cast<std::size_t>(std::countr_zero(marks)) / 8;
        sink.template put_block<8>(at, ascii);
        at += ascii;
        if (ascii == 8) {
            at += sink.put_ascii_blocks(at, static_cast<std::size_t>(end - at));
            continue;
        }
        // A sequence has at most four bytes and gives at most two elements.
        auto left = std::min(static_cast<std::size_t>(end - at) / 4, sink.get_room() / 2);
        do {
            if (left == 0)
                return at;
            Utf8Sequence const next = decode_word(load_word<std::uint32_t>(at));
            if (next.size == 0)
                return at;
            put_character(sink, next.ch);
            at += next.size;
        } while (--left != 0 && *at >= 0x80);
    }
    return at;
}

} // namespace kortools::platform
