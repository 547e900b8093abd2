// SPDX-License-Identifier: MIT
// Numbers and times between their bits in a file and JSON.
#pragma once

#include "apps/kordump/layout.h"

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace kordump {

using Json = nlohmann::json;

// The JSON of a plain value. Floats have the shortest digits that give the same bits again; what is
// not finite is a text: "inf", "-inf", "nan", or "0x" and its bits.
std::string print_plain(FieldType type, unsigned long long bits);

// The bits of what print_plain() makes, and of any other number that the type holds. Throws
// std::runtime_error for what it does not hold.
unsigned long long parse_plain(FieldType type, Json const &value);

// An unsigned number of at most `maximum`.
unsigned long long parse_number(Json const &value, unsigned long long maximum);

// An identifier or kind: a number, or a text of four characters.
unsigned int parse_code(Json const &value);

} // namespace kordump
