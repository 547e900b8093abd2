// SPDX-License-Identifier: MIT
// UTF-8 to the platform's wide text and back, with the same result on both systems: malformed
// bytes become one U+FFFD for each maximal part of a sequence that could have been valid, and
// surrogates without a partner, like values above 10FFFF, are written as U+FFFD.
#pragma once

#include <cstddef>

namespace kortools::platform {

// Both return the number of characters of the whole result, only measure with a null `target`, and
// return -1 when `capacity` is too small.
long long decode_utf8(char const *source, std::size_t size, wchar_t *target, std::size_t capacity);
long long encode_utf8(
    wchar_t const *source, std::size_t length, char *target, std::size_t capacity);

// Number of bytes that are not in the middle of a sequence: the number of characters of a
// well-formed text, at most that of any other. Takes a fraction of the time of measuring.
std::size_t count_utf8_starts(char const *source, std::size_t size);

} // namespace kortools::platform
