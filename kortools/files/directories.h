// SPDX-License-Identifier: MIT
// Directories made and removed.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// Makes a directory, with `recursive` also those that should hold it. True as well when it exists
// (without `recursive`: when anything of that name exists). When one cannot be made, those that
// this call has made are removed again. `timeout` as in file_status.h, for the call as a whole.
KORTOOLS_API bool fileCreateDirectory(
    CXTString<wchar_t> const &path, bool recursive = false, unsigned int *timeout = nullptr);
