// SPDX-License-Identifier: MIT
// The library's view of what stat() tells.
#pragma once

#include "kortools/platform/file_status.h"

#include <string_view>
#include <sys/stat.h>

namespace kortools::platform {

// `name` is the last part of the path, or all of it.
FileStatus to_file_status(struct stat const &facts, std::string_view name);

} // namespace kortools::platform
