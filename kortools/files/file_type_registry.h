// SPDX-License-Identifier: MIT
// When the registry of file types begins and ends, and what it begins with.
#pragma once

#include <span>

namespace kortools::files {

// Makes the registry with the library's own types, unless there is one.
void create_file_types();

// Forgets every type. Whoever needs the registry later gets a new one.
void destroy_file_types();

struct BuiltInFileType {
    char const *description;
    char const *extensions; // with dots, '|' between them
    unsigned int file_class;
    unsigned int properties;
};
std::span<BuiltInFileType const> get_built_in_file_types(); // in the order of registration

} // namespace kortools::files
