// SPDX-License-Identifier: MIT
// The kinds of custom data: what the bytes of an entry mean.
#pragma once

#include "apps/kordump/cursor.h"

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace kordump {

using Json = nlohmann::json;

consteval unsigned int four(char const (&text)[5])
{
    unsigned int code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

constexpr unsigned int kind_block = four("CDA2");   // nested entries
constexpr unsigned int kind_records = four("CDAT"); // nested records of the old form

// The JSON of a value. Nothing when the bytes are not exactly what a value of that kind has, or the
// kind is unknown or nested.
std::optional<std::string> decode_value(unsigned int kind, ByteSpan data);

// The bytes of what decode_value() makes. Throws std::runtime_error.
std::string encode_value(unsigned int kind, Json const &value);

// What data without a kind looks like: the name of a representation and its JSON.
struct Guess {
    char const *key; // "ansi", "utf16", "i32" or "hex"
    std::string json;
};
Guess guess_value(ByteSpan data);

// The data of an entry, from its "value", or else one of the representations above. Throws
// std::runtime_error.
std::string encode_data(unsigned int kind, Json const &entry);

} // namespace kordump
