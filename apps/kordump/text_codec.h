// SPDX-License-Identifier: MIT
// Texts between the files' encodings and UTF-8, and bytes as hexadecimal digits. Every conversion
// can be undone exactly, or is refused.
#pragma once

#include "apps/kordump/cursor.h"

#include <optional>
#include <string>
#include <string_view>

namespace kordump {

// Nothing when a surrogate lacks its partner or the size is odd.
std::optional<std::string> utf16_to_utf8(ByteSpan units);

// Little-endian units. `text` must be UTF-8.
std::string utf8_to_utf16(std::string_view text);

bool is_utf8(std::string_view bytes);

std::string to_hex(ByteSpan bytes);

// Two digits for each byte, blanks between them allowed. Throws std::runtime_error for others.
std::string from_hex(std::string_view text);

// A JSON string. `text` must be UTF-8.
std::string quote(std::string_view text);

// The same for bytes, as a JSON object with their digits when they are not UTF-8.
std::string quote_bytes(std::string_view bytes);

// "NAME", when all four characters can be printed, else the number. JSON either way.
std::string print_four_characters(unsigned int code);

inline std::string_view as_text(ByteSpan bytes)
{
    return { reinterpret_cast<char const *>(bytes.data()), bytes.size() };
}

inline ByteSpan as_bytes(std::string_view text)
{
    return { reinterpret_cast<unsigned char const *>(text.data()), text.size() };
}

} // namespace kordump
