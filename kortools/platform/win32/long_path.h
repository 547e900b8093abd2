// SPDX-License-Identifier: MIT
#pragma once

#include <string>

typedef struct _FILETIME FILETIME;

namespace kortools::platform {

// The absolute form of a path, without a separator at its end and without the limit of 260
// characters, and taken literally from then on.
std::wstring lift_path_limit(wchar_t const *path);

long long to_seconds(FILETIME const &time); // since 1970, rounded down

} // namespace kortools::platform
