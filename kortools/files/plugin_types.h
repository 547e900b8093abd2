// SPDX-License-Identifier: MIT
// The types of files that a plug-in hands out.
#pragma once

#include "kortools/files/file_types.h"

#include <string>
#include <vector>

namespace kortools::files {

struct PluginTypes {
    bool is_usable = false; // the entry point did what it was asked for
    std::vector<CFileExt> types;
    std::vector<std::string> refusals; // why it, or a type of its, is not used
};

// Asks the entry point for its types, which are checked.
PluginTypes ask_for_types(IoPluginCallback callback, unsigned int kind);

} // namespace kortools::files
