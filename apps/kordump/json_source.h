// SPDX-License-Identifier: MIT
// Reads the JSON of a file item by item, so that only one item is in memory in its parsed form.
#pragma once

#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string_view>

namespace kordump {

using Json = nlohmann::json;

// Structures may lie this deep in each other, which objects nested as deep as a reader takes do
// not reach.
constexpr int maximum_json_depth = 8400;

// Everything but the items: "items" is an empty array where there are any. Throws
// std::runtime_error with the place of a mistake, as the next one.
Json read_json_head(std::string_view text);

// Calls for each element of "items", in order, wherever that stands.
void for_each_item(std::string_view text, std::function<void(Json const &)> const &visit);

} // namespace kordump
