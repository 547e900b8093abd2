// SPDX-License-Identifier: MIT
// Files copied, moved, renamed and deleted by name.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// Deletes a file, or a link and not what it leads to. False for a directory, a missing file and one
// that may not be deleted.
KORTOOLS_API bool fileDelete(CXTString<wchar_t> const &path);
