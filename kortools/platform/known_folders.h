// SPDX-License-Identifier: MIT
// The folders in which the system wants applications to keep their data.
#pragma once

#include "kortools/export.h"

#include <string>
#include <string_view>

namespace kortools::platform {

// Of the calling user, on this machine only: LocalAppData on Windows; on Linux $XDG_DATA_HOME when
// that is an absolute path, else .local/share in the user's home, and it may not exist yet. A
// Windows-style path without a trailing separator; empty when the system has none.
KORTOOLS_API std::wstring get_user_data_folder();

// Of all users, on this machine: ProgramData on Windows, /var/lib on Linux; in the same form.
KORTOOLS_API std::wstring get_common_data_folder();

// Linux: another folder than /var/lib, for programs whose users may not write there; an empty path
// is /var/lib again. Thread safe. Windows: returns false.
KORTOOLS_API bool set_common_data_folder(std::wstring_view path);

// Of the calling user, for what need not last: on Linux $TMPDIR when that is an absolute path to a
// directory, else /tmp. In the same form; empty when there is no such directory.
KORTOOLS_API std::wstring get_temp_folder();

} // namespace kortools::platform
