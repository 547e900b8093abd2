// SPDX-License-Identifier: MIT
// What the log takes from the application: its name, and where it keeps a user's data.
#pragma once

#include "kortools/core/xstring.h"

namespace kortools::app {

// The program's file without directory and extension.
CXTString<wchar_t> get_log_title();

// The application's folder among the user's data, which is made when it is missing, with a
// separator at the end. Empty when the system has no place for such data.
CXTString<wchar_t> get_log_folder();

} // namespace kortools::app
