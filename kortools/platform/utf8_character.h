// SPDX-License-Identifier: MIT
// One character to UTF-8, for little-endian machines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kortools::platform {

// Number of bytes of the character, 1 to 4; `target` has room for 4. A surrogate has three, as any
// other character below 10000.
inline std::size_t encode_utf8_character(char32_t ch, char *target)
{
    if (ch < 0x80) {
        *target = static_cast<char>(ch);
        return 1;
    }
    auto const store = [&](std::uint32_t bytes) { std::memcpy(target, &bytes, sizeof bytes); };
    if (ch < 0x800) {
        store(0x80C0 | ch >> 6 | (ch & 0x3F) << 8);
        return 2;
    }
    if (ch < 0x10000) {
        store(0x8080E0 | ch >> 12 | (ch << 2 & 0x3F00) | (ch & 0x3F) << 16);
        return 3;
    }
    store(0x808080F0 | ch >> 18 | (ch >> 4 & 0x3F00) | (ch << 10 & 0x3F0000) | (ch & 0x3F) << 24);
    return 4;
}

} // namespace kortools::platform
