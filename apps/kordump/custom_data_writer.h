// SPDX-License-Identifier: MIT
// Custom data from the JSON of its report. Sizes and counts follow from the entries, unless they
// are given.
#pragma once

#include "apps/kordump/byte_buffer.h"

#include <nlohmann/json_fwd.hpp>

namespace kordump {

using Json = nlohmann::json;

// A stream, or the bare entries of a block, as its "form" says. Throws std::runtime_error.
void write_custom_data(ByteBuffer &bytes, Json const &container);

} // namespace kordump
