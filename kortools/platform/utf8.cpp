// SPDX-License-Identifier: MIT
// Both directions have a fast loop, for well-formed text, and a careful one that does the rest.
#include "kortools/platform/utf8.h"

#include "kortools/platform/ascii_text.h"
#include "kortools/platform/utf8_character.h"
#include "kortools/platform/utf8_runs.h"

#include <algorithm>

namespace kortools::platform {
namespace {

// The sequence that starts at `at`, whose first byte is not ASCII. The second byte alone decides
// whether a sequence is overlong, a surrogate or above 10FFFF: such a sequence ends before it.
Utf8Sequence decode_sequence(unsigned char const *at, unsigned char const *end)
{
    unsigned const lead = at[0];
    if (lead < 0xC2 || lead > 0xF4)
        return { replacement_character, 1 };
    std::size_t const length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    unsigned const lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned const highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    auto const left = static_cast<std::size_t>(end - at);
    if (left < 2 || at[1] < lowest || at[1] > highest)
        return { replacement_character, 1 };
    char32_t ch = (lead & (0x7FU >> length)) << 6 | (at[1] & 0x3FU);
    for (std::size_t i = 2; i < length; ++i) {
        if (i >= left || (at[i] & 0xC0) != 0x80)
            return { replacement_character, i };
        ch = ch << 6 | (at[i] & 0x3FU);
    }
    return { ch, length };
}

// The well-formed sequence in the low bytes of `word`; size 0 when there is none.
inline Utf8Sequence decode_word(std::uint32_t word)
{
    if ((word & 0xC0E0) == 0x80C0 && (word & 0x1E) != 0)
        return { (word & 0x1F) << 6 | (word >> 8 & 0x3F), 2 };
    if ((word & 0xC0C0F0) == 0x8080E0) {
        char32_t const ch = (word & 0xF) << 12 | (word >> 2 & 0xFC0) | (word >> 16 & 0x3F);
        return { ch, ch >= 0x800 && !is_surrogate(ch) ? 3U : 0U };
    }
    if ((word & 0xC0C0C0F8) == 0x808080F0) {
        char32_t const ch
            = (word & 7) << 18 | (word << 4 & 0x3F000) | (word >> 10 & 0xFC0) | (word >> 24 & 0x3F);
        return { ch, ch > 0xFFFF && ch <= last_character ? 4U : 0U };
    }
    return { 0, 0 };
}

// False when there is no room.
template <class Sink> bool decode(char const *source, std::size_t size, Sink &sink)
{
    auto const *at = reinterpret_cast<unsigned char const *>(source);
    auto const *const end = at + size;
    while (true) {
        at = decode_utf8_runs(at, end, sink, decode_word);
        if (at == end)
            return true;
        Utf8Sequence const next = *at < 0x80 ? Utf8Sequence { *at, 1 } : decode_sequence(at, end);
        if (!sink.has_room(wide_is_utf16 && next.ch > 0xFFFF ? 2 : 1))
            return false;
        put_character(sink, next.ch);
        at += next.size;
    }
}

// The character at `at`, which it moves behind it: pairs are joined, what has no UTF-8 is replaced.
inline char32_t take_character(wchar_t const *&at, wchar_t const *end)
{
    auto const ch = static_cast<char32_t>(*at++);
    if (ch < 0xD800)
        return ch;
    if (is_high_surrogate(ch) && at != end && is_low_surrogate(static_cast<char32_t>(*at)))
        return join_surrogates(ch, static_cast<char32_t>(*at++));
    return is_surrogate(ch) || ch > last_character ? replacement_character : ch;
}

// Number of low surrogates in [start, stop) that follow a high one.
std::uint32_t count_pairs(wchar_t const *source, std::size_t start, std::size_t stop)
{
    std::uint32_t pairs = 0;
    for (std::size_t i = start; i < stop; ++i) {
        pairs += is_high_surrogate(static_cast<char32_t>(source[i - 1]))
            && is_low_surrogate(static_cast<char32_t>(source[i]));
    }
    return pairs;
}

std::size_t measure_encoded(wchar_t const *source, std::size_t length)
{
    constexpr std::size_t chunk = std::size_t { 1 } << 20; // so that the sums fit 32 bits
    std::size_t const ascii = count_ascii(source, length);
    std::size_t size = ascii;
    for (std::size_t start = ascii; start < length; start += chunk) {
        std::size_t const stop = std::min(length, start + chunk);
        std::uint32_t bytes = 0;
        std::uint32_t surrogates = 0;
        for (std::size_t i = start; i < stop; ++i) {
            auto const ch = static_cast<std::uint32_t>(source[i]);
            bytes += 1U + (ch >= 0x80) + (ch >= 0x800)
                + (!wide_is_utf16 && ch - 0x10000 <= last_character - 0x10000);
            surrogates |= is_surrogate(ch);
        }
        if (surrogates != 0) // three bytes for each half by now, and four for both
            bytes -= 2 * count_pairs(source, std::max<std::size_t>(start, 1), stop);
        size += bytes;
    }
    return size;
}

// The fast loop: stops near the end of either text.
void encode_runs(wchar_t const *&at, wchar_t const *end, char *&out, char const *out_end)
{
    constexpr std::ptrdiff_t block = 16; // of copy_ascii_block()
    while (end - at >= block && out_end - out >= block) {
        while (std::min(end - at, out_end - out) >= block && copy_ascii_block(at, out)) {
            at += block;
            out += block;
        }
        if (end - at < block)
            return;
        if (out_end - out < 4 * block)
            return;
        for (auto const *const stop = at + block; at < stop;) {
            auto const ch = static_cast<char32_t>(*at);
            if (ch < 0x80) {
                *out++ = static_cast<char>(ch);
                ++at;
            } else if (ch < 0x800) {
                auto const bytes = static_cast<std::uint16_t>(0x80C0 | ch >> 6 | (ch & 0x3F) << 8);
                std::memcpy(out, &bytes, sizeof bytes);
                out += sizeof bytes;
                ++at;
            } else {
                out += encode_utf8_character(take_character(at, end), out);
            }
        }
    }
}

} // namespace

std::size_t count_utf8_starts(char const *source, std::size_t size)
{
    constexpr std::size_t lanes = 16;
    constexpr std::size_t rounds = 255; // a lane of eight bits can take that many
    std::size_t count = count_ascii(source, size);
    std::size_t i = count;
    while (size - i >= lanes) {
        std::uint8_t sums[lanes] = {};
        std::size_t const stop = i + std::min((size - i) / lanes, rounds) * lanes;
        for (; i < stop; i += lanes) {
            for (std::size_t k = 0; k < lanes; ++k)
                sums[k] = static_cast<std::uint8_t>(
                    sums[k] + (static_cast<signed char>(source[i + k]) >= -64));
        }
        for (std::uint8_t const sum : sums)
            count += sum;
    }
    for (; i < size; ++i)
        count += static_cast<signed char>(source[i]) >= -64;
    return count;
}

long long decode_utf8(char const *source, std::size_t size, wchar_t *target, std::size_t capacity)
{
    return run_into_sink(target, capacity, [&](auto &sink) { return decode(source, size, sink); });
}

long long encode_utf8(wchar_t const *source, std::size_t length, char *target, std::size_t capacity)
{
    if (!target)
        return static_cast<long long>(measure_encoded(source, length));
    wchar_t const *at = source;
    wchar_t const *const end = source + length;
    char *out = target;
    char *const out_end = target + capacity;
    encode_runs(at, end, out, out_end);
    while (at != end && out_end - out >= 4)
        out += encode_utf8_character(take_character(at, end), out);
    while (at != end) {
        char bytes[4];
        std::size_t const count = encode_utf8_character(take_character(at, end), bytes);
        if (static_cast<std::size_t>(out_end - out) < count)
            return -1;
        out = std::copy_n(bytes, count, out);
    }
    return out - target;
}

} // namespace kortools::platform
