// SPDX-License-Identifier: MIT
#include "kortools/platform/utf8.h"

#include "kortools/platform/text_sink.h"
#include "kortools/platform/wide_text.h"

namespace kortools::platform {
namespace {

struct Decoded {
    char32_t ch;
    std::size_t size; // bytes
};

// The sequence that starts at `at`, whose first byte is not ASCII. The second byte alone decides
// whether a sequence is overlong, a surrogate or above 10FFFF: such a sequence ends before it.
Decoded decode_sequence(unsigned char const *at, unsigned char const *end)
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

template <class Sink> bool put_character(Sink &sink, char32_t ch)
{
    if (wide_is_utf16 && ch > 0xFFFF) {
        return sink.put(static_cast<wchar_t>(high_surrogate_of(ch)))
            && sink.put(static_cast<wchar_t>(low_surrogate_of(ch)));
    }
    return sink.put(static_cast<wchar_t>(ch));
}

template <class Sink> bool decode(char const *source, std::size_t size, Sink &sink)
{
    auto const *at = reinterpret_cast<unsigned char const *>(source);
    auto const *const end = at + size;
    while (at != end) {
        if (*at < 0x80) {
            std::size_t const count = sink.put_ascii(at, static_cast<std::size_t>(end - at));
            if (count == 0)
                return false; // no room
            at += count;
            continue;
        }
        Decoded const next = decode_sequence(at, end);
        if (!put_character(sink, next.ch))
            return false;
        at += next.size;
    }
    return true;
}

template <class Sink> bool put_bytes(Sink &sink, char32_t ch)
{
    auto const trail
        = [&](int shift) { return sink.put(static_cast<char>(0x80 | (ch >> shift & 0x3F))); };
    if (ch < 0x800)
        return sink.put(static_cast<char>(0xC0 | ch >> 6)) && trail(0);
    if (ch < 0x10000)
        return sink.put(static_cast<char>(0xE0 | ch >> 12)) && trail(6) && trail(0);
    return sink.put(static_cast<char>(0xF0 | ch >> 18)) && trail(12) && trail(6) && trail(0);
}

template <class Sink> bool encode(wchar_t const *source, std::size_t length, Sink &sink)
{
    wchar_t const *at = source;
    wchar_t const *const end = source + length;
    while (at != end) {
        auto ch = static_cast<char32_t>(*at);
        if (ch < 0x80) {
            std::size_t const count = sink.put_ascii(at, static_cast<std::size_t>(end - at));
            if (count == 0)
                return false; // no room
            at += count;
            continue;
        }
        ++at;
        if (is_high_surrogate(ch) && at != end && is_low_surrogate(static_cast<char32_t>(*at)))
            ch = join_surrogates(ch, static_cast<char32_t>(*at++));
        else if (is_surrogate(ch) || ch > last_character)
            ch = replacement_character;
        if (!put_bytes(sink, ch))
            return false;
    }
    return true;
}

} // namespace

long long decode_utf8(char const *source, std::size_t size, wchar_t *target, std::size_t capacity)
{
    return run_into_sink(target, capacity, [&](auto &sink) { return decode(source, size, sink); });
}

long long encode_utf8(wchar_t const *source, std::size_t length, char *target, std::size_t capacity)
{
    return run_into_sink(
        target, capacity, [&](auto &sink) { return encode(source, length, sink); });
}

} // namespace kortools::platform
