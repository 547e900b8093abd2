// SPDX-License-Identifier: MIT
// The bytes of a file from the JSON of its report.
#pragma once

#include "apps/kordump/layout.h"

#include <string>

namespace kordump {

// Where the JSON has a layout of a class, that is used instead of the one given. Throws
// std::runtime_error, or what the JSON library throws, with the place of a mistake.
std::string restore_file(std::string_view json, LayoutTable const &layouts);

} // namespace kordump
