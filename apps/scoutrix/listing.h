// SPDX-License-Identifier: MIT
// Prints scenes and nodes on standard output.
#pragma once

#include "apps/scene/scene.h"

#include <optional>
#include <string>
#include <vector>

namespace scoutrix {

enum class SortKey { None, Name, Size, Modified, Kind };
std::vector<std::string> get_sort_names(); // "none", "name" ...
std::optional<SortKey> find_sort_key(std::string const &name);

struct ListOptions {
    int depth = -1; // levels shown; negative: all
    SortKey sort = SortKey::None;
    bool properties = false; // every entry of every node, on lines of their own
    bool json = false;       // nodes, files, folders and bytes as members of one object
};

// Folders come first when sorted, the newest and largest files before the others.
void sort_scene(CScene &scene, SortKey key);

// One line for each node, indented by its depth, and a last one with the totals.
void print_scene(CScene &scene, ListOptions const &options);

// "key: value", one line each.
void print_properties(CSceneNode const &node, Text const &indent);

} // namespace scoutrix
