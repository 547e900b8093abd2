// SPDX-License-Identifier: MIT
// The bytes of a file from the JSON of its report.
#pragma once

#include "apps/kordump/layout.h"

#include <string>

namespace kordump {

// The layouts in the JSON are used before those given. Throws std::runtime_error, or what the JSON
// library throws, with the place of a mistake.
std::string restore_file(std::string_view json, LayoutTable layouts);

} // namespace kordump
