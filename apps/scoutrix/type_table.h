// SPDX-License-Identifier: MIT
// The registry of file types, as the host shows it.
#pragma once

#include "apps/scene/scene.h"
#include "kortools/files/file_types.h"

#include <string>
#include <vector>

namespace scoutrix {

// "bitmap", "3d" ... and that of a type with such properties; "-" when it has no kind.
std::vector<std::string> get_kind_names();
std::string get_kind_name(unsigned int properties);

// The characters of a class or component code; "-" for no component.
Text format_code(unsigned int code);

std::vector<CFileExt> get_types(); // by description

// The file name of the plug-in that has added the type; empty for others.
Text get_library_name(CFileExt const &type);

struct TypeFilter {
    std::vector<std::string> kinds; // empty: all
    bool loaded = false;            // only what can be loaded
    bool saved = false;
    bool json = false; // print one array
};

// One line or object for each type. The exit code: 1 when none passes the filter.
int list_types(TypeFilter const &filter);

} // namespace scoutrix
