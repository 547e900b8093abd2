// SPDX-License-Identifier: MIT
// Results for scripts. Members keep the order in which they were set.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace kor_apps {

// Indented, without a line end behind it. Bytes that are no UTF-8 become U+FFFD.
std::string to_text(nlohmann::ordered_json const &json);

void print_json(nlohmann::ordered_json const &json); // standard output

} // namespace kor_apps
