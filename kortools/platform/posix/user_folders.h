// SPDX-License-Identifier: MIT
// Folders of the calling user that only Linux has.
#pragma once

#include <string>

namespace kortools::platform {

// $XDG_CONFIG_HOME when that is an absolute path, else .config in the user's home. A native path
// without a separator at its end; empty without a home. It may not exist yet.
std::string get_user_config_folder();

} // namespace kortools::platform
