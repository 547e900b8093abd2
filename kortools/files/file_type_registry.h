// SPDX-License-Identifier: MIT
// When the registry of file types begins and ends, what it begins with, and what plug-ins do with
// it.
#pragma once

#include "kortools/files/file_types.h"

#include <span>
#include <vector>

namespace kortools::files {

// Makes the registry with the library's own types, unless there is one.
void create_file_types();

// Forgets every type. Whoever needs the registry later gets a new one.
void destroy_file_types();

// Adds a copy of the type, if there is a registry; false when there is none.
bool add_file_type(CFileExt const &type);

// Whether there are types with this callback. Does not create a registry.
bool has_file_types(IoPluginCallback callback);

// Removes the types with this callback. Does not create a registry.
void remove_file_types(IoPluginCallback callback);

// Copies of the types that have the extension of the name, in the order of their registration.
std::vector<CFileExt> find_file_types(CXTString<wchar_t> const &name);

struct BuiltInFileType {
    char const *description;
    char const *extensions; // with dots, '|' between them
    unsigned int file_class;
    unsigned int properties;
};
std::span<BuiltInFileType const> get_built_in_file_types(); // in the order of registration

} // namespace kortools::files
